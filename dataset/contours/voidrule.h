#pragma once

#include <QString>

#include <functional>
#include <optional>
#include <vector>

class GDALRasterBand;

/// Which cells of a band hold no elevation, besides those that hold no finite number.
struct VoidRule
{
    bool everyValueValid = false;  ///< the band's no-data value counts as an elevation; `ignored` is not used
    std::optional<double> ignored; ///< a value that stands for no data
};

/// The values of a band that stand for no data.
class VoidValues
{
public:
    /// How an ignored value and the no-data value of the band stand together.
    enum Meaning
    {
        Both,           ///< both are void
        IgnoredReplaces ///< the no-data value is an elevation where a value is ignored, as for the contour tool
    };

    VoidValues(GDALRasterBand &band, const VoidRule &rule, Meaning meaning);

    bool holds(double value) const; ///< also for values that are not finite

private:
    std::vector<double> m_values;
};

/// What a band holds in the cells that the contour tool counts.
struct CellRange
{
    double lowest = 0.0; ///< 0 where no cell counts
    double highest = 0.0;
    long long count = 0;
    double cellArea = 0.0; ///< in square units of the raster's coordinates
    bool isStopped = false;
    bool isRead = false; ///< false after a stop, and where the raster cannot be read
};

/// Reads every cell of a band. band: from 1. `progress` receives the share read, from 0 to 1, and stops the
/// reading when it returns false.
CellRange cellRange(const QString &dem, int band, const VoidRule &rule,
                    const std::function<bool(double)> &progress);
