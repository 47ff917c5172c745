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

/// What a window's frame adds on common desktops; it is not known before the window is shown.
constexpr QSize windowFrame(12, 40);

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
    const QSize size = m_geometry.isDefault ? firstSize() : m_geometry.size;
    const QRect visible = visibleGeometry({m_geometry.position, size}, windowFrame, screens);
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

/// The stored size's default is that of the dialog without previews, which come beside it.
QSize WindowShape::firstSize() const
{
    return {std::max(m_geometry.size.width(), tabsWidth()) + previewsWidth(),
            std::max(m_geometry.size.height(), m_window.minimumSizeHint().height())};
}

int WindowShape::tabsWidth() const
{
    const QMargins margins = m_window.layout()->contentsMargins();
    return m_tabs.tabBar()->sizeHint().width() + margins.left() + margins.right();
}

int WindowShape::previewsWidth() const
{
    return m_previews.isHidden() ? 0 : m_splitter.handleWidth() + m_previews.sizeHint().width();
}

int WindowShape::widthHint() const
{
    return tabsWidth() + previewsWidth();
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
