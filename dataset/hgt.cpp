#include "dataset/hgt.h"

#include "dataset/pathencoding.h"
#include "messages/label.h"

#include <QLocale>
#include <QRegularExpression>

#include <algorithm>
#include <cmath>

namespace
{

constexpr qint64 cellBytes = 2;

/// Sizes of the files that GDAL's driver opens: cells of two bytes, and 3601 × 3601 cells of one.
constexpr qint64 knownSizes[] = {1201 * 1201 * cellBytes, 3601 * 3601 * cellBytes, 1801 * 3601 * cellBytes,
                                 3601 * 3601};

/// Columns and rows of a file without a header: those of the widespread tiles, else a square.
void fillSize(HgtTile &tile, qint64 bytes)
{
    const qint64 cells = bytes / cellBytes;
    const auto side = static_cast<qint64>(std::sqrt(static_cast<double>(cells)) + 0.5);
    tile.columns = static_cast<int>(side);
    tile.rows = tile.columns;
    for (const qint64 rows : {3601, 7201, 1201}) {
        if (side * side != cells && cells % rows == 0) {
            tile.rows = static_cast<int>(rows);
            tile.columns = static_cast<int>(cells / rows);
            return;
        }
    }
}

/// The path between the tags of an XML text, in the bytes that GDAL opens.
QByteArray escaped(const QString &path)
{
    QByteArray bytes = encodePath(path);
    bytes.replace('&', "&amp;");
    bytes.replace('<', "&lt;");
    bytes.replace('>', "&gt;");
    return bytes;
}

QByteArray number(double value)
{
    return QByteArray::number(value, 'g', 17);
}

} // namespace

QString hgtProblem(const QString &fileName, qint64 bytes)
{
    if (!fileName.endsWith(QLatin1String(".hgt"), Qt::CaseInsensitive))
        return {};
    if (std::find(std::begin(knownSizes), std::end(knownSizes), bytes) == std::end(knownSizes))
        return labelText({"MESS_HGT_TAILLE",
                          "GDAL ne lit les fichiers .hgt que s'ils ont 1201 × 1201, 3601 × 3601 ou "
                          "1801 × 3601 cellules ; la taille de celui-ci (%1 octets) n'y correspond pas."})
            .arg(QLocale().toString(bytes));
    static const QRegularExpression known(QStringLiteral("^[NS][0-9]{2}[EW][0-9]{3}(\\.[^.]+)?\\.hgt$"),
                                          QRegularExpression::CaseInsensitiveOption);
    if (known.match(fileName).hasMatch())
        return {};
    return labelText({"MESS_HGT_NOM",
                      "GDAL ne lit les fichiers .hgt que si leur nom indique le coin inférieur gauche de la "
                      "tuile, comme « N45E006.hgt »."});
}

HgtTile likelyTile(const QString &fileName, qint64 bytes)
{
    HgtTile tile;
    fillSize(tile, bytes);
    tile.cellSize = tile.rows > 1 ? 1.0 / (tile.rows - 1) : 1.0;
    static const QRegularExpression corner(QStringLiteral("^([NS])([0-9]{2})([EW])([0-9]{3})"),
                                           QRegularExpression::CaseInsensitiveOption);
    const auto match = corner.match(fileName);
    if (match.hasMatch()) {
        const bool south = match.captured(1).toUpper() == QLatin1String("S");
        const bool west = match.captured(3).toUpper() == QLatin1String("W");
        tile.latitude = match.captured(2).toInt() * (south ? -1 : 1);
        tile.longitude = match.captured(4).toInt() * (west ? -1 : 1);
    }
    return tile;
}

QString tileProblem(const HgtTile &tile, qint64 bytes)
{
    const qint64 needed = cellBytes * tile.columns * tile.rows;
    if (tile.columns < 1 || tile.rows < 1 || needed != bytes)
        return labelText({"MESS_HGT_CELLULES",
                          "%1 × %2 cellules de deux octets font %3 octets, et le fichier en contient %4."})
            .arg(QString::number(tile.columns), QString::number(tile.rows), QLocale().toString(needed),
                 QLocale().toString(bytes));
    const double north = tile.latitude + (tile.rows - 1) * tile.cellSize;
    const double east = tile.longitude + (tile.columns - 1) * tile.cellSize;
    if (!(tile.cellSize > 0.0) || tile.latitude < -90.0 || tile.longitude < -180.0 || north > 90.0
        || east > 360.0)
        return labelText({"MESS_HGT_PLACE", "Avec ces valeurs, la tuile dépasserait le globe terrestre."});
    return {};
}

QByteArray tileVrt(const HgtTile &tile, const QString &path)
{
    const double west = tile.longitude - tile.cellSize / 2.0;
    const double north = tile.latitude + (tile.rows - 0.5) * tile.cellSize;
    return "<VRTDataset rasterXSize=\"" + QByteArray::number(tile.columns) + "\" rasterYSize=\""
        + QByteArray::number(tile.rows) + "\">\n  <SRS>EPSG:4326</SRS>\n  <GeoTransform>" + number(west) + ", "
        + number(tile.cellSize) + ", 0, " + number(north) + ", 0, " + number(-tile.cellSize)
        + "</GeoTransform>\n"
          "  <VRTRasterBand dataType=\"Int16\" band=\"1\" subClass=\"VRTRawRasterBand\">\n"
          "    <NoDataValue>-32768</NoDataValue>\n"
          "    <SourceFilename relativeToVRT=\"0\">"
        + escaped(path)
        + "</SourceFilename>\n"
          "    <ImageOffset>0</ImageOffset><PixelOffset>2</PixelOffset><LineOffset>"
        + QByteArray::number(cellBytes * tile.columns)
        + "</LineOffset><ByteOrder>MSB</ByteOrder>\n  </VRTRasterBand>\n</VRTDataset>\n";
}
