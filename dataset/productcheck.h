#pragma once

#include <QString>

// GDAL's tools also end with exit code 0 on a full disk and on some bad input. A run therefore counts as
// successful only after its product was checked.

/// The kind of data set that a process writes.
enum class ProductKind
{
    Raster,
    Vector
};

/// The product that a finished run should have written.
struct ExpectedProduct
{
    ProductKind kind = ProductKind::Raster;
    QString path;
    int width = 0;  ///< columns of the input raster; not used for a vector product
    int height = 0; ///< rows of the input raster; not used for a vector product
    QString layer;  ///< name of the vector layer; not used for a raster product
    int bands = 0;  ///< of a raster product; 0: any number
};

/// The result of a check.
struct ProductCheck
{
    QString problem;            ///< why the product is not complete, in a sentence; empty for a good one
    bool isDiskFull = false;    ///< the problem is that the product's disk is full
    long long featureCount = 0; ///< of a vector product's layer; 0 is valid, but worth a note to the user
};

/// The first line of a tool's error text that begins with "ERROR"; empty when there is none.
QString firstErrorLine(const QString &standardError);

/// Checks the product of a run that ended with exit code 0. These must hold: no line of the tool's error text
/// begins with "ERROR"; the disk is not full; the data set opens; a raster has the size of the input and the
/// expected bands, its last cell can be read in every band, and a file ".aux.xml" beside it is whole; a vector
/// has the expected layer, or one single layer of any name, that layer stores geometries and, in a file of up
/// to 64 MiB, all of its features can be read.
ProductCheck checkProduct(const ExpectedProduct &expected, const QString &standardError);
