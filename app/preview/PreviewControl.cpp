#include "app/preview/PreviewControl.h"

#include "app/preview/MapView.h"
#include "colortable/colortablefile.h"
#include "messages/shownnumber.h"
#include "panels/intervisibilityOptionsWidget.h"
#include "panels/options/contours/contourlevels.h"
#include "panels/options/fragments.h"
#include "panels/options/previewobservers.h"

#include <QAction>
#include <QFile>
#include <QLocale>

#include <utility>

PreviewControl::PreviewControl(PreviewPane &pane, Previews &runs, const ToolPaths &tools,
                               WorkFolder &workFolder)
    : m_pane(pane)
    , m_runs(runs)
    , m_clock(runs, tools, workFolder)
{
    connect(&runs, &Previews::reductionStarted, &pane, [&pane] { pane.setReducing(0); });
    connect(&runs, &Previews::computationStarted, &pane, [this] {
        m_pane.setComputing(0);
        if (!m_panel)
            return;
        m_computedOptions = m_panel->processOptions();
        if (auto *contours = std::get_if<ContourOptions>(&m_computedOptions))
            contours->styled = contours->styled || contours->polygons; // as inLargerCells()
    });
    connect(&runs, &Previews::interrupted, &pane, [&pane] {
        pane.setReducing(-1);
        pane.setComputing(-1);
    });
    connect(&pane, &PreviewPane::partChanged, &runs, &Previews::setPart);
}

PreviewControl::~PreviewControl()
{
    if (m_observers)
        m_observers->setTiming(nullptr);
}

void PreviewControl::setObservers(intervisibilityOptionsWidget &observers)
{
    m_observers = &observers;
    m_observers->setTiming(&m_clock);
    m_live = std::make_unique<LiveObservers>(m_pane, observers);
    m_live->setCopy(m_runs.copy(), m_dem.band);
    connect(m_live.get(), &LiveObservers::numbersWanted, this, [this] { update(false); });
    connect(&m_pane, &PreviewPane::observerChosen, &observers, &intervisibilityOptionsWidget::chooseObserver);
    connect(&m_pane, &PreviewPane::observerMoved, this, &PreviewControl::moveObserver);
}

/// Whether the panel of the observers is the current one.
bool PreviewControl::showsObservers() const
{
    return m_observers && m_panel == m_observers;
}

void PreviewControl::setDem(const DemInfo &dem)
{
    const DemInfo before = std::exchange(m_dem, dem);
    if (m_pane.setDem(dem)) {
        m_pane.setReducing(-1);
        if (m_live)
            m_live->setCopy({}, 1);
        m_runs.setDem(m_pane.dem());
    } else if (!dem.isSameBandAs(before)) {
        showInput();
    } else if (before.searching == dem.searching) {
        return;
    }
    update(false);
}

void PreviewControl::showPanel(optionsWidget *panel, const QString &name, bool vector)
{
    m_vector = vector;
    m_pane.setProductName(name);
    if (panel != m_panel) {
        if (m_panel)
            m_panel->setChangeListener({});
        m_panel = panel;
        setHistoryKeys();
        if (m_live)
            m_live->setShown(showsObservers());
        if (m_panel)
            m_panel->setChangeListener([this] { update(false); });
        update(true);
        return;
    }
    // The panel reports each change twice: as it happens, and once it has settled. The product of the first
    // report is on its way or here already.
    if (!m_panel || withoutSideFiles(m_panel->processOptions()) != m_usedOptions)
        update(false);
}

/// On the map, the keys of the history work while it shows the observers.
void PreviewControl::setHistoryKeys()
{
    if (!m_observers)
        return;
    for (QAction *action : m_observers->historyActions()) {
        if (showsObservers())
            m_pane.view()->addAction(action);
        else
            m_pane.view()->removeAction(action);
    }
}

void PreviewControl::refresh()
{
    update(false);
}

void PreviewControl::renew()
{
    if (m_live)
        m_live->setCopy({}, 1);
    m_runs.renew();
    update(false);
}

/// Why no preview of the product can be computed, or what the user can do for one, in sentences; empty when one
/// can be computed.
QString PreviewControl::previewProblem() const
{
    if (showsObservers() && m_observers->options().observers.isEmpty())
        return PreviewPane::tr(
            "Cliquez sur la carte pour placer un observateur.\nAu clavier, la touche Inser le "
            "place au milieu, et Maj avec une flèche le déplace.",
            "MESS_APERCU_CLIQUER");
    const auto *contours = m_panel ? std::get_if<ContourOptions>(&m_usedOptions) : nullptr;
    const bool hasNoLevels = contours && !contours->interval && contours->fixedLevels.trimmed().isEmpty();
    if (const auto interval = hasNoLevels ? roundInterval(m_dem.extremes) : std::nullopt)
        return PreviewPane::tr("Indiquez un intervalle, par exemple %1.", "MESS_APERCU_INTERV")
            .arg(shownNumber(*interval, 'g', 6));
    if (!m_panel)
        return PreviewPane::tr("Les options ne suffisent pas encore pour un aperçu.", "MESS_APERCU_OPTIONS");
    if (const QString missing = m_panel->missing(); !missing.isEmpty())
        return missing;
    if (const QString problem = optionsProblem(m_panel->processOptions()); !problem.isEmpty())
        return problem;
    if (m_dem.searching && needsExtremes(m_panel->processOptions()))
        return PreviewPane::tr("Les altitudes extrêmes du MNT sont recherchées.", "MESS_APERCU_ATTENTE");
    return m_panel->launchWarnings().join(QLatin1Char('\n'));
}

/// Says that the preview shows the views of some observers only; empty where it shows those of all.
QString PreviewControl::sampleRemark() const
{
    const int count = showsObservers() ? m_observers->observerCount() : 0;
    if (count <= mostPreviewed)
        return {};
    const QString remark = sightResult(m_observers->options())
            == SightResult::Count // the map's numbers are smaller than the product's
        ? PreviewPane::tr("Aperçu avec %1 des %2 observateurs : la carte ne compte que ceux-là.",
                          "MESS_APERCU_ECHANT_N")
        : PreviewPane::tr("Aperçu avec %1 des %2 observateurs.", "MESS_APERCU_ECHANT");
    return remark.arg(QLocale().toString(mostPreviewed), QLocale().toString(count));
}

/// The options, the process or the DEM changed. another: what is shown is of another process.
void PreviewControl::update(bool another)
{
    if (m_panel)
        m_usedOptions = withoutSideFiles(m_panel->processOptions());
    const QString problem = m_dem.path.isEmpty() ? QString() : previewProblem();
    const bool isComplete = !m_dem.path.isEmpty() && problem.isEmpty();
    if (!m_dem.path.isEmpty() && (another || !isComplete))
        m_pane.clearOutput(problem);
    else if (isComplete)
        m_pane.view()->setText({});
    m_isRenewed = true;
    m_pane.setCompass(m_panel ? compassOf(m_usedOptions) : std::nullopt);
    m_pane.setPlacing(showsObservers());
    m_pane.setRemark(sampleRemark());
    showObservers();
    if (another)
        m_runs.replace(isComplete);
    else
        m_runs.update(isComplete);
}

void PreviewControl::showInput()
{
    m_pane.setReducing(-1);
    if (!m_runs.copy().isEmpty())
        m_pane.showInput(m_runs.copy(), m_runs.part());
    if (m_live)
        m_live->setCopy(m_runs.copy(), m_dem.band);
}

void PreviewControl::showOutput()
{
    m_pane.setComputing(-1);
    if (m_live)
        m_live->dropLate();
    const QString table = m_runs.productRequest().toolInput.colorTableFile;
    ShownProduct product{.file = m_runs.product(),
                         .options = m_computedOptions,
                         .table = table.isEmpty() ? QList<QuvoColorDef>() : readColorTable(table).entries,
                         .vector = m_vector,
                         .turned = m_runs.isProductTurned(),
                         .renewed = m_isRenewed};
    if (!m_pane.showOutput(product))
        m_pane.clearOutput(QString());
    m_isRenewed = m_runs.isProductOutdated();
    const bool isWhole = m_runs.part().size() == m_pane.dem().size; // what lies outside of a part counts, too
    if (!showsObservers() || !isWhole || m_runs.isProductOutdated())
        return;
    showSeenAreas();
    m_observers->setPreviewTime(m_runs.computingSeconds(), m_runs.copy());
}

/// Shows in the table what each observer sees, where the tool has written it.
void PreviewControl::showSeenAreas()
{
    for (const SideFile &side : m_runs.productRequest().toolInput.sideFiles) {
        QFile file(side.path);
        if (side.argument == statisticsArgument && file.open(QIODevice::ReadOnly))
            m_observers->setSeenAreas(readSeenAreas(QString::fromUtf8(file.readAll())));
    }
}

void PreviewControl::showObservers()
{
    const bool shown = showsObservers();
    m_pane.setObservers(shown ? m_observers->options().observers : QList<ObserverPoint>(),
                        shown ? m_observers->currentRow() : -1);
    if (m_live)
        m_live->updateOptions();
}

void PreviewControl::placeObserver(int x, int y, const QSize &shown)
{
    const QPointF ground = m_pane.groundAt(x, y, shown);
    if (showsObservers() && !m_live->pin(ground))
        moveObserver(m_observers->currentRow(), ground, false);
}

void PreviewControl::moveObserver(int row, const QPointF &ground, bool byKey)
{
    const bool isPlaced = m_observers->dropObserver(row, ground, byKey);
    if (sightResult(m_observers->options()) != SightResult::Picture)
        update(false); // the numbers were removed from the map when the drag began
    else if (!isPlaced)
        m_live->stay(row);
    showObservers(); // an observer that could not be moved stands where it stood
}
