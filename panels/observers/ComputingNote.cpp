#include "panels/observers/ComputingNote.h"

#include "messages/label.h"
#include "panels/options/previewobservers.h"

#include <QLabel>

ComputingNote::ComputingNote(QLabel &label, const ObserverPointsModel &model)
    : m_label(label)
    , m_model(model)
{
    m_label.hide();
}

void ComputingNote::showFor(double previewSeconds, const DemGround &copy, const DemGround &dem)
{
    clear();
    constexpr int fewObservers = 20; // their time is that of the preview, as far as anyone feels
    const int count = m_model.enabledCount() - m_model.groundlessCount();
    if (count <= fewObservers || !m_timing || m_timing->isBusy() || !copy.isOpen() || !dem.isOpen())
        return;
    constexpr int most = 1000; // so many tell what all have to do
    const QList<ToolObserver> some = m_model.observers(copy, most);
    if (some.isEmpty())
        return;
    const auto each = static_cast<double>(some.size());
    const double timedWork = sightWork(some, copy) / each * std::min(count, mostPreviewed);
    const double work = sightWork(some, dem) / each * count;
    m_timing->measure({}, [this, previewSeconds, timedWork, work, change = m_change](const SightTimes &times) {
        if (change != m_change)
            return;
        m_seconds = secondsHere({times.start, previewSeconds}, timedWork, work);
        retranslate();
        m_label.show();
    });
}

void ComputingNote::clear()
{
    ++m_change;
    m_label.hide();
}

void ComputingNote::setSkyline(bool skyline)
{
    m_skyline = skyline;
    retranslate();
}

void ComputingNote::retranslate()
{
    const QString text = m_skyline
        ? labelText({"MESS_TPS_CALC_HORIZON", "Durée du calcul, sans l'horizon : %1."})
        : labelText({"MESS_TPS_CALC_ICI", "Durée du calcul : %1."});
    m_label.setText(text.arg(hereText(m_seconds)));
}
