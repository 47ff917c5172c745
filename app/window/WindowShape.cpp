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
    m_geometry = readLastGeometry();
    m_splitter.setStretchFactor(1, 1);
    m_previews.hide();
    const QVector<QRect> screens = availableScreens();
    const int needed =
        m_window.minimumSizeHint().width() + m_splitter.handleWidth() + m_previews.minimumSizeHint().width();
    const bool fits = std::any_of(screens.begin(), screens.end(),
                                  [&](const QRect &screen) { return screen.width() >= needed; });
    m_previews.setVisible(m_geometry.showPreview && fits);
    m_button.setChecked(m_geometry.showPreview && fits);
    const QSize size = m_geometry.isDefault ? m_geometry.size.expandedTo(m_window.sizeHint()) : m_geometry.size;
    const QRect visible = visibleGeometry({m_geometry.position, size}, screens);
    m_window.resize(visible.size());
    m_window.move(visible.topLeft());
    fitSplitter();
}

void WindowShape::save()
{
    m_geometry.size = m_window.size();
    m_geometry.position = m_window.pos();
    writeLastGeometry(m_geometry);
}

void WindowShape::fitTabs()
{
    if (m_tabs.width() < m_tabs.tabBar()->sizeHint().width())
        fitSplitter();
}

/// Divides the width: the tabs receive what their titles need, the previews the rest.
void WindowShape::fitSplitter()
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
    m_geometry.showPreview = show;
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
        fitSplitter();
}

void WindowShape::removePreviews()
{
    showPreviews(false);
    m_button.setEnabled(false);
}
