#pragma once

#include "panels/observers/ObserverPointsModel.h"
#include "panels/options/sighttiming.h"

class QLabel;

/// The line below the observers' table that says, where they are many, how long their intervisibility takes on
/// this machine. It is known from the time that a preview took.
class ComputingNote
{
public:
    /// Both outlive this object.
    ComputingNote(QLabel &label, const ObserverPointsModel &model);

    /// Without a timing, as before this call, nothing is said. It outlives this object.
    void setTiming(SightTiming *timing) { m_timing = timing; }
    SightTiming *timing() const { return m_timing; }

    /// A preview of all the DEM and of model.observers(copy, mostPreviewed) took so long.
    void showFor(double previewSeconds, const DemGround &copy, const DemGround &dem);

    /// Observers or options changed.
    void clear();

    /// The horizons are written, too: previews do not time them, and the line says so.
    void setSkyline(bool skyline);

    void retranslate();

private:
    QLabel &m_label;
    const ObserverPointsModel &m_model;
    SightTiming *m_timing = nullptr;
    bool m_skyline = false;
    double m_seconds = 0.0; ///< those that the line says
    int m_change = 0;       ///< counts the changes, so that a time that comes late is known as such
};
