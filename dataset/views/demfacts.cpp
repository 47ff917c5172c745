#include "dataset/views/demfacts.h"

#include "dataset/gdalmessages.h"
#include "dataset/pathencoding.h"

#include <gdal_priv.h>
#include <ogr_spatialref.h>

#include <QHash>
#include <QStringList>

#include <algorithm>
#include <cmath>
#include <memory>

namespace
{

using Transform = std::unique_ptr<OGRCoordinateTransformation>;

/// The lengths on the ground of steps along x and y around a point of a projected CRS, in metres per unit of
/// the coordinates; empty where the projection is not defined.
std::optional<QSizeF> groundUnitsAt(OGRCoordinateTransformation &toDegrees, const DemFacts &facts, double x,
                                    double y, double step)
{
    std::array<double, 5> xs{x, x - step, x + step, x, x};
    std::array<double, 5> ys{y, y, y, y - step, y + step};
    if (!toDegrees.Transform(5, xs.data(), ys.data()))
        return std::nullopt;
    constexpr double radian = 0.017453292519943295;
    const double sine = std::sin(ys[0] * radian);
    const double square = facts.flattening * (2.0 - facts.flattening);
    const double normal = facts.semiMajor / std::sqrt(1.0 - square * sine * sine);
    const double meridian = normal * (1.0 - square) / (1.0 - square * sine * sine);
    const auto length = [&](std::size_t from, std::size_t to) {
        const double east =
            std::remainder(xs[to] - xs[from], 360.0) * radian * normal * std::cos(ys[0] * radian);
        const double north = (ys[to] - ys[from]) * radian * meridian;
        return std::hypot(east, north) / (2.0 * step);
    };
    const QSizeF units(length(1, 2), length(3, 4));
    return std::isfinite(units.width()) && std::isfinite(units.height()) && !units.isEmpty()
        ? std::optional(units)
        : std::nullopt;
}

/// DemFacts::groundUnits of a projected CRS.
QVector<QSizeF> groundUnits(const OGRSpatialReference &crs, const DemFacts &facts)
{
    constexpr int samples = 65;
    constexpr double negligible = 0.01;
    const std::unique_ptr<OGRSpatialReference> degrees(crs.CloneGeogCS());
    OGRSpatialReference projected(crs);
    projected.SetAxisMappingStrategy(OAMS_TRADITIONAL_GIS_ORDER);
    if (!degrees)
        return {};
    degrees->SetAxisMappingStrategy(OAMS_TRADITIONAL_GIS_ORDER);
    degrees->SetAngularUnits(SRS_UA_DEGREE, CPLAtof(SRS_UA_DEGREE_CONV));
    const Transform transform(OGRCreateCoordinateTransformation(&projected, degrees.get()));
    if (!transform)
        return {};
    const auto &toGround = facts.toGround;
    const double step = std::max(std::hypot(toGround[1], toGround[4]), 50.0 / facts.unit);
    QVector<QSizeF> units;
    bool isDistorted = false;
    for (int at = 0; at < samples; ++at) {
        const double column = facts.width / 2.0;
        const double row = facts.height * at / (samples - 1.0);
        const auto found =
            groundUnitsAt(*transform, facts, toGround[0] + column * toGround[1] + row * toGround[2],
                          toGround[3] + column * toGround[4] + row * toGround[5], step);
        if (!found)
            return {};
        units += *found;
        for (const double length : {found->width(), found->height()})
            isDistorted = isDistorted || std::abs(length / facts.unit - 1.0) > negligible;
    }
    return isDistorted ? units : QVector<QSizeF>();
}

void readCrs(const OGRSpatialReference &crs, DemFacts &facts)
{
    char *text = nullptr;
    crs.exportToWkt(&text);
    facts.crsText = QString::fromUtf8(text);
    CPLFree(text);
    QStringList axes;
    for (const int axis : crs.GetDataAxisToSRSAxisMapping())
        axes += QString::number(axis);
    facts.crsAxes = axes.join(QLatin1Char(','));
    if (const char *name = crs.GetName())
        facts.crsName = QString::fromUtf8(name);
    OGRErr error = OGRERR_NONE;
    const double semiMajor = crs.GetSemiMajor(&error);
    if (error == OGRERR_NONE && semiMajor > 0.0) {
        facts.semiMajor = semiMajor;
        const double inverse = crs.GetInvFlattening(&error);
        facts.flattening = error == OGRERR_NONE && inverse > 0.0 ? 1.0 / inverse : 0.0;
    }
    if (crs.IsGeographic()) {
        facts.crs = DemCrs::Geographic;
        facts.unit = crs.GetAngularUnits();
    } else if (crs.IsProjected()) {
        facts.crs = DemCrs::Projected;
        facts.unit = crs.GetLinearUnits();
        facts.groundUnits = groundUnits(crs, facts);
    } else if (crs.IsLocal()) {
        facts.crs = DemCrs::Projected;
        facts.unit = crs.GetLinearUnits();
    }
    if (crs.IsCompound())
        facts.elevationUnit = crs.GetTargetLinearUnits("VERT_CS");
}

void readBand(GDALRasterBand &band, DemFacts &facts)
{
    facts.cellType = QString::fromLatin1(GDALGetDataTypeName(band.GetRasterDataType()));
    band.GetBlockSize(&facts.blockWidth, &facts.blockHeight);
    facts.hasOverviews = band.GetOverviewCount() > 0;
    int isKnown = FALSE;
    const double noData = band.GetNoDataValue(&isKnown);
    if (isKnown)
        facts.noData = noData;
    if (const auto unit = metresInUnit(QString::fromUtf8(band.GetUnitType())))
        facts.elevationUnit = unit;
    const double scale = band.GetScale(&isKnown);
    if (std::isfinite(scale) && scale != 0.0)
        facts.elevationScale = scale;
    const double offset = band.GetOffset(&isKnown);
    if (std::isfinite(offset))
        facts.elevationOffset = offset;
}

} // namespace

DemFacts readDemFacts(const QString &path, int band)
{
    DemFacts facts;
    const GdalMessages messages; // choosing the file has already reported that it cannot be opened
    const std::unique_ptr<GDALDataset> dataset(GDALDataset::Open(encodePath(path).constData(), GDAL_OF_RASTER));
    if (!dataset || band < 1 || band > dataset->GetRasterCount())
        return facts;
    facts.isOpen = true;
    facts.band = band;
    facts.bandCount = dataset->GetRasterCount();
    facts.width = dataset->GetRasterXSize();
    facts.height = dataset->GetRasterYSize();
    facts.isGeoreferenced = dataset->GetGeoTransform(facts.toGround.data()) == CE_None;
    if (!facts.isGeoreferenced)
        facts.toGround = {0.0, 1.0, 0.0, 0.0, 0.0, 1.0};
    const OGRSpatialReference *crs = dataset->GetSpatialRef();
    if (crs && facts.isGeoreferenced)
        readCrs(*crs, facts);
    readBand(*dataset->GetRasterBand(band), facts);
    return facts;
}

std::optional<double> metresInUnit(const QString &unit)
{
    constexpr double foot = 0.3048;
    constexpr double surveyFoot = 1200.0 / 3937.0;
    static const QHash<QString, double> units{
        {QStringLiteral("m"), 1.0},
        {QStringLiteral("metre"), 1.0},
        {QStringLiteral("meter"), 1.0},
        {QStringLiteral("metres"), 1.0},
        {QStringLiteral("meters"), 1.0},
        {QStringLiteral("gpm"), 1.0},
        {QStringLiteral("ft"), foot},
        {QStringLiteral("foot"), foot},
        {QStringLiteral("feet"), foot},
        {QStringLiteral("international foot"), foot},
        {QStringLiteral("international feet"), foot},
        {QStringLiteral("us survey foot"), surveyFoot},
        {QStringLiteral("us survey feet"), surveyFoot},
        {QStringLiteral("us-ft"), surveyFoot},
        {QStringLiteral("us_ft"), surveyFoot},
        {QStringLiteral("usft"), surveyFoot},
        {QStringLiteral("ftus"), surveyFoot},
        {QStringLiteral("sft"), surveyFoot},
        {QStringLiteral("foot_us"), surveyFoot},
        {QStringLiteral("dm"), 0.1},
        {QStringLiteral("decimetre"), 0.1},
        {QStringLiteral("decimeter"), 0.1},
        {QStringLiteral("cm"), 0.01},
        {QStringLiteral("centimetre"), 0.01},
        {QStringLiteral("centimeter"), 0.01},
        {QStringLiteral("mm"), 0.001},
        {QStringLiteral("millimetre"), 0.001},
        {QStringLiteral("millimeter"), 0.001},
        {QStringLiteral("km"), 1000.0},
        {QStringLiteral("kilometre"), 1000.0},
        {QStringLiteral("kilometer"), 1000.0},
    };
    const auto found = units.constFind(unit.trimmed().toLower());
    return found == units.constEnd() ? std::nullopt : std::optional(*found);
}

double elevationMetres(const DemFacts &facts)
{
    return facts.elevationUnit.value_or(facts.crs == DemCrs::Projected ? facts.unit : 1.0);
}

double elevationFactor(const DemFacts &facts)
{
    return elevationMetres(facts) * facts.elevationScale;
}

bool isMirrored(const DemFacts &facts)
{
    return facts.isGeoreferenced && !isRotated(facts) && (facts.toGround[5] > 0.0 || facts.toGround[1] < 0.0);
}

bool isRotated(const DemFacts &facts)
{
    constexpr double negligible = 0.01; // cells, from one end of the grid to the other
    const auto &toGround = facts.toGround;
    return facts.isGeoreferenced
        && (std::abs(toGround[2]) * facts.height > negligible * std::abs(toGround[1])
            || std::abs(toGround[4]) * facts.width > negligible * std::abs(toGround[5]));
}
