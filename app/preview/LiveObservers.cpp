#include "app/preview/LiveObservers.h"

#include "app/preview/MapView.h"
#include "app/preview/profile/ProfileView.h"
#include "panels/intervisibilityOptionsWidget.h"
#include "viewshed/lineofsight.h"
#include "viewshed/problem.h"

#include <QLineF>
#include <QStringList>
#include <QToolButton>

namespace
{

/// Longer computations are left to the tool: the hand would be far ahead of the picture.
constexpr double slowest = 700.0; // ms

} // namespace

LiveObservers::LiveObservers(PreviewPane &pane, intervisibilityOptionsWidget &panel)
    : m_pane(pane)
    , m_panel(panel)
    , m_profile(new ProfileView)
{
    pane.addBelow(m_profile);
    m_profile->hide();
    connect(&pane, &PreviewPane::observerMoving, this, &LiveObservers::follow);
    connect(&m_viewshed, &LiveViewshed::computed, this, &LiveObservers::showSeen);
    connect(pane.view(), &MapView::hovered, this, &LiveObservers::hover);
    connect(pane.profileButton(), &QToolButton::toggled, this, &LiveObservers::setProfileShown);
    connect(m_profile, &ProfileView::closeRequested, pane.profileButton(),
            [&pane] { pane.profileButton()->setChecked(false); });
    connect(m_profile, &ProfileView::hovered, this, [this](double distance) {
        m_pane.view()->setLinePlace(
            m_pane.scene().grid().toCells(sampleAt(m_profile->profile(), distance).point));
    });
    connect(m_profile, &ProfileView::left, this, [this] { m_pane.view()->setLinePlace({}); });
    pane.setPlaceText([this](const QPointF &cell) { return seenText(cell); });
}

LiveObservers::~LiveObservers() = default;

void LiveObservers::setShown(bool shown)
{
    m_isShown = shown;
    m_pane.profileButton()->setVisible(shown);
    m_viewshed.cancel();
    setProfileShown(m_pane.profileButton()->isChecked());
}

void LiveObservers::setCopy(const QString &copy, int band)
{
    m_viewshed.cancel();
    m_copy.set(copy, band, m_pane.scene().ground());
    m_profile->setDem(m_pane.scene().dem().path, m_pane.scene().ground().elevationUnit());
    showProfile();
}

void LiveObservers::updateOptions()
{
    if (!m_isShown)
        return;
    m_options = m_panel.options();
    if (sightResult(m_options) != SightResult::Picture)
        m_viewshed.cancel();
    m_profile->setColors({QColor(m_options.visibleColor), QColor(m_options.hiddenColor)});
    showProfile();
}

/// An observer is being dragged.
void LiveObservers::follow(int row, const QPointF &ground)
{
    const LiveTerrain *terrain = m_copy.terrain();
    m_options = m_panel.options();
    if (!m_isShown || !terrain || row < 0 || row >= m_options.observers.size())
        return;
    const double way = QLineF(m_options.observers.at(row).position(), ground).length();
    m_options.observers[row].x = ground.x();
    m_options.observers[row].y = ground.y();
    showProfile();
    if (sightResult(m_options) != SightResult::Picture) { // the tool alone computes numbers
        constexpr double sameCell = 0.001;                // of a cell
        m_pane.clearOutput(QString());
        if (way < sameCell * m_pane.scene().ground().cellSize())
            emit numbersWanted();
        return;
    }
    const QList<ToolObserver> observers = m_copy.observers(m_options.observers);
    const LiveRequestReading reading = liveRequest(m_number + 1, *terrain, observers, m_options);
    if (observers.isEmpty() || !reading.problem.isEmpty()
        || m_viewshed.expectedMilliseconds(reading.request) > slowest)
        return;
    ++m_number;
    m_viewshed.request(reading.request);
}

void LiveObservers::stay(int row)
{
    follow(row, m_panel.options().observers.value(row).position());
}

void LiveObservers::showSeen(int number, const SeenCells &cells)
{
    Q_UNUSED(number)
    const auto color = [](const QString &name) { return QColor(name).rgb(); };
    m_pane.showLiveOutput(seenPicture(cells, color(m_options.visibleColor), color(m_options.hiddenColor),
                                      color(m_options.noDataColor)),
                          m_options);
}

void LiveObservers::setProfileShown(bool shown)
{
    m_profile->setVisible(shown && m_isShown);
    m_isPinned = false;
    m_far.reset();
    showProfile();
}

bool LiveObservers::pin(const QPointF &ground)
{
    if (m_profile->isHidden())
        return false;
    m_isPinned = !m_isPinned;
    m_far = ground;
    showProfile();
    return true;
}

void LiveObservers::hover(const QPointF &cell)
{
    if (m_profile->isHidden() || m_isPinned)
        return;
    m_far = m_pane.scene().grid().toGround(cell);
    showProfile();
}

/// Draws the profile and its line on the map, or removes them where there is none.
void LiveObservers::showProfile()
{
    const int row = m_panel.currentRow();
    const LiveTerrain *terrain = m_profile->isHidden() ? nullptr : m_copy.terrain();
    Profile profile;
    if (terrain && m_far && row >= 0 && row < m_options.observers.size()) {
        ObserverPoint point = m_options.observers.at(row);
        point.enabled = true; // the profile of an observer that is off is of use, too
        const QList<ToolObserver> observers = m_copy.observers({point});
        if (!observers.isEmpty())
            profile = profileAlong(*terrain, observers.first(), *m_far, toolOptions(m_options).sightOptions());
    }
    if (!m_profile->isHidden())
        m_profile->setProfile(profile);
    QPolygonF line;
    if (profile.samples.size() > 1)
        line << m_pane.scene().grid().toCells(profile.samples.first().point)
             << m_pane.scene().grid().toCells(profile.samples.last().point);
    m_pane.view()->setLine(line);
}

/// Which observers see a place, by the numbers of their rows.
QString LiveObservers::seenText(const QPointF &cell)
{
    constexpr int mostObservers = 50; // more take longer than the mouse waits
    const LiveTerrain *terrain = m_isShown ? m_copy.terrain() : nullptr;
    if (sightResult(m_options)
        == SightResult::Height) // which does not depend on the height that is looked at here
        return {};
    if (!terrain || m_options.observers.isEmpty() || m_options.observers.size() > mostObservers)
        return {};
    const QPointF target = terrain->toCells(m_pane.scene().grid().toGround(cell));
    const int column = qRound(target.x());
    const int row = qRound(target.y());
    QStringList seers;
    for (int at = 0; at < m_options.observers.size(); ++at) {
        const QList<ToolObserver> observers = m_copy.observers({m_options.observers.at(at)});
        if (observers.isEmpty())
            continue;
        try {
            const viewshed::Sight sight =
                terrain->sight(observers.first(), toolOptions(m_options).sightOptions());
            if (sight.reaches(column, row) && viewshed::sees(terrain->ground()->terrain, sight, column, row))
                seers += QString::number(at + 1);
        } catch (const viewshed::Problem &) { // the tool refuses such an observer and says why
            return {};
        }
    }
    if (seers.isEmpty())
        return tr("vu d'aucun observateur", "MESS_VU_AUCUN");
    return (seers.size() == 1 ? tr("vu de l'observateur %1", "MESS_VU_UN")
                              : tr("vu des observateurs %1", "MESS_VU_PLUSIEURS"))
        .arg(seers.join(QStringLiteral(", ")));
}
