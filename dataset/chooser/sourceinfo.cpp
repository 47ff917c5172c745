#include "dataset/chooser/sourceinfo.h"

#include "dataset/chooser/ownraster.h"
#include "dataset/gdalmessages.h"
#include "dataset/hgt.h"
#include "dataset/pathencoding.h"
#include "dataset/rasterinfo.h"
#include "dataset/references.h"
#include "messages/label.h"

#include <QDir>
#include <QElapsedTimer>
#include <QFileInfo>

#include <cpl_conv.h>
#include <ogrsf_frmts.h>

#include <array>
#include <cmath>
#include <cstdlib>
#include <memory>
#include <utility>
#include <vector>

namespace
{

using Dataset = std::unique_ptr<GDALDataset>;

Dataset openSource(const QString &name, SourceWanted wanted)
{
    const unsigned kind = wanted == SourceWanted::Rasters ? GDAL_OF_RASTER : GDAL_OF_VECTOR;
    return Dataset(GDALDataset::Open(encodePath(name).constData(), kind | GDAL_OF_VERBOSE_ERROR));
}

QString crsText(const OGRSpatialReference *crs)
{
    if (!crs || crs->IsEmpty())
        return {};
    const QString name = QString::fromUtf8(crs->GetName());
    const char *authority = crs->GetAuthorityName(nullptr);
    const char *code = crs->GetAuthorityCode(nullptr);
    if (!authority || !code)
        return name;
    return QStringLiteral("%1 (%2:%3)").arg(name, QString::fromUtf8(authority), QString::fromUtf8(code));
}

BandFacts bandFacts(GDALRasterBand &band)
{
    BandFacts facts;
    facts.type = QString::fromLatin1(GDALGetDataTypeName(band.GetRasterDataType()));
    int hasNoData = FALSE;
    const double noData = band.GetNoDataValue(&hasNoData);
    if (hasNoData)
        facts.noData = std::isnan(noData) ? QStringLiteral("NaN") : QString::number(noData, 'g', 10);
    facts.description = QString::fromUtf8(band.GetDescription());
    double deviation = 0.0;
    constexpr int approximate = TRUE;
    constexpr int evenIfCellsMustBeRead = FALSE;
    facts.known = band.GetStatistics(approximate, evenIfCellsMustBeRead, &facts.minimum, &facts.maximum,
                                     &facts.mean, &deviation)
        == CE_None;
    return facts;
}

/// The extent of a raster that an affine transformation places, also where it is turned.
void describePlace(GDALDataset &dataset, SourceInfo &info)
{
    std::array<double, 6> ground{};
    if (dataset.GetGeoTransform(ground.data()) != CE_None)
        return;
    QRectF box;
    bool first = true;
    for (const auto &[column, row] : {std::pair(0, 0), std::pair(info.width, 0), std::pair(0, info.height),
                                      std::pair(info.width, info.height)}) {
        const QPointF corner(ground[0] + column * ground[1] + row * ground[2],
                             ground[3] + column * ground[4] + row * ground[5]);
        if (first)
            box = QRectF(corner, corner);
        box.setCoords(std::min(box.left(), corner.x()), std::min(box.top(), corner.y()),
                      std::max(box.right(), corner.x()), std::max(box.bottom(), corner.y()));
        first = false;
    }
    info.box = box;
    info.cell = {std::hypot(ground[1], ground[4]), std::hypot(ground[2], ground[5])};
}

/// The subdatasets, in the order of the file.
QVector<SourceItem> subdatasets(GDALDataset &dataset)
{
    QVector<SourceItem> items;
    char **list = dataset.GetMetadata("SUBDATASETS");
    for (int number = 1;; ++number) {
        const QByteArray key = "SUBDATASET_" + QByteArray::number(number);
        const char *name = CSLFetchNameValue(list, (key + "_NAME").constData());
        if (!name)
            return items;
        const char *title = CSLFetchNameValue(list, (key + "_DESC").constData());
        items += {decodePath(name), title ? QString::fromUtf8(title) : decodePath(name)};
    }
}

void describeRaster(GDALDataset &dataset, SourceInfo &info)
{
    info.width = dataset.GetRasterXSize();
    info.height = dataset.GetRasterYSize();
    info.crs = crsText(dataset.GetSpatialRef());
    info.items = subdatasets(dataset);
    for (int band = 1; band <= dataset.GetRasterCount(); ++band)
        info.bands += bandFacts(*dataset.GetRasterBand(band));
    if (!info.bands.isEmpty()) {
        info.kind = SourceKind::Raster;
        describePlace(dataset, info);
        info.problem = readRasterInfo(info.name).problem;
        if (!info.problem.isEmpty())
            info.kind = SourceKind::Unreadable;
    } else if (!info.items.isEmpty()) {
        info.kind = SourceKind::Container;
    } else {
        info.problem = labelText({"MESS_RASTER_SANS_BANDE", "Ce fichier ne contient aucune bande raster."});
    }
}

LayerGeometry geometryOf(OGRwkbGeometryType type)
{
    switch (wkbFlatten(OGR_GT_GetLinear(type))) {
    case wkbPoint:
    case wkbMultiPoint:
        return LayerGeometry::Points;
    case wkbLineString:
    case wkbMultiLineString:
        return LayerGeometry::Lines;
    case wkbPolygon:
    case wkbMultiPolygon:
        return LayerGeometry::Areas;
    case wkbNone:
        return LayerGeometry::None;
    default:
        return LayerGeometry::Any;
    }
}

void describeLayers(GDALDataset &dataset, SourceInfo &info)
{
    for (int index = 0; index < dataset.GetLayerCount(); ++index) {
        OGRLayer &layer = *dataset.GetLayer(index);
        constexpr int evenIfAllMustBeRead = FALSE;
        info.layers += {QString::fromUtf8(layer.GetName()), geometryOf(layer.GetGeomType()),
                        layer.GetFeatureCount(evenIfAllMustBeRead), crsText(layer.GetSpatialRef())};
    }
    if (info.layers.isEmpty()) {
        info.problem = labelText({"MESS_SRC_SANS_COUCHE", "Cette source ne contient aucune couche."});
        return;
    }
    info.kind = SourceKind::Vector;
    info.crs = info.layers.first().crs;
}

/// Shortens GDAL's wait for a server while an object lives: a window waits for it. A shorter limit of the
/// user's stays.
class Patience
{
public:
    Patience()
    {
        constexpr int longest = 10; // s
        for (const char *limit : {"GDAL_HTTP_CONNECTTIMEOUT", "GDAL_HTTP_LOW_SPEED_TIME"}) {
            const int current = std::atoi(CPLGetConfigOption(limit, "0"));
            if (current <= 0 || current > longest)
                m_limits.push_back(std::make_unique<CPLConfigOptionSetter>(
                    limit, QByteArray::number(longest).constData(), false));
        }
        m_limits.push_back(std::make_unique<CPLConfigOptionSetter>("GDAL_HTTP_LOW_SPEED_LIMIT", "1", true));
    }

private:
    std::vector<std::unique_ptr<CPLConfigOptionSetter>> m_limits;
};

/// Whether GDAL lists files under the name: a folder, or an archive in one of its virtual file systems.
bool isFolder(const QString &name)
{
    VSIStatBufL status;
    return !name.isEmpty() && VSIStatExL(encodePath(name).constData(), &status, VSI_STAT_NATURE_FLAG) == 0
        && VSI_ISDIR(status.st_mode);
}

/// Describes what GDAL does not open as what is wanted: a folder, an archive, a raster with a header of 256
/// bytes, elevations without a header, or a source of the other kind.
void describeOthers(SourceInfo &info, SourceWanted wanted, const QString &gdalText)
{
    const QFileInfo file(info.name);
    const bool isLocal = !isVirtualPath(info.name) && file.isAbsolute();
    info.listing = isFolder(info.name) ? info.name : archiveListing(info.name);
    if (isFolder(info.listing)) {
        info.kind = SourceKind::Container;
        return;
    }
    info.listing.clear();
    info.header = isLocal && wanted == SourceWanted::Rasters ? readOwnHeader(info.name) : std::nullopt;
    if (info.header) {
        info.kind = SourceKind::OwnRaster;
        info.problem = labelText({"MESS_ENT_ILLISIBLE",
                                  "Ce raster a un format dont GDAL ne sait pas lire les cellules : seul son "
                                  "en-tête est affiché, et il ne peut pas servir de MNT."});
        return;
    }
    if (wanted == SourceWanted::Rasters && openSource(info.name, SourceWanted::Vectors)) {
        info.problem = labelText(
            {"MESS_SRC_VECTEUR", "Cette source ne contient que des données vecteur, et aucun raster."});
        return;
    }
    if (wanted == SourceWanted::Vectors && openSource(info.name, SourceWanted::Rasters)) {
        info.problem =
            labelText({"MESS_SRC_RASTER", "Cette source ne contient qu'un raster, et aucune couche vecteur."});
        return;
    }
    info.problem = wanted == SourceWanted::Rasters ? readRasterInfo(info.name).problem : gdalText;
    info.mayBeTile =
        isLocal && wanted == SourceWanted::Rasters && !hgtProblem(file.fileName(), file.size()).isEmpty();
}

} // namespace

QVector<LayerFacts> usableLayers(const QString &name)
{
    const GdalMessages messages;
    const Dataset dataset =
        endlessSourceProblem(name).isEmpty() ? openSource(name, SourceWanted::Vectors) : nullptr;
    QVector<LayerFacts> layers;
    for (int index = 0; dataset && index < dataset->GetLayerCount(); ++index) {
        OGRLayer &layer = *dataset->GetLayer(index);
        const LayerGeometry geometry = geometryOf(layer.GetGeomType());
        const long long count = geometry == LayerGeometry::None ? 0 : layer.GetFeatureCount();
        if (count > 0)
            layers += {QString::fromUtf8(layer.GetName()), geometry, count, crsText(layer.GetSpatialRef())};
    }
    return layers;
}

QString archiveListing(const QString &path)
{
    constexpr std::pair<const char *, const char *> endings[] = {{".zip", "/vsizip/"},
                                                                 {".kmz", "/vsizip/"},
                                                                 {".tar", "/vsitar/"},
                                                                 {".tgz", "/vsitar/"},
                                                                 {".tar.gz", "/vsitar/"}};
    for (const auto &[ending, prefix] : endings) {
        const QLatin1String start(prefix);
        if (path.endsWith(QLatin1String(ending), Qt::CaseInsensitive))
            return path.startsWith(start) ? path : start + path;
    }
    return {};
}

SourceInfo readSourceInfo(const QString &name, SourceWanted wanted)
{
    SourceInfo info;
    info.name = name;
    info.problem = endlessSourceProblem(name);
    if (!info.problem.isEmpty())
        return info;
    const GdalMessages messages;
    const Patience patience;
    QElapsedTimer clock;
    clock.start();
    const Dataset dataset = openSource(name, wanted);
    if (!dataset) {
        // A server that kept GDAL waiting is not asked again in other ways.
        constexpr int quick = 1000; // ms
        info.problem = messages.lastError();
        if (clock.elapsed() < quick)
            describeOthers(info, wanted, messages.lastError());
        if (info.kind == SourceKind::Unreadable && info.problem.isEmpty())
            info.problem = labelText({"MESS_SRC_INCONNUE", "GDAL ne sait pas ouvrir cette source."});
        return info;
    }
    const char *title =
        dataset->GetDriver() ? dataset->GetDriver()->GetMetadataItem(GDAL_DMD_LONGNAME) : nullptr;
    info.format = QString::fromUtf8(title);
    if (wanted == SourceWanted::Rasters)
        describeRaster(*dataset, info);
    else
        describeLayers(*dataset, info);
    return info;
}
