#pragma once

#include <QString>

// GDAL's tools end with exit code 0 on a full disk and on some bad input, too. So a run counts as successful
// only when its product was looked at.

/// What kind of data set a process writes.
enum class ProductKind
{
    Raster,
    Vector
};

/// What a finished run should have left.
struct ExpectedProduct
{
    ProductKind kind = ProductKind::Raster;
    QString path;
    int width = 0;  ///< columns of the input raster; not used for a vector product
    int height = 0; ///< rows of the input raster; not used for a vector product
    QString layer;  ///< name of the vector layer; not used for a raster product
};

/// What was found.
struct ProductCheck
{
    QString problem;            ///< why the product is not whole, in a sentence; empty for a good one
    long long featureCount = 0; ///< features of a vector product's layer; 0 is a success, but worth a word
};

/// The first line of a tool's error text that begins with "ERROR"; empty when there is none.
QString firstErrorLine(const QString &standardError);

/// Checks the product of a run that ended with exit code 0: no line of the tool's error text begins with
/// "ERROR", the data set opens, a raster has the input's size and its last block can be read in every band, a
/// vector has its layer, or one layer alone under any name, and that holds geometries.
ProductCheck checkProduct(const ExpectedProduct &expected, const QString &standardError);
