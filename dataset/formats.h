#pragma once

#include "dataset/productcheck.h"

#include <QString>
#include <QStringList>

// What the program knows of formats beyond what GDAL's drivers say of themselves: a row a driver, and a default
// row for every other driver. Driver names are GDAL's short names and compare without regard to case.

/// Whether a format can be chosen for a product.
enum class FormatOffer
{
    Listed,     ///< the output dialog lists it, and recipes and the command line may name it
    ByNameOnly, ///< recipes and the command line may name it: it has a fixed grid, scale or purpose
    Refused     ///< it cannot hold a product, or leaves files of other names behind when a run fails
};

/// Number of bands of the products that a raster format can hold.
enum class FormatBands
{
    Any,
    One,
    Several
};

/// Where the overviews of a raster format are.
enum class OverviewPlace
{
    Beside,   ///< in a file of their own ("a.tif.ovr")
    BuiltIn,  ///< the driver makes them with the product
    InProduct ///< added to the product itself, which a stop would leave half changed
};

/// What is known of one driver's format.
struct FormatTraits
{
    const char *driver = "";
    FormatOffer raster = FormatOffer::Listed;
    FormatOffer vector = FormatOffer::Listed;
    FormatBands bands = FormatBands::Any;
    OverviewPlace overviews = OverviewPlace::Beside;

    /// The driver finds a line through all lines before it. Where one of those cannot be read, it reads the
    /// others again and again, practically for ever.
    bool readInOrder = false;

    /// Longest name of an attribute in bytes of UTF-8; 0: any name. Runs with a longer one fail or lose lines.
    int longestAttribute = 0;

    /// Side files bear the product's whole name ("a.tif.aux.xml") and never its base name ("a.hdr").
    bool keepsToWholeName = false;

    /// A file holds any number of layers, which other programs may have written.
    bool isDatabase = false;

    /// Extensions for our products, separated by blanks, the usual one first; empty: those that the driver
    /// names.
    const char *extensions = "";

    /// Extensions of side files of the base name, separated by blanks; empty: none of a vector format, the
    /// usual ones of a raster format.
    const char *sideExtensions = "";

    /// Names of attributes in lower case, separated by blanks, that the format or the contour tool's own "ID"
    /// takes; the case of letters does not count.
    const char *reservedAttributes = "";

    /// What follows the product's name in the name of a file that the driver writes and removes; empty: none.
    const char *temporarySuffix = "";
};

/// The driver's row; the default row for a driver without one.
const FormatTraits &formatTraits(const QString &driver);

/// The table's extensions for our products, without their dot; empty where the driver's own hold.
QStringList extensionsOfOurs(const QString &driver);

/// Whether the contour tool cannot write the format, because its fields are fixed.
bool takesNoFields(const QString &driver);

/// Why an attribute cannot have that name in the driver's format, in a sentence; empty for a good name and for
/// none.
QString attributeProblem(const QString &driver, const QString &name);

/// The problem of the first of these names that has one.
QString attributesProblem(const QString &driver, const QStringList &names);

// Attributes that contours may have besides their elevations.
inline const QString indexLineAttribute = QStringLiteral("INDEX_LINE"); ///< 1 for an index line, else 0
inline const QString styleAttribute = QStringLiteral("OGR_STYLE");      ///< the drawing, where OGR looks for it

/// Extensions of the side files that the driver may write under the product's base name.
QStringList sideExtensions(const QString &driver, ProductKind product);
