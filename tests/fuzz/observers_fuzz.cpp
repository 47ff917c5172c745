// Feeds any bytes to the reader of observers, as a file that GDAL opens. Built as a fuzzer of its own by the
// preset "fuzz", and called with mutations of a real file by the test of the reader.

#include "viewshed/io/observers.h"
#include "viewshed/problem.h"

#include <cpl_vsi.h>
#include <gdal_priv.h>

#include <cmath>
#include <cstddef>
#include <cstdint>
#include <cstdlib>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size);

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    GDALAllRegister();
    const CPLErrorHandlerPusher quiet(CPLQuietErrorHandler);
    constexpr const char *path = "/vsimem/points.geojson";
    VSIFCloseL(VSIFileFromMemBuffer(path, const_cast<GByte *>(data), size, FALSE));
    try {
        for (const viewshed::Observer &observer : viewshed::readObservers(path)) {
            const bool inRange = std::isfinite(observer.x) && std::isfinite(observer.y)
                && std::isfinite(observer.z) && observer.reach > 0.0;
            if (!inRange)
                std::abort();
        }
    } catch (const viewshed::Problem &problem) {
        if (*problem.what() == '\0')
            std::abort();
    }
    VSIUnlink(path);
    return 0;
}
