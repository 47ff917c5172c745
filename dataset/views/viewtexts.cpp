#include "dataset/views/viewtexts.h"

#include "dataset/pathencoding.h"

#include <QRect>

#include <cmath>
#include <limits>

namespace
{

QByteArray number(double value)
{
    if (std::isnan(value))
        return QByteArrayLiteral("nan");
    return QByteArray::number(value, 'g', 17);
}

/// A text inside an element. The bytes of a path keep their encoding.
QByteArray escaped(QByteArray text)
{
    text.replace('&', "&amp;");
    text.replace('<', "&lt;");
    text.replace('>', "&gt;");
    text.replace('"', "&quot;");
    return text;
}

QByteArray element(const char *name, const QByteArray &text)
{
    return QByteArrayLiteral("<") + name + '>' + text + "</" + name + ">\n";
}

QByteArray rectangle(const char *name, const QRect &cells)
{
    return QByteArrayLiteral("<") + name + " xOff=\"" + QByteArray::number(cells.x()) + "\" yOff=\""
        + QByteArray::number(cells.y()) + "\" xSize=\"" + QByteArray::number(cells.width()) + "\" ySize=\""
        + QByteArray::number(cells.height()) + "\"/>\n";
}

/// The elements by which GDAL knows a source before it opens it.
QByteArray sourceFile(const QString &path, int band, int width, int height, const QString &type)
{
    return QByteArrayLiteral("<SourceFilename relativeToVRT=\"0\">") + escaped(encodePath(path))
        + "</SourceFilename>\n" + element("SourceBand", QByteArray::number(band))
        + "<SourceProperties RasterXSize=\"" + QByteArray::number(width) + "\" RasterYSize=\""
        + QByteArray::number(height) + "\" DataType=\"" + type.toLatin1() + "\"/>\n";
}

QByteArray dataset(int width, int height, const QByteArray &content)
{
    return QByteArrayLiteral("<VRTDataset rasterXSize=\"") + QByteArray::number(width) + "\" rasterYSize=\""
        + QByteArray::number(height) + "\">\n" + content + "</VRTDataset>\n";
}

QByteArray geoTransform(const std::array<double, 6> &toGround)
{
    QByteArray numbers;
    for (const double value : toGround)
        numbers += (numbers.isEmpty() ? "" : ", ") + number(value);
    return element("GeoTransform", numbers);
}

QByteArray georeference(const DemFacts &grid)
{
    QByteArray content;
    if (!grid.crsText.isEmpty())
        content += QByteArrayLiteral("<SRS dataAxisToSRSAxisMapping=\"") + grid.crsAxes.toLatin1() + "\">"
            + escaped(grid.crsText.toUtf8()) + "</SRS>\n";
    if (grid.isGeoreferenced)
        content += geoTransform(grid.toGround);
    return content;
}

/// The source of a band of the colours.
QByteArray colorSource(const DemFacts &grid, const ShadedColors &parts, int band)
{
    const QSize size(grid.width, grid.height);
    return QByteArrayLiteral("<SimpleSource>\n")
        + sourceFile(parts.colors, band, parts.colorsSize.width(), parts.colorsSize.height(),
                     QStringLiteral("Byte"))
        + rectangle("SrcRect", {parts.firstColor, size}) + rectangle("DstRect", {{0, 0}, size})
        + "</SimpleSource>\n";
}

/// The source of the light, weakened to the strength. GDAL interpolates between the values of its table, of
/// which 0 stands alone.
QByteArray lightSource(const DemFacts &grid, const ShadedColors &parts)
{
    constexpr double brightest = 255.0;
    const double strength = parts.strength / 100.0;
    const QRect all(0, 0, grid.width, grid.height);
    const auto weakened = [&](double light) { return number(brightest * (1.0 - strength) + strength * light); };
    return QByteArrayLiteral("<ComplexSource>\n")
        + sourceFile(parts.shade, 1, grid.width, grid.height, QStringLiteral("Byte"))
        + rectangle("SrcRect", all) + rectangle("DstRect", all)
        + element("LUT", "0:" + number(brightest) + ",1:" + weakened(1.0) + ",255:" + weakened(brightest))
        + "</ComplexSource>\n";
}

/// The no-data value of a view of type Float32: that of the DEM, or the lowest number where the type cannot
/// hold it, or where an elevation may have that value once the offset is added.
double viewNoData(const DemFacts &facts)
{
    constexpr double lowest = std::numeric_limits<float>::lowest();
    const double noData = *facts.noData;
    const bool isTooLarge = std::isfinite(noData) && std::abs(noData) > -lowest;
    return isTooLarge || facts.elevationOffset != 0.0 ? lowest : noData;
}

} // namespace

QByteArray metreView(const ViewSource &source, const RowStrip &strip, const QSizeF &cell)
{
    const DemFacts &facts = source.facts;
    QByteArray band;
    QByteArray value = element("ScaleOffset", number(facts.elevationOffset * elevationMetres(facts)))
        + element("ScaleRatio", number(elevationFactor(facts)));
    if (facts.noData) {
        band += element("NoDataValue", number(viewNoData(facts)));
        value += element("NODATA", number(*facts.noData));
    }
    band += element("UnitType", QByteArrayLiteral("m"));
    band += QByteArrayLiteral("<ComplexSource>\n")
        + sourceFile(source.path, facts.band, facts.width, facts.height, facts.cellType)
        + rectangle("SrcRect", {0, strip.first, facts.width, strip.count})
        + rectangle("DstRect", {0, 0, facts.width, strip.count}) + value + "</ComplexSource>\n";
    const std::array<double, 6> toGround{0.0, cell.width(),  0.0, strip.count * cell.height(),
                                         0.0, -cell.height()};
    return dataset(facts.width, strip.count,
                   geoTransform(toGround) + "<VRTRasterBand dataType=\"Float32\" band=\"1\">\n" + band
                       + "</VRTRasterBand>\n");
}

QByteArray assembledView(const DemFacts &grid, const QVector<ProductPart> &parts, const ProductCells &cells)
{
    QByteArray sources;
    for (const ProductPart &part : parts) {
        const int rows = part.strip.count;
        sources += QByteArrayLiteral("<SimpleSource>\n")
            + sourceFile(part.path, 1, part.size.width(), part.size.height(), cells.type)
            + rectangle("SrcRect", {part.first, QSize(grid.width, rows)})
            + rectangle("DstRect", {0, part.strip.first, grid.width, rows}) + "</SimpleSource>\n";
    }
    QByteArray content = georeference(grid);
    content += QByteArrayLiteral("<VRTRasterBand dataType=\"") + cells.type.toLatin1() + "\" band=\"1\">\n";
    if (cells.noData)
        content += element("NoDataValue", number(*cells.noData));
    return dataset(grid.width, grid.height, content + sources + "</VRTRasterBand>\n");
}

QByteArray shadedColorsView(const DemFacts &grid, const ShadedColors &parts)
{
    static constexpr const char *names[] = {"Red", "Green", "Blue"};
    QByteArray bands;
    int band = 0;
    for (const char *name : names) {
        ++band;
        bands += QByteArrayLiteral("<VRTRasterBand dataType=\"Byte\" band=\"") + QByteArray::number(band)
            + "\" subClass=\"VRTDerivedRasterBand\">\n" + element("ColorInterp", name)
            + "<PixelFunctionType>mul</PixelFunctionType>\n<PixelFunctionArguments k=\"" + number(1.0 / 255.0)
            + "\"/>\n<SourceTransferType>Float64</SourceTransferType>\n" + colorSource(grid, parts, band)
            + lightSource(grid, parts) + "</VRTRasterBand>\n";
    }
    if (parts.hasAlpha) {
        ++band;
        bands += QByteArrayLiteral("<VRTRasterBand dataType=\"Byte\" band=\"") + QByteArray::number(band)
            + "\">\n" + element("ColorInterp", "Alpha") + colorSource(grid, parts, band) + "</VRTRasterBand>\n";
    }
    return dataset(grid.width, grid.height, georeference(grid) + bands);
}
