#pragma once

#include "app/preview/LiveObservers.h"
#include "app/preview/PreviewPane.h"
#include "app/preview/Previews.h"
#include "app/preview/SightClock.h"

#include <memory>

class intervisibilityOptionsWidget;
class optionsWidget;

/// Keeps the map up to date: passes the DEM, the options of the current panel and the observers to the runs,
/// and their results to the pane.
class PreviewControl : public QObject
{
    Q_OBJECT

public:
    /// `pane`, `runs` and `workFolder` outlive this object.
    PreviewControl(PreviewPane &pane, Previews &runs, const ToolPaths &tools, WorkFolder &workFolder);
    ~PreviewControl() override;

    /// Connects the panel of the observers with the map; called once, before it is shown. `observers` outlives
    /// this object.
    void setObservers(intervisibilityOptionsWidget &observers);

    /// The DEM or band changed, or its extreme values became known.
    void setDem(const DemInfo &dem);

    /// Another panel became the current one, or its options have settled. `panel` is null while
    /// no tab is current. `name` is the product's title, `vector` says whether the product is a vector file.
    void showPanel(optionsWidget *panel, const QString &name, bool vector);

    /// The way to the product changed, or the language of the texts.
    void refresh();

    /// Reads the DEM again and makes its preview anew.
    void renew();

    /// Shows the reduced copy or the product that the runs have just made.
    void showInput();
    void showOutput();

    /// Draws the observers, or removes them while their panel is not the current one.
    void showObservers();

    /// Moves the current observer to a place in the map (MapView::clicked()); adds one where there is no
    /// current observer. Does nothing while the observers' panel is not the current one.
    void placeObserver(int x, int y, const QSize &shown);

private:
    bool showsObservers() const;
    QString previewProblem() const;
    QString sampleRemark() const;
    void update(bool clear);
    void showSeenAreas();
    void setHistoryKeys();
    void moveObserver(int row, const QPointF &ground, bool byKey);

    PreviewPane &m_pane;
    Previews &m_runs;
    intervisibilityOptionsWidget *m_observers = nullptr; ///< null until setObservers(), as is the next
    std::unique_ptr<LiveObservers> m_live;
    SightClock m_clock;
    optionsWidget *m_panel = nullptr;
    bool m_vector = false;
    bool m_isRenewed = true;          ///< the options changed since the product that is shown was computed
    ProcessOptions m_usedOptions;     ///< those that were taken up last
    ProcessOptions m_computedOptions; ///< those of the computation that was started last
    DemInfo m_dem;
};
