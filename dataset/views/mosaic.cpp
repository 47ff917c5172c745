#include "dataset/views/mosaic.h"

#include "dataset/gdalmessages.h"
#include "dataset/pathencoding.h"
#include "dataset/views/tiles.h"
#include "messages/label.h"

#include <QDir>
#include <QFileInfo>
#include <QRegularExpression>
#include <QSaveFile>

#include <gdal_priv.h>
#include <gdal_utils.h>

#include <cmath>
#include <memory>

namespace
{

/// Rounds the places of the tiles to whole cells. Their coordinates are rounded, and a place off by a hundredth
/// of a cell would show every cell of that tile interpolated.
QString onWholeCells(const QString &xml)
{
    static const QRegularExpression rectangle(QStringLiteral("<(?:Src|Dst)Rect [^>]*>"));
    static const QRegularExpression number(QStringLiteral("=\"([^\"]*)\""));
    QString text;
    QString::size_type end = 0;
    for (auto match = rectangle.globalMatch(xml); match.hasNext();) {
        const QRegularExpressionMatch place = match.next();
        text += xml.mid(end, place.capturedStart() - end);
        end = place.capturedStart();
        for (auto values = number.globalMatch(place.captured()); values.hasNext();) {
            const QRegularExpressionMatch value = values.next();
            const QString::size_type start = place.capturedStart() + value.capturedStart(1);
            text += xml.mid(end, start - end) + QString::number(std::lround(value.captured(1).toDouble()));
            end = place.capturedStart() + value.capturedEnd(1);
        }
    }
    return text + xml.mid(end);
}

struct Tiles
{
    QVector<Tile> tiles;
    QString problem; ///< why they are not one DEM, in a sentence; the tiles after it are not read
};

Tiles readTiles(const QStringList &paths)
{
    Tiles read;
    for (const QString &path : paths) {
        read.tiles += readTile(path);
        read.problem = tileProblem(read.tiles.last());
        if (read.problem.isEmpty())
            read.problem = tileDifference(read.tiles.first(), read.tiles.last());
        if (!read.problem.isEmpty())
            break;
    }
    return read;
}

struct VirtualRaster
{
    QString xml;
    QString problem; ///< GDAL's words
};

/// The virtual raster of tiles whose bands have these units, which GDAL's own function leaves out.
VirtualRaster virtualRaster(const QStringList &paths, const QStringList &units)
{
    const GdalMessages messages;
    char strict[] = "-strict"; // without it a tile that does not fit is left out without a failure
    char *arguments[] = {strict, nullptr};
    const std::unique_ptr<GDALBuildVRTOptions, void (*)(GDALBuildVRTOptions *)> options(
        GDALBuildVRTOptionsNew(arguments, nullptr), GDALBuildVRTOptionsFree);
    QVector<QByteArray> encoded;
    QVector<const char *> names;
    for (const QString &path : paths)
        encoded += encodePath(path);
    for (const QByteArray &name : encoded)
        names += name.constData();
    const std::unique_ptr<GDALDataset> dataset(GDALDataset::FromHandle(
        GDALBuildVRT("", static_cast<int>(names.size()), nullptr, names.data(), options.get(), nullptr)));
    for (int band = 0; dataset && band < units.size(); ++band)
        dataset->GetRasterBand(band + 1)->SetUnitType(units.at(band).toUtf8().constData());
    char **xml = dataset ? dataset->GetMetadata("xml:VRT") : nullptr;
    if (!xml || !*xml)
        return {{}, messages.lastError()};
    return {decodePath(*xml), {}};
}

/// Names the files below the folder of the virtual raster relative to it, so that the folder can be moved.
QString withRelativeNames(QString xml, const QString &folder)
{
    QString name = folder; // as GDAL writes it
    name.replace(QLatin1String("&"), QLatin1String("&amp;"))
        .replace(QLatin1String("<"), QLatin1String("&lt;"))
        .replace(QLatin1String(">"), QLatin1String("&gt;"));
    const QString absolute = QStringLiteral("relativeToVRT=\"0\">") + name + QLatin1Char('/');
    return xml.replace(absolute, QStringLiteral("relativeToVRT=\"1\">"));
}

/// The sentence about the tiles that GDAL or the disk refuses, with their words.
QString refusedText(const QString &words)
{
    return labelText({"MESS_MOSAIQUE_REFUSEE", "Les tuiles ne peuvent pas former un seul MNT."})
        + QLatin1Char('\n') + words;
}

} // namespace

Mosaic makeMosaic(const QStringList &paths, WorkFolder &workFolder)
{
    return writeMosaic(paths, QDir(workFolder.newFolder()).filePath(QFileInfo(mosaicName(paths)).fileName()));
}

Mosaic writeMosaic(const QStringList &paths, const QString &path)
{
    Mosaic mosaic;
    const Tiles read = readTiles(paths);
    mosaic.problem = read.problem;
    if (!mosaic.problem.isEmpty())
        return mosaic;
    const VirtualRaster raster = virtualRaster(paths, read.tiles.first().units);
    if (raster.xml.isEmpty()) {
        mosaic.problem = refusedText(raster.problem);
        return mosaic;
    }
    QSaveFile file(path);
    // Names of files go back as the bytes that GDAL wrote into its text.
    const QByteArray text =
        encodePath(withRelativeNames(onWholeCells(raster.xml), QFileInfo(path).absolutePath()));
    if (!file.open(QIODevice::WriteOnly) || file.write(text) != text.size() || !file.commit()) {
        mosaic.problem = refusedText(file.errorString());
        return mosaic;
    }
    mosaic.path = path;
    mosaic.cells = tileCells(read.tiles);
    if (!read.tiles.first().noData.value(0) && leaveGaps(read.tiles))
        mosaic.warnings += labelText({"MESS_MOSAIQUE_VIDES",
                                      "Les tuiles laissent des vides, et n'ont pas de valeur sans donnée : "
                                      "l'altitude y vaut 0."});
    return mosaic;
}

QString mosaicName(const QStringList &tiles)
{
    if (tiles.isEmpty())
        return {};
    const QFileInfo first(tiles.first());
    return QStringLiteral("%1/%2_mosaic.vrt").arg(first.path(), first.completeBaseName());
}

QString mosaicTitle(const QStringList &tiles)
{
    return labelText({"MESS_MOSAIQUE_TITRE", "%1 (mosaïque de %2 tuiles)"})
        .arg(tiles.value(0), QString::number(tiles.size()));
}

QString tileLines(const QStringList &tiles)
{
    constexpr int mostLines = 20;
    QStringList lines;
    for (const QString &tile : tiles.mid(0, mostLines))
        lines += QDir::toNativeSeparators(tile);
    if (tiles.size() > mostLines)
        lines += QStringLiteral("…");
    return lines.join(QLatin1Char('\n'));
}

QStringList rastersInFolder(const QString &folder)
{
    static const QStringList companions{QStringLiteral("ovr"), QStringLiteral("msk"), QStringLiteral("rrd")};
    const GdalMessages messages;
    QStringList rasters;
    for (const QFileInfo &file : QDir(folder).entryInfoList(QDir::Files | QDir::Readable, QDir::Name)) {
        const QString path = file.absoluteFilePath();
        if (!companions.contains(file.suffix().toLower())
            && GDALIdentifyDriverEx(encodePath(path).constData(), GDAL_OF_RASTER, nullptr, nullptr))
            rasters += path;
    }
    return rasters;
}
