#include "dataset/views/tiles.h"

#include "dataset/gdalmessages.h"
#include "dataset/pathencoding.h"
#include "dataset/rasterinfo.h"
#include "messages/label.h"
#include "messages/shownnumber.h"

#include <QFileInfo>
#include <QLocale>

#include <gdal_priv.h>
#include <ogr_spatialref.h>

#include <algorithm>
#include <cmath>
#include <memory>

namespace
{

QString nameOf(const Tile &tile)
{
    return QFileInfo(tile.path).fileName();
}

OGRSpatialReference referenceOf(const Tile &tile)
{
    OGRSpatialReference reference;
    reference.importFromWkt(tile.crs.toUtf8().constData());
    reference.SetAxisMappingStrategy(OAMS_TRADITIONAL_GIS_ORDER);
    return reference;
}

QString crsName(const Tile &tile)
{
    const char *name = tile.crs.isEmpty() ? nullptr : referenceOf(tile).GetName();
    return name ? QString::fromUtf8(name) : labelText({"MESS_TUILE_SANS_CRS", "aucun système de coordonnées"});
}

bool haveSameCrs(const Tile &first, const Tile &other)
{
    if (first.crs.isEmpty() || other.crs.isEmpty())
        return first.crs.isEmpty() == other.crs.isEmpty();
    const OGRSpatialReference reference = referenceOf(other);
    return referenceOf(first).IsSame(&reference) != FALSE;
}

/// How far the grid of `other` may lie from that of `first`, in cells.
constexpr double mostShift = 0.05;

bool haveSameCells(const Tile &first, const Tile &other)
{
    const auto drift = [&](size_t index, int cells) {
        return std::abs(other.toGround[index] / first.toGround[index] - 1.0) * cells;
    };
    return drift(1, std::max(first.width, other.width)) <= mostShift
        && drift(5, std::max(first.height, other.height)) <= mostShift;
}

QString cellText(const Tile &tile)
{
    constexpr int digits = 10; // shows every difference that matters
    const QLocale locale;
    return QStringLiteral("%1 × %2").arg(shownNumber(tile.toGround[1], 'g', digits, locale),
                                         shownNumber(-tile.toGround[5], 'g', digits, locale));
}

/// Columns (index 0) or rows (index 3) from the corner of the first tile to that of the other.
double cellsBetween(const Tile &first, const Tile &other, size_t index)
{
    return (other.toGround[index] - first.toGround[index]) / first.toGround[index == 0 ? 1 : 5];
}

/// Distance of a number from the nearest whole one.
double fraction(double cells)
{
    return std::abs(cells - std::round(cells));
}

QString noDataText(const std::optional<double> &value)
{
    return value ? shownNumber(*value, 'g', 10) : labelText({"MESS_TUILE_SANS_ND", "aucune valeur"});
}

bool isSameNoData(const std::optional<double> &first, const std::optional<double> &other)
{
    if (!first || !other)
        return first.has_value() == other.has_value();
    return *first == *other || (std::isnan(*first) && std::isnan(*other));
}

/// The sentence that names both tiles, followed by `what` differs, with a value of each.
QString difference(const Tile &first, const Tile &other, const Label &what, const QString &one,
                   const QString &two)
{
    return labelText({"MESS_TUILES_DIFFERENTES", "« %1 » et « %2 » ne peuvent pas former un seul MNT."})
               .arg(nameOf(first), nameOf(other))
        + QLatin1Char('\n') + labelText(what).arg(one, two);
}

QString bandDifference(const Tile &first, const Tile &other)
{
    for (int band = 0; band < first.types.size(); ++band) {
        if (first.types.at(band) != other.types.at(band))
            return difference(
                first, other,
                {"MESS_TUILES_TYPE", "Le type des cellules est %1 dans la première et %2 dans la seconde."},
                first.types.at(band), other.types.at(band));
        const QString unit = first.units.value(band);
        const QString otherUnit = other.units.value(band);
        if (unit != otherUnit)
            return difference(first, other,
                              {"MESS_TUILES_UNITE",
                               "L'unité des altitudes est « %1 » dans la première et « %2 » dans la seconde."},
                              unit, otherUnit);
        if (!isSameNoData(first.noData.at(band), other.noData.at(band)))
            return difference(
                first, other,
                {"MESS_TUILES_ND", "La valeur sans donnée est %1 dans la première et %2 dans la seconde."},
                noDataText(first.noData.at(band)), noDataText(other.noData.at(band)));
    }
    return {};
}

/// The cells of a tile on the grid of the first one.
QRect cellsOf(const Tile &first, const Tile &tile)
{
    return {static_cast<int>(std::lround(cellsBetween(first, tile, 0))),
            static_cast<int>(std::lround(cellsBetween(first, tile, 3))), tile.width, tile.height};
}

/// Whether the rectangles, sorted from left to right, cover the columns from `left` to `right` (exclusive) of a
/// row.
bool coverRow(const QVector<QRect> &rectangles, int row, int left, int right)
{
    for (const QRect &rectangle : rectangles) {
        if (rectangle.top() <= row && row <= rectangle.bottom() && rectangle.left() <= left)
            left = std::max(left, rectangle.left() + rectangle.width());
    }
    return left >= right;
}

} // namespace

Tile readTile(const QString &path)
{
    Tile tile;
    tile.path = path;
    tile.problem = readRasterInfo(path).problem;
    if (!tile.problem.isEmpty())
        return tile;
    const GdalMessages messages;
    const std::unique_ptr<GDALDataset> dataset(GDALDataset::Open(encodePath(path).constData(), GDAL_OF_RASTER));
    if (!dataset) {
        tile.problem = messages.lastError();
        return tile;
    }
    tile.width = dataset->GetRasterXSize();
    tile.height = dataset->GetRasterYSize();
    tile.georeferenced = dataset->GetGeoTransform(tile.toGround.data()) == CE_None;
    if (const OGRSpatialReference *reference = dataset->GetSpatialRef()) {
        char *text = nullptr;
        reference->exportToWkt(&text);
        tile.crs = QString::fromUtf8(text);
        CPLFree(text);
    }
    for (GDALRasterBand *band : dataset->GetBands()) {
        int isSet = FALSE;
        const double noData = band->GetNoDataValue(&isSet);
        tile.types += QString::fromLatin1(GDALGetDataTypeName(band->GetRasterDataType()));
        tile.units += QString::fromUtf8(band->GetUnitType());
        tile.noData += isSet ? std::optional(noData) : std::nullopt;
    }
    return tile;
}

QString tileProblem(const Tile &tile)
{
    if (!tile.problem.isEmpty())
        return withColon(nameOf(tile)) + QLatin1Char('\n') + tile.problem;
    if (!tile.georeferenced)
        return labelText({"MESS_TUILE_SANS_GEO",
                          "« %1 » n'a pas de coordonnées, et ne peut pas être la tuile d'un MNT."})
            .arg(nameOf(tile));
    if (tile.toGround[2] != 0.0 || tile.toGround[4] != 0.0 || tile.toGround[1] <= 0.0
        || tile.toGround[5] >= 0.0)
        return labelText(
                   {"MESS_TUILE_TOURNEE",
                    "« %1 » ne peut pas être la tuile d'un MNT : ses lignes ne vont pas du nord au sud, ou "
                    "ses colonnes d'ouest en est."})
            .arg(nameOf(tile));
    return {};
}

QString tileDifference(const Tile &first, const Tile &other)
{
    const auto number = [](auto value) { return QLocale().toString(value); };
    if (!haveSameCrs(first, other))
        return difference(first, other,
                          {"MESS_TUILES_CRS",
                           "Le système de coordonnées est « %1 » dans la première et « %2 » dans "
                           "la seconde."},
                          crsName(first), crsName(other));
    if (!haveSameCells(first, other))
        return difference(
            first, other,
            {"MESS_TUILES_CELLULE", "La taille des cellules est %1 dans la première et %2 dans la seconde."},
            cellText(first), cellText(other));
    if (first.types.size() != other.types.size())
        return difference(first, other,
                          {"MESS_TUILES_BANDES", "Nombre de bandes : %1 dans la première, %2 dans la seconde."},
                          number(first.types.size()), number(other.types.size()));
    const QString bands = bandDifference(first, other);
    if (!bands.isEmpty())
        return bands;
    const double across = fraction(cellsBetween(first, other, 0));
    const double down = fraction(cellsBetween(first, other, 3));
    if (across > mostShift || down > mostShift)
        return difference(
            first, other,
            {"MESS_TUILES_DECALEES",
             "Leurs grilles sont décalées l'une par rapport à l'autre de %1 cellule en largeur et de "
             "%2 en hauteur."},
            shownNumber(across, 'f', 2), shownNumber(down, 'f', 2));
    return {};
}

bool leaveGaps(const QVector<Tile> &tiles)
{
    QVector<QRect> rectangles;
    QRect whole;
    QVector<int> rows; // where the tiles that cover a row can change
    for (const Tile &tile : tiles) {
        const QRect rectangle = cellsOf(tiles.first(), tile);
        rectangles += rectangle;
        whole |= rectangle;
        rows += rectangle.top();
        rows += rectangle.top() + rectangle.height();
    }
    std::sort(rectangles.begin(), rectangles.end(),
              [](const QRect &one, const QRect &other) { return one.left() < other.left(); });
    return std::any_of(rows.begin(), rows.end(), [&](int row) {
        return row <= whole.bottom() && !coverRow(rectangles, row, whole.left(), whole.left() + whole.width());
    });
}

QVector<QRect> tileCells(const QVector<Tile> &tiles)
{
    QVector<QRect> cells;
    QRect whole;
    for (const Tile &tile : tiles) {
        cells += cellsOf(tiles.first(), tile);
        whole |= cells.last();
    }
    for (QRect &each : cells)
        each.translate(-whole.topLeft());
    return cells;
}
