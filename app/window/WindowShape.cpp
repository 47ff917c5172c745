#include "app/window/WindowShape.h"

#include "app/preview/PreviewPane.h"

#include <QDialog>
#include <QGuiApplication>
#include <QLayout>
#include <QPushButton>
#include <QScreen>
#include <QSplitter>
#include <QTabBar>
#include <QTabWidget>

#include <algorithm>

namespace
{

QVector<QRect> availableScreens()
{
    QVector<QRect> areas;
    for (const QScreen *screen : QGuiApplication::screens())
        areas += screen->availableGeometry();
    return areas;
}

} // namespace

WindowShape::WindowShape(QDialog &window, QTabWidget &tabs, QSplitter &splitter, PreviewPane &previews,
                         QPushButton &button)
    : m_window(window)
    , m_tabs(tabs)
    , m_splitter(splitter)
    , m_previews(previews)
    , m_button(button)
{ }

void WindowShape::restore()
{
    m_last = readLastGeometry();
    m_splitter.setStretchFactor(1, 1);
    m_previews.hide();
    const QVector<QRect> screens = availableScreens();
    const int needed =
        m_window.minimumSizeHint().width() + m_splitter.handleWidth() + m_previews.minimumSizeHint().width();
    const bool fits = std::any_of(screens.begin(), screens.end(),
                                  [&](const QRect &screen) { return screen.width() >= needed; });
    m_previews.setVisible(m_last.showPreview && fits);
    m_button.setChecked(m_last.showPreview && fits);
    const QSize size = m_last.isDefault ? m_last.size.expandedTo(m_window.sizeHint()) : m_last.size;
    const QRect visible = visibleGeometry({m_last.position, size}, screens);
    m_window.resize(visible.size());
    m_window.move(visible.topLeft());
    giveTabsTheirRoom();
}

void WindowShape::save()
{
    m_last.size = m_window.size();
    m_last.position = m_window.pos();
    writeLastGeometry(m_last);
}

void WindowShape::fitTabs()
{
    if (m_tabs.width() < m_tabs.tabBar()->sizeHint().width())
        giveTabsTheirRoom();
}

/// The previews get what the tabs do not need.
void WindowShape::giveTabsTheirRoom()
{
    const int tabs = m_tabs.tabBar()->sizeHint().width();
    m_splitter.setSizes({tabs, std::max(0, m_window.width() - tabs)});
}

int WindowShape::widthHint() const
{
    const QMargins margins = m_window.layout()->contentsMargins();
    int width = m_tabs.tabBar()->sizeHint().width() + margins.left() + margins.right();
    if (!m_previews.isHidden())
        width += m_splitter.handleWidth() + m_previews.sizeHint().width();
    return width;
}

bool WindowShape::togglePreviews()
{
    const bool show = m_previews.isHidden();
    m_last.showPreview = show;
    showPreviews(show);
    return show;
}

void WindowShape::showPreviews(bool show)
{
    const int room = m_splitter.handleWidth() + (show ? m_previews.sizeHint() : m_previews.size()).width();
    m_previews.setVisible(show);
    m_button.setChecked(show);
    if (!m_window.isMaximized() && !m_window.isFullScreen())
        m_window.resize(m_window.width() + (show ? room : -room), m_window.height());
    if (show)
        giveTabsTheirRoom();
}

void WindowShape::removePreviews()
{
    showPreviews(false);
    m_button.setEnabled(false);
}
