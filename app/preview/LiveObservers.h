#pragma once

#include "app/preview/LiveCopy.h"
#include "app/preview/PreviewPane.h"
#include "app/preview/live/LiveViewshed.h"

#include <QObject>

class ProfileView;
class intervisibilityOptionsWidget;

/// What follows the mouse at once on the map of the intervisibility: the zones that an observer sees while it
/// is dragged (numbers of observers and heights disappear meanwhile), who sees the place under the mouse, and
/// the profile of the ground between the current observer and that place.
class LiveObservers : public QObject
{
    Q_OBJECT

public:
    /// `pane` and `panel` outlive this object. The profile's view is put below the map.
    LiveObservers(PreviewPane &pane, intervisibilityOptionsWidget &panel);
    ~LiveObservers() override;

    /// The panel of the observers is, or is no longer, the current one.
    void setShown(bool shown);

    /// Another copy is shown; empty: there is none.
    void setCopy(const QString &copy, int band);

    /// The observers or their options changed.
    void updateOptions();

    /// The tool's own product is here: a live picture that is still under way would hide it.
    void dropLate() { m_viewshed.cancel(); }

    /// A dragged observer could not be moved: shows what it sees where it still stands, in place of what it saw
    /// on the way. `row` may be -1: nothing is shown.
    void stay(int row);

    /// Where the profile is shown, pins its far end at a place of the DEM, or lets it follow the mouse again.
    /// Returns whether it is shown.
    bool pin(const QPointF &ground);

signals:
    /// Numbers that were removed from the map are right again: the dragged observer is back in its place.
    void numbersWanted();

private:
    void follow(int row, const QPointF &ground);
    void showSeen(int number, const SeenCells &cells);
    void setProfileShown(bool shown);
    void showProfile();
    void hover(const QPointF &cell);
    QString seenText(const QPointF &cell);

    PreviewPane &m_pane;
    intervisibilityOptionsWidget &m_panel;
    ProfileView *m_profile; ///< the pane owns it
    LiveCopy m_copy;
    LiveViewshed m_viewshed;
    IntervisibilityOptions m_options; ///< those of the live picture
    int m_number = 0;                 ///< the number of the last request
    bool m_isShown = false;
    std::optional<QPointF> m_far; ///< the profile's far end, in the DEM's coordinates
    bool m_isPinned = false;
};
