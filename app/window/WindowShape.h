#pragma once

#include "app/startup/settings.h"
#include "app/window/dialogrules.h"

#include <QObject>

class QDialog;
class QPushButton;
class QSplitter;
class QTabWidget;
class QWidget;

/// Keeps size and position of the main dialog from one start to the next, and shows the option panels and the
/// map (the previews) side by side, or one of them where the window is too narrow for both.
///
/// The panels have their natural width until the user moves the splitter; the map has the rest. F6 changes
/// panel and map, in a window that shows both the one that has the focus.
class WindowShape : public QObject
{
    Q_OBJECT

public:
    /// All widgets belong to the dialog and outlive this object. `button` is the one that shows and hides the
    /// map.
    WindowShape(QDialog &window, QTabWidget &tabs, QSplitter &splitter, QWidget &map, QPushButton &button);

    /// Restores what save() stored, within the screens. Where the window is too narrow for both, the panels are
    /// in front.
    void restore();
    void save();

    /// Fits the width of the panels to what they need now, and sets the texts of the button; after a change of
    /// language, or when a panel was made.
    void arrange();

    /// Shows or hides the map; the window grows or shrinks by its width as far as the screen allows. In a
    /// window that is too narrow for both, changes panels and map.
    void toggleMap();

    /// Hides the map and disables its button. The user's choice is kept for the next start.
    void removeMap();

signals:
    /// The map appeared or went, by the user's choice or because the room for it changed.
    void mapShown(bool shown);

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    PaneWidths widths() const;
    bool isMapWanted() const { return m_geometry.showPreview && !m_isMapRemoved; }
    void updateButton();
    void changePane();
    void growForMap();
    QSize firstSize() const;

    QDialog &m_window;
    QTabWidget &m_tabs;
    QSplitter &m_splitter;
    QWidget &m_map;
    QPushButton &m_button;
    LastGeometry m_geometry;
    bool m_isMapInFront = false; ///< where the window is too narrow for both
    bool m_isMapRemoved = false;
    int m_chosenWidth = 0; ///< width of the panels that the user gave them; 0: their natural width
};
