#pragma once

#include "app/preview/live/LiveTerrain.h"

#include <QPointF>
#include <QVector>

#include <optional>

/// A place on the line from an eye to its far end. Altitudes are in the DEM's vertical unit.
struct ProfileSample
{
    double distance = 0.0;        ///< from the eye along the ground, in metres
    QPointF point;                ///< in the DEM's coordinates
    std::optional<double> ground; ///< elevation of the ground as the DEM has it; nothing without data
    /// Altitude of the sight line from the eye to the target on the far end; nothing if that has no ground.
    ///
    /// The viewshed lowers the ground by the Earth's curvature and leaves the line straight. A profile with the
    /// true elevations does the opposite: the line is raised by as much as the ground would be lowered. So it
    /// is bent, and it passes above and below the true ground where the straight line passes the lowered one.
    std::optional<double> sightLine;
    bool hidden = false; ///< a target on the ground here would not be seen; false without ground
};

/// What an eye sees along a line. The observer's maximum distance is considered in `beyondReach` alone.
struct Profile
{
    /// From the eye to the far end. Between them, one for each place where the line crosses a column or a row
    /// of cell centres, as far as the DEM reaches: there the viewshed looks at the ground. Empty if no line can
    /// be drawn; a single one if the far end is the eye's own place.
    QVector<ProfileSample> samples;
    double length = 0.0; ///< distance of the far end in metres
    double eyeAltitude = 0.0;
    double targetHeight = 0.0;  ///< of each target above the ground
    double curvature = 0.0;     ///< the tool's factor on the Earth's curvature
    double curvatureDrop = 0.0; ///< at d metres the Earth's curvature lowers the ground by curvatureDrop · d²
    bool farSeen = false;       ///< the target on the far end is seen
    bool beyondReach = false;   ///< the far end is farther than the observer's maximum distance
    /// The least height above the ground at which a target on the far end is seen: 0 if it is seen at
    /// targetHeight. Nothing if the far end has no ground.
    std::optional<double> leastHeight;
    int hiddenCount = 0; ///< number of hidden samples
    int voidCount = 0;   ///< number of samples without ground
};

/// The profile from the observer to the centre of the cell under `farPoint`, which is in the DEM's coordinates
/// and may lie outside the DEM. The far end is a cell's centre so that the profile agrees with the colour of
/// the cell in the viewshed. `options` are those of toolOptions(). No samples if one of the two points is
/// impossible or too far away.
Profile profileAlong(const LiveTerrain &terrain, const ToolObserver &observer, const QPointF &farPoint,
                     const viewshed::SightOptions &options);

/// The profile at a distance in metres: interpolated between the neighbouring samples, and `hidden` that of the
/// sample behind it. The first or last sample for a distance outside the profile, which must have samples.
ProfileSample sampleAt(const Profile &profile, double distance);
