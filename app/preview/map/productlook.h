#pragma once

#include "app/preview/map/maplegend.h"
#include "app/preview/map/valueramp.h"
#include "app/preview/previewgeometry.h"
#include "colortable/QuvoColorDef.h"
#include "dataset/extremes.h"
#include "panels/options/processoptions.h"

#include <QString>

#include <functional>

/// How a product is drawn on the map.
enum class ProductForm
{
    Shade,        ///< in grey, without the relief of the ground: it is a relief itself
    Values,       ///< numbers in the colours of a ramp, over the relief
    Colors,       ///< its own colours, over the relief
    ShadedColors, ///< its own colours, which hold a relief themselves
    Lines         ///< lines over the relief
};

/// Whether the product is drawn without the relief of the ground.
bool holdsRelief(ProductForm form);

/// What a product of a process looks like.
struct ProductLook
{
    ProductForm form = ProductForm::Colors;
    RampKind ramp = RampKind::Grey;
    bool trigonometric = false; ///< directions are counter-clockwise from the east
    QString name;               ///< of a value, before the number: "Pente"; empty: its values are not numbers
    QString unit;               ///< behind the number, with its blank; empty: none
    SightResult sight = SightResult::Picture; ///< what the numbers of an intervisibility are
    QVector<QRgb> rampColors{};               ///< in place of those of the kind of ramp; empty: those
    ClassTable classes{};                     ///< in place of the ramp; without classes: the ramp
};

/// elevationUnit: for display; empty: not known.
ProductLook lookOf(const ProcessOptions &options, const QString &elevationUnit);

/// The ramp over the values of a product of that look.
ValueRamp rampOf(const ProductLook &look, const ElevationGrid &values);

/// A product as the map shows it. North is above and west at the left.
struct ProductPicture
{
    QImage picture;       ///< without the relief; null: the file cannot be read
    ElevationGrid values; ///< of the same cells; empty where the product's values are not numbers
    ValueRamp ramp;       ///< of the values
};

/// Reads a raster product of a reduced copy. mirroring: the sides that the file's rows and columns have the
/// other way round.
ProductPicture readProduct(const QString &path, const ProductLook &look, const Mirroring &mirroring);

/// The elevations of a band of a reduced copy, likewise; empty when it cannot be read.
ElevationGrid readElevations(const QString &path, int band, const Mirroring &mirroring);

/// What the legend of a product says.
struct LegendFacts
{
    QString title;
    ProcessOptions options;
    ProductLook look;
    ProductPicture product;
    bool hasVoids = false;     ///< the DEM has cells without data
    QList<QuvoColorDef> table; ///< that the tool of a colour relief has read
    Extremes extremes;         ///< of the DEM, for percentages of the table
    QString elevationUnit;
    Histogram elevations;
    /// Area of a cell of the product in a row of its picture, in square metres; not callable: not known.
    std::function<double(int row)> cellArea;
};

MapLegend legendOf(const LegendFacts &facts, const QLocale &locale);

/// The value of a product as "Pente 23,4°", "Orientation 214° SO" or "3 observateurs"; `value` may be NaN, for
/// a cell without data. Empty for a product without such values.
QString valueText(const ProductLook &look, double value, const QLocale &locale);
