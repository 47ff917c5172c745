#pragma once

#include <QString>

// The argument grammars of the processes: plain option record in, argument fragment out. A fragment is inserted
// in the command line as it stands (app/commandline.h), so every blank in it counts.

/// Options of the shaded relief process, as its panel shows them.
struct ShadedOptions
{
    double exaggeration = 1.0; ///< factor applied to the elevations, 0 to 100
    int scaleIndex = 0;        ///< row of the scale list (0 to 3); -1 when a ratio was typed
    QString scaleText;      ///< the typed ratio, vertical unit over horizontal unit; used when scaleIndex is -1
    double compass = 315.0; ///< compass reading in degrees, 0 at the north label
    int altitude = 45;      ///< height of the sun above the horizon, in degrees, 0 to 90
    bool computeEdges = false;      ///< also at the raster's edges and beside no-data cells
    bool zevenbergenThorne = false; ///< Zevenbergen and Thorne's formula (smooth terrain) instead of Horn's
};

/// The azimuth that the tool gets is 270 minus the compass reading and may be negative: kept so on purpose.
QString shadedFragment(const ShadedOptions &options);

/// Whether the options are enough to launch the process: a typed ratio is not empty.
bool isComplete(const ShadedOptions &options);

/// Rows of the scale list, the ratio of the vertical unit to the horizontal one: 0 the same unit, 1 X and Y in
/// metres and Z in feet, 2 X and Y in degrees and Z in metres, 3 X and Y in degrees and Z in feet.
constexpr int scaleRowCount = 4;

/// The scale argument of a row of the list, with its blank ("-s 1 "); for row -1 the typed text's, which is
/// empty for an empty text and ends in two blanks for any other.
QString scaleFragment(int scaleIndex, const QString &scaleText);
