#include "dataset/contours/areaclasses.h"

#include <algorithm>
#include <numeric>

QVector<AreaClass> areaClasses(const QVector<AreaBounds> &written, const AreaBounds &dem)
{
    // The upper bounds are all true or too high, so they give the order; of the lower ones the first is not.
    QVector<int> order(written.size());
    std::iota(order.begin(), order.end(), 0);
    std::sort(order.begin(), order.end(),
              [&](int one, int other) { return written[one].highest < written[other].highest; });
    QVector<AreaClass> classes(written.size());
    for (int rank = 0; rank < order.size(); ++rank) {
        const AreaBounds &bounds = written[order[rank]];
        classes[order[rank]] = {{rank == 0 ? dem.lowest : std::max(bounds.lowest, dem.lowest),
                                 std::min(bounds.highest, dem.highest)},
                                rank};
    }
    return classes;
}
