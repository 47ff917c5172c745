#include "dataset/rasterinfo.h"

#include "dataset/gdalmessages.h"
#include "dataset/pathencoding.h"
#include "messages/label.h"

#include <gdal_priv.h>

#include <memory>

RasterInfo readRasterInfo(const QString &path)
{
    RasterInfo info;
    const GdalMessages messages;
    const std::unique_ptr<GDALDataset> dataset(
        GDALDataset::Open(encodePath(path).constData(), GDAL_OF_RASTER | GDAL_OF_VERBOSE_ERROR));
    if (!dataset) {
        info.error = messages.lastError();
        return info;
    }
    info.width = dataset->GetRasterXSize();
    info.height = dataset->GetRasterYSize();
    info.bandCount = dataset->GetRasterCount();
    char **files = dataset->GetFileList();
    for (char **file = files; file && *file; ++file)
        info.files += decodePath(*file);
    CSLDestroy(files);
    if (info.bandCount == 0)
        info.error = labelText({"MESS_RASTER_SANS_BANDE", "Ce fichier ne contient aucune bande raster."});
    return info;
}
