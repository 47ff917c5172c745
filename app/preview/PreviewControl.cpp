#include "app/preview/PreviewControl.h"

#include "panels/intervisibilityOptionsWidget.h"

#include <utility>

PreviewControl::PreviewControl(PreviewPane &pane, Previews &runs, intervisibilityOptionsWidget &observers)
    : m_pane(pane)
    , m_runs(runs)
    , m_observers(observers)
{
    connect(&runs, &Previews::reductionStarted, &pane, [&pane] { pane.setReducing(0); });
    connect(&runs, &Previews::computationStarted, &pane, [&pane] { pane.setComputing(0); });
    connect(&runs, &Previews::interrupted, &pane, [&pane] {
        pane.setReducing(-1);
        pane.setComputing(-1);
    });
    connect(&pane, &PreviewPane::observerChosen, &observers, &intervisibilityOptionsWidget::chooseObserver);
    connect(&pane, &PreviewPane::partChanged, &runs, &Previews::setPart);
    connect(&pane, &PreviewPane::observerMoved, &observers, &intervisibilityOptionsWidget::placeObserver);
}

void PreviewControl::setDem(const DemInfo &dem)
{
    const DemInfo before = std::exchange(m_dem, dem);
    if (m_pane.setDem(dem)) {
        m_pane.setReducing(-1);
        m_runs.setDem(m_pane.dem());
    } else if (!dem.isSameBandAs(before)) {
        showInput();
    } else if (before.searching == dem.searching) {
        return;
    }
    update(false);
}

void PreviewControl::showPanel(const optionsWidget *panel, const QString &name, bool vector)
{
    const bool another = panel != m_panel;
    m_panel = panel;
    m_vector = vector;
    m_pane.setProductName(name);
    update(another);
}

/// Why no preview of the product can be computed, in sentences; empty when one can.
QString PreviewControl::previewProblem() const
{
    if (!m_panel || !m_panel->isComplete() || !optionsProblem(m_panel->processOptions()).isEmpty())
        return PreviewPane::tr("Les options ne suffisent pas encore pour un aperçu.", "MESS_APERCU_OPTIONS");
    if (m_dem.searching && needsExtremes(m_panel->processOptions()))
        return PreviewPane::tr("Les altitudes extrêmes du MNT sont recherchées.", "MESS_APERCU_ATTENTE");
    return m_panel->launchWarnings().join(QLatin1Char('\n'));
}

void PreviewControl::update(bool clear)
{
    const QString problem = previewProblem();
    if (clear || !problem.isEmpty())
        m_pane.clearOutput(problem);
    m_pane.setCompass(m_panel ? compassOf(m_panel->processOptions()) : std::nullopt);
    m_pane.setComputing(-1);
    showObservers();
    m_runs.update(problem.isEmpty());
}

void PreviewControl::showInput()
{
    m_pane.setReducing(-1);
    if (!m_runs.copy().isEmpty())
        m_pane.showInput(m_runs.copy(), m_runs.part());
}

void PreviewControl::showOutput()
{
    m_pane.setComputing(-1);
    if (!m_pane.showOutput(m_runs.product(), m_runs.part(), m_vector, m_runs.isProductTurned()))
        m_pane.clearOutput(QString());
}

void PreviewControl::showObservers()
{
    const bool shown = m_panel == &m_observers;
    m_pane.setObservers(shown ? m_observers.options().observers : QList<ObserverPoint>(),
                        m_observers.currentRow());
}

void PreviewControl::placeObserver(int x, int y, const QSize &shown)
{
    if (m_panel == &m_observers)
        m_observers.placeObserver(m_observers.currentRow(), m_pane.groundAt(x, y, shown));
}
