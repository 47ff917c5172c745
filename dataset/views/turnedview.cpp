#include "dataset/views/turnedview.h"

#include "dataset/gdalmessages.h"
#include "dataset/pathencoding.h"

#include <gdal_priv.h>
#include <gdal_utils.h>

#include <cmath>
#include <memory>

namespace
{

using Dataset = std::unique_ptr<GDALDataset>;

/// Texts as GDAL's utilities take them.
class Arguments
{
public:
    void add(const QByteArray &text) { m_texts = CSLAddString(m_texts, text.constData()); }
    void add(double number) { add(QByteArray::number(number, 'g', 17)); }
    ~Arguments() { CSLDestroy(m_texts); }
    char **texts() { return m_texts; }

private:
    char **m_texts = nullptr;
};

/// The band alone, as a virtual raster.
Dataset bandView(GDALDataset &dem, const DemFacts &facts, const QByteArray &file)
{
    Arguments arguments;
    for (const char *text : {"-of", "VRT", "-b"})
        arguments.add(text);
    arguments.add(QByteArray::number(facts.band));
    const std::unique_ptr<GDALTranslateOptions, decltype(&GDALTranslateOptionsFree)> options(
        GDALTranslateOptionsNew(arguments.texts(), nullptr), &GDALTranslateOptionsFree);
    return Dataset(GDALDataset::FromHandle(
        GDALTranslate(file.constData(), GDALDataset::ToHandle(&dem), options.get(), nullptr)));
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
    arguments.add(QByteArray::number(facts.width));
    arguments.add(QByteArray::number(facts.height));
}

/// A rotated grid leaves corners without cells, which need a no-data value that the type can hold.
void addCorners(const DemFacts &facts, Arguments &arguments)
{
    arguments.add("-ot");
    arguments.add("Float32");
    arguments.add("-dstnodata");
    arguments.add(facts.noData.value_or(-9999.0));
    const auto &toGround = facts.toGround;
    arguments.add("-tr");
    arguments.add(std::hypot(toGround[1], toGround[4]));
    arguments.add(std::hypot(toGround[2], toGround[5]));
}

Dataset turned(GDALDataset &band, const DemFacts &facts, const QByteArray &file)
{
    Arguments arguments;
    for (const char *text : {"-of", "VRT", "-r", "near", "-et", "0", "-ovr", "NONE"})
        arguments.add(text);
    if (isRotated(facts))
        addCorners(facts, arguments);
    else
        addMirroredGrid(facts, arguments);
    const std::unique_ptr<GDALWarpAppOptions, decltype(&GDALWarpAppOptionsFree)> options(
        GDALWarpAppOptionsNew(arguments.texts(), nullptr), &GDALWarpAppOptionsFree);
    GDALDatasetH source = GDALDataset::ToHandle(&band);
    return Dataset(
        GDALDataset::FromHandle(GDALWarp(file.constData(), nullptr, 1, &source, options.get(), nullptr)));
}

} // namespace

TurnedView writeTurnedView(const QString &dem, const DemFacts &facts, const QString &folder)
{
    const GdalMessages messages;
    const QString file = folder + QStringLiteral("/turned.vrt");
    const Dataset source(
        GDALDataset::Open(encodePath(dem).constData(), GDAL_OF_RASTER | GDAL_OF_VERBOSE_ERROR));
    Dataset band =
        source ? bandView(*source, facts, encodePath(folder + QStringLiteral("/band.vrt"))) : nullptr;
    if (band)
        band->FlushCache(); // the view refers to its file
    Dataset view = band ? turned(*band, facts, encodePath(file)) : nullptr;
    if (!view)
        return {{}, messages.lastError()};
    view.reset();
    return {file, {}};
}
