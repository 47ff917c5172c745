#include "panels/observers/ComputingEstimate.h"

#include "panels/options/pointfile.h"

ComputingEstimate::ComputingEstimate(SightTiming &timing, WorkFolder &workFolder, const DemGround &dem,
                                     int band, FragmentMaker makeFragment)
    : m_timing(timing)
    , m_workFolder(workFolder)
    , m_dem(dem)
    , m_band(band)
    , m_makeFragment(std::move(makeFragment))
{ }

ComputingEstimate::~ComputingEstimate()
{
    stop();
}

void ComputingEstimate::begin(const QList<ObserverPoint> &some, double count)
{
    stop();
    const QString file = m_timing.copy();
    const DemGround copy = file.isEmpty() ? DemGround() : DemGround(file, m_band);
    if (!copy.isOpen())
        return;
    QList<ToolObserver> observers;
    for (const ObserverPoint &point : some) {
        const auto observer = toolObserver(point, copy.surfaceElevation(point.position()),
                                           m_dem.surfaceElevation(point.position()));
        if (observer)
            observers += *observer;
    }
    if (observers.isEmpty())
        return;
    const auto each = static_cast<double>(observers.size());
    const double work = sightWork(observers, m_dem) / each * count;
    const QList<ToolObserver> timed =
        spread(observers, timedObservers(count, sightWork(observers, copy) / each));
    const double timedWork = sightWork(timed, copy);

    m_firstFolder = m_workFolder.folderCount();
    const QString folder = m_workFolder.newFolder();
    m_endOfFolders = m_workFolder.folderCount();
    const QString points = folder.isEmpty() ? QString() : writePointFile(folder, timed);
    if (!points.isEmpty())
        m_timing.measure(m_makeFragment(points), [this, timedWork, work](const SightTimes &times) {
            removeFiles();
            emit known(secondsHere(times, timedWork, work));
        });
}

void ComputingEstimate::stop()
{
    m_timing.stop();
    removeFiles();
}

void ComputingEstimate::removeFiles()
{
    m_workFolder.removeFolders(m_firstFolder, m_endOfFolders);
    m_firstFolder = m_endOfFolders = 0;
}
