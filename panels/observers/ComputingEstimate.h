#pragma once

#include "dataset/workfolder.h"
#include "panels/options/sighttiming.h"

#include <QObject>

#include <functional>

/// Estimates how long the intervisibility of observers that are not in the table yet takes on this machine,
/// from a run of some of them on a reduced copy of the DEM.
class ComputingEstimate : public QObject
{
    Q_OBJECT

public:
    /// The tool's argument fragment for the observers of a point file.
    using FragmentMaker = std::function<QString(const QString &pointFile)>;

    /// `timing` and `workFolder` outlive this object. `dem` is the DEM's own ground, `band` its band from 1.
    ComputingEstimate(SightTiming &timing, WorkFolder &workFolder, const DemGround &dem, int band,
                      FragmentMaker makeFragment);

    /// Ends what it measures.
    ~ComputingEstimate() override;

    /// Begins to measure for `count` observers, of which `some` are an even selection. known() follows, unless
    /// nothing can be measured or another call takes its place.
    void begin(const QList<ObserverPoint> &some, double count);

    /// known() does not follow any more.
    void stop();

    /// Observers that begin() makes good use of.
    static constexpr int enough = 2000;

signals:
    void known(double seconds);

private:
    void removeFiles();

    SightTiming &m_timing;
    WorkFolder &m_workFolder;
    DemGround m_dem;
    int m_band;
    FragmentMaker m_makeFragment;
    int m_firstFolder = 0; ///< those of m_workFolder that hold the files of the run
    int m_endOfFolders = 0;
};
