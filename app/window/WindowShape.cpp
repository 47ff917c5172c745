#include "app/window/WindowShape.h"

#include <QDialog>
#include <QEvent>
#include <QGuiApplication>
#include <QIcon>
#include <QLayout>
#include <QPushButton>
#include <QScreen>
#include <QShortcut>
#include <QSplitter>
#include <QTabWidget>

#include <algorithm>

namespace
{

/// What a window's frame adds on common desktops; it is not known before the window is shown.
constexpr QSize windowFrame(12, 40);

constexpr int leastMapWidth = 440; // pixels; a narrower map cuts its own texts

QVector<QRect> availableScreens()
{
    QVector<QRect> areas;
    for (const QScreen *screen : QGuiApplication::screens())
        areas += screen->availableGeometry();
    return areas;
}

/// Gives the focus to the main control of an area, which is its focus proxy, or to its first one.
void focusFirst(const QWidget &area)
{
    if (QWidget *control = area.focusProxy()) {
        control->setFocus(Qt::TabFocusReason);
        return;
    }
    for (QWidget *control = area.nextInFocusChain(); control != &area; control = control->nextInFocusChain()) {
        if (area.isAncestorOf(control) && control->isVisible() && control->isEnabled()
            && (control->focusPolicy() & Qt::TabFocus)) {
            control->setFocus(Qt::TabFocusReason);
            return;
        }
    }
}

} // namespace

WindowShape::WindowShape(QDialog &window, QTabWidget &tabs, QSplitter &splitter, QWidget &map,
                         QPushButton &button)
    : m_window(window)
    , m_tabs(tabs)
    , m_splitter(splitter)
    , m_map(map)
    , m_button(button)
{
    m_splitter.setStretchFactor(0, 0);
    m_splitter.setStretchFactor(1, 1);
    m_splitter.installEventFilter(this);
    connect(&m_splitter, &QSplitter::splitterMoved, this, [this](int position) { m_chosenWidth = position; });
    connect(new QShortcut(Qt::Key_F6, &m_window), &QShortcut::activated, this, &WindowShape::changePane);
}

void WindowShape::restore()
{
    m_geometry = readLastGeometry();
    const QSize size = m_geometry.isDefault ? firstSize() : m_geometry.size;
    const QRect visible = visibleGeometry({m_geometry.position, size}, windowFrame, availableScreens());
    m_window.resize(visible.size());
    m_window.move(visible.topLeft());
    arrange();
}

/// The stored size's default is that of the dialog without the map.
QSize WindowShape::firstSize() const
{
    const QScreen *screen = QGuiApplication::primaryScreen();
    if (!m_geometry.showPreview || !screen)
        return m_geometry.size;
    return firstWindowSize(screen->availableSize(), windowFrame);
}

void WindowShape::save()
{
    m_geometry.size = m_window.size();
    m_geometry.position = m_window.pos();
    writeLastGeometry(m_geometry);
}

PaneWidths WindowShape::widths() const
{
    const QMargins margins = m_window.layout()->contentsMargins();
    return {.available = m_window.width() - margins.left() - margins.right(),
            .panel = m_tabs.sizeHint().width(),
            .handle = m_splitter.handleWidth(),
            .map = std::max(leastMapWidth, m_map.minimumSizeHint().width())};
}

void WindowShape::arrange()
{
    const PaneWidths room = widths();
    const ShownPanes shown = shownPanes(room, isMapWanted(), m_isMapInFront);
    const bool mapWasShown = !m_map.isHidden();
    const bool showsMap = shown != ShownPanes::Panel;
    m_tabs.setVisible(shown != ShownPanes::Map);
    m_map.setVisible(showsMap);
    if (shown == ShownPanes::Both) {
        const int most = room.available - room.handle - room.map;
        const int panel = std::min(m_chosenWidth > 0 ? m_chosenWidth : room.panel, most);
        m_splitter.setSizes({panel, room.available - room.handle - panel});
    }
    updateButton();
    if (showsMap != mapWasShown)
        emit mapShown(showsMap);
}

bool WindowShape::eventFilter(QObject *watched, QEvent *event)
{
    if (event->type() == QEvent::Resize || event->type() == QEvent::Show)
        arrange();
    return QObject::eventFilter(watched, event);
}

/// Where only one of panel and map has room, the button says which one it brings.
void WindowShape::updateButton()
{
    const bool changes = !fitSideBySide(widths()) && !m_isMapRemoved;
    const bool isMapShown = !m_map.isHidden();
    m_button.setCheckable(!changes);
    m_button.setChecked(isMapShown);
    QString title;
    QString meaning = tr("Afficher les aperçus", "MESS_APERCUS");
    if (changes) {
        title = isMapShown ? tr("Options", "MESS_VOLET_OPTIONS") : tr("Carte", "MESS_VOLET_CARTE");
        meaning = isMapShown ? tr("Revenir aux options du traitement", "MESS_VOLET_OPT_EXPL")
                             : tr("Afficher la carte à la place des options", "MESS_VOLET_CARTE_EXPL");
    }
    m_button.setText(title);
    m_button.setAccessibleName(meaning);
    m_button.setToolTip(meaning + QStringLiteral(" (F6)"));
}

void WindowShape::toggleMap()
{
    if (m_isMapRemoved)
        return;
    if (!m_geometry.showPreview) {
        m_geometry.showPreview = true;
        m_isMapInFront = true;
        growForMap();
    } else if (!fitSideBySide(widths())) {
        m_isMapInFront = !m_isMapInFront;
    } else {
        m_geometry.showPreview = false;
        if (!m_window.isMaximized() && !m_window.isFullScreen())
            m_window.resize(m_window.width() - m_splitter.handleWidth() - m_map.width(), m_window.height());
    }
    arrange();
}

/// Widens the window by the map, within the screen; a window that would stay too narrow for both keeps its
/// size.
void WindowShape::growForMap()
{
    if (m_window.isMaximized() || m_window.isFullScreen())
        return;
    const QRect screen = m_window.screen()->availableGeometry();
    PaneWidths room = widths();
    const int most = std::max(0, screen.width() - windowFrame.width() - m_window.width());
    const int more = std::min(room.handle + m_map.sizeHint().width(), most);
    room.available += more;
    if (!fitSideBySide(room))
        return;
    m_window.resize(m_window.width() + more, m_window.height());
    const int over = m_window.x() + m_window.width() + windowFrame.width() - (screen.right() + 1);
    if (over > 0)
        m_window.move(m_window.x() - over, m_window.y());
}

void WindowShape::changePane()
{
    if (m_isMapRemoved)
        return;
    const bool wasInMap = m_map.isAncestorOf(m_window.focusWidget());
    if (!m_geometry.showPreview || !fitSideBySide(widths())) {
        toggleMap();
        focusFirst(m_map.isHidden() ? *m_tabs.currentWidget() : m_map);
    } else {
        focusFirst(wasInMap ? *m_tabs.currentWidget() : m_map);
    }
}

void WindowShape::removeMap()
{
    m_isMapRemoved = true;
    arrange();
    m_button.setEnabled(false);
}
