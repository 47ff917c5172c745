#pragma once

#include "app/preview/PreviewPane.h"
#include "app/preview/Previews.h"

class intervisibilityOptionsWidget;
class optionsWidget;

/// Brings together what the previews show and what makes it: follows the DEM, the current panel's options and
/// the observers.
class PreviewControl : public QObject
{
    Q_OBJECT

public:
    /// Pane, runs and panel outlive it.
    PreviewControl(PreviewPane &pane, Previews &runs, intervisibilityOptionsWidget &observers);

    void takeDem(const DemInfo &dem);

    /// The options of a panel are others now, or another panel is the current one; null: none is. name: of
    /// the product. vector: whether that is one.
    void showPanel(const optionsWidget *panel, const QString &name, bool vector);

    void showInput();
    void showOutput();

    /// Draws the observers while their panel is the current one.
    void showObservers();

    /// The current observer goes where the input preview was clicked (PreviewLabel::clicked()), while its panel
    /// is the current one; where there is no observer, one comes.
    void placeObserver(int x, int y, const QSize &shown);

private:
    QString problem() const;
    void update(bool clear);

    PreviewPane &m_pane;
    Previews &m_runs;
    intervisibilityOptionsWidget &m_observers;
    const optionsWidget *m_panel = nullptr;
    bool m_vector = false;
    DemInfo m_dem;
};
