#include "dataset/views/demviews.h"

#include "dataset/gdalmessages.h"
#include "dataset/pathencoding.h"
#include "dataset/views/truecells.h"
#include "messages/label.h"

#include <gdal_priv.h>
#include <gdal_utils.h>
#include <ogr_spatialref.h>

#include <cmath>
#include <memory>
#include <optional>

namespace
{

using Dataset = std::unique_ptr<GDALDataset>;

/// Texts as GDAL's utilities take them.
class Arguments
{
public:
    Arguments(std::initializer_list<const char *> texts)
    {
        for (const char *text : texts)
            add(text);
    }
    ~Arguments() { CSLDestroy(m_texts); }
    Arguments(const Arguments &) = delete;
    Arguments &operator=(const Arguments &) = delete;

    void add(const QByteArray &text) { m_texts = CSLAddString(m_texts, text.constData()); }
    void add(int number) { add(QByteArray::number(number)); }
    void add(double number) { add(QByteArray::number(number, 'g', 17)); }
    char **texts() { return m_texts; }

private:
    char **m_texts = nullptr;
};

Dataset open(const QString &path)
{
    return Dataset(GDALDataset::Open(encodePath(path).constData(), GDAL_OF_RASTER | GDAL_OF_VERBOSE_ERROR));
}

/// Writes what GDAL's translation makes of a DEM. False after a failure.
bool translate(const QString &dem, Arguments &arguments, const QString &path)
{
    const Dataset source = open(dem);
    const std::unique_ptr<GDALTranslateOptions, decltype(&GDALTranslateOptionsFree)> options(
        GDALTranslateOptionsNew(arguments.texts(), nullptr), &GDALTranslateOptionsFree);
    return source
        && Dataset(GDALDataset::FromHandle(GDALTranslate(
            encodePath(path).constData(), GDALDataset::ToHandle(source.get()), options.get(), nullptr)));
}

/// The file of the band alone that a warped view refers to.
QString bandFile(const QString &view)
{
    return view + QStringLiteral(".band.vrt");
}

/// Writes what GDAL's warping makes of the DEM's band. False after a failure.
bool warp(const QString &dem, const DemFacts &facts, Arguments &arguments, const QString &path)
{
    // The tools read the cells that a mask hides, too. Warping would make elevations of 0 of them.
    Arguments band{"-of", "VRT", "-mask", "none", "-b"};
    band.add(facts.band);
    if (!translate(dem, band, bandFile(path)))
        return false;
    const Dataset source = open(bandFile(path));
    if (!source)
        return false;
    const std::unique_ptr<GDALWarpAppOptions, decltype(&GDALWarpAppOptionsFree)> options(
        GDALWarpAppOptionsNew(arguments.texts(), nullptr), &GDALWarpAppOptionsFree);
    GDALDatasetH handle = GDALDataset::ToHandle(source.get());
    return Dataset(GDALDataset::FromHandle(
               GDALWarp(encodePath(path).constData(), nullptr, 1, &handle, options.get(), nullptr)))
        != nullptr;
}

DemView viewAt(const QString &path, bool isWritten, int band, const GdalMessages &messages)
{
    if (!isWritten)
        return {{}, {}, messages.lastError()};
    return {path, readDemFacts(path, band), {}};
}

/// The grid of a mirrored DEM with its rows from the north and its columns from the west.
void addMirroredGrid(const DemFacts &facts, Arguments &arguments)
{
    const auto &toGround = facts.toGround;
    const double width = facts.width * toGround[1];
    const double height = facts.height * toGround[5];
    arguments.add("-te");
    arguments.add(toGround[0] + std::fmin(width, 0.0));
    arguments.add(toGround[3] + std::fmin(height, 0.0));
    arguments.add(toGround[0] + std::fmax(width, 0.0));
    arguments.add(toGround[3] + std::fmax(height, 0.0));
    arguments.add("-ts");
    arguments.add(facts.width);
    arguments.add(facts.height);
}

/// Whether a warped view may lose the no-data value: GDAL writes 16 digits of it into the view, which may be
/// more than the type can hold. It is then read as infinity, and the void cells as elevations.
bool isTooLarge(double noData)
{
    constexpr double safe = 1e37;
    return std::isfinite(noData) && std::abs(noData) > safe;
}

/// Gives a view the type Float32 and a no-data value that this type can hold. The corners of a grid that lies
/// askew in the old one have no cells and need such a value, too.
void addFloatCells(const DemFacts &facts, Arguments &arguments)
{
    constexpr double noElevation = -16777216.0; // exact in Float32, and below any ground even in millimetres
    const double noData = facts.noData.value_or(-9999.0);
    arguments.add("-ot");
    arguments.add("Float32");
    arguments.add("-dstnodata");
    arguments.add(isTooLarge(noData) ? noElevation : noData);
}

/// Metres in a unit of the coordinates of a CRS; at the equator for one in degrees. Empty for a text that is no
/// CRS of a map.
std::optional<double> metresInCrsUnit(const QString &text)
{
    OGRSpatialReference crs;
    if (crs.SetFromUserInput(text.toUtf8().constData()) != OGRERR_NONE)
        return std::nullopt;
    if (crs.IsGeographic())
        return crs.GetAngularUnits() * crs.GetSemiMajor();
    return crs.IsProjected() ? std::optional(crs.GetLinearUnits()) : std::nullopt;
}

} // namespace

DemView writePartView(const QString &dem, int band, const QRect &part, const QString &path)
{
    const GdalMessages messages;
    Arguments arguments{"-of", "VRT", "-b"};
    arguments.add(band);
    arguments.add("-srcwin");
    for (const int number : {part.x(), part.y(), part.width(), part.height()})
        arguments.add(number);
    return viewAt(path, translate(dem, arguments, path), 1, messages);
}

DemView writeTurnedView(const QString &dem, const DemFacts &facts, const QString &path)
{
    const GdalMessages messages;
    Arguments arguments{"-of", "VRT", "-r", "near", "-et", "0", "-ovr", "NONE"};
    if (isRotated(facts)) {
        addFloatCells(facts, arguments);
        const auto &toGround = facts.toGround;
        arguments.add("-tr");
        arguments.add(std::hypot(toGround[1], toGround[4]));
        arguments.add(std::hypot(toGround[2], toGround[5]));
    } else {
        addMirroredGrid(facts, arguments);
        if (isTooLarge(facts.noData.value_or(0.0)))
            addFloatCells(facts, arguments);
    }
    return viewAt(path, warp(dem, facts, arguments, path), 1, messages);
}

DemView writeReprojectedView(const QString &dem, const DemFacts &facts, const QString &crs, const QString &path)
{
    const GdalMessages messages;
    if (facts.crs == DemCrs::None)
        return {{},
                {},
                labelText({"MESS_PROJ_SANS_CRS",
                           "Le MNT n'a pas de système de coordonnées : il ne peut pas être reprojeté."})};
    const std::optional<double> unit = metresInCrsUnit(crs);
    if (!unit)
        return {
            {},
            {},
            labelText({"MESS_PROJ_INCONNUE", "« %1 » n'est pas un système de coordonnées de carte."}).arg(crs)};
    Arguments arguments{"-of", "VRT", "-r", "cubic", "-ovr", "NONE", "-t_srs"};
    arguments.add(crs.toUtf8());
    addFloatCells(facts, arguments);
    const QSizeF cell = trueCell(facts, facts.height / 2.0);
    const double side = std::sqrt(cell.width() * cell.height()) / *unit;
    arguments.add("-tr");
    arguments.add(side);
    arguments.add(side);
    return viewAt(path, warp(dem, facts, arguments, path), 1, messages);
}

QString reprojectPoints(const QString &points, const DemFacts &facts, const QString &crs, const QString &path)
{
    const GdalMessages messages;
    Arguments arguments{"-f", "ESRI Shapefile", "-s_srs"};
    arguments.add(facts.crsText.toUtf8());
    arguments.add("-t_srs");
    arguments.add(crs.toUtf8());
    const Dataset source(
        GDALDataset::Open(encodePath(points).constData(), GDAL_OF_VECTOR | GDAL_OF_VERBOSE_ERROR));
    const std::unique_ptr<GDALVectorTranslateOptions, decltype(&GDALVectorTranslateOptionsFree)> options(
        GDALVectorTranslateOptionsNew(arguments.texts(), nullptr), &GDALVectorTranslateOptionsFree);
    GDALDatasetH handle = GDALDataset::ToHandle(source.get());
    Dataset copy(source ? GDALDataset::FromHandle(GDALVectorTranslate(encodePath(path).constData(), nullptr, 1,
                                                                      &handle, options.get(), nullptr))
                        : nullptr);
    const bool isWritten = copy != nullptr;
    copy.reset();
    return isWritten ? QString() : messages.lastError();
}
