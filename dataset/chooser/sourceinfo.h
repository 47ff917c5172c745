#pragma once

#include "messages/rasterheader.h"

#include <QRectF>
#include <QSizeF>
#include <QString>
#include <QVector>

#include <optional>

/// A band of a raster, as its file describes it; no cell is read.
struct BandFacts
{
    QString type;         ///< GDAL's name of the cells' type ("Float32")
    QString noData;       ///< the no-data value; empty: none
    QString description;  ///< the band's own text; may be empty
    bool known = false;   ///< whether the file holds statistics of the band
    double minimum = 0.0; ///< these three: from the file's statistics, in the unit of the band
    double maximum = 0.0;
    double mean = 0.0;
};

/// What the features of a layer are, by the type that the layer states.
enum class LayerGeometry
{
    Points,
    Lines,
    Areas,
    Any, ///< of several types, of a rare one, or the layer does not say
    None
};

/// A layer of a vector source.
struct LayerFacts
{
    QString name;
    LayerGeometry geometry = LayerGeometry::Any;
    long long count = -1; ///< number of features; -1: the layer does not know without reading all of them
    QString crs;          ///< as SourceInfo::crs
};

/// A source inside another one: a subdataset, a file of an archive, a file of a folder.
struct SourceItem
{
    QString name;  ///< the name by which GDAL opens it
    QString title; ///< as a list shows it
};

enum class SourceKind
{
    Unreadable, ///< SourceInfo::problem states why
    Raster,     ///< one band or more
    Vector,     ///< one layer or more
    Container,  ///< neither, but `items` or a listing (ItemLister) may hold some
    OwnRaster   ///< a raster that begins with the header of 256 bytes, whose cells GDAL cannot read
};

/// What a chooser is looking for.
enum class SourceWanted
{
    Rasters,
    Vectors
};

/// What is known of a source once GDAL has opened it.
struct SourceInfo
{
    QString name; ///< the name by which GDAL opens it
    SourceKind kind = SourceKind::Unreadable;
    QString problem;           ///< why nothing can be chosen, in sentences; empty for a raster and for layers
    QString format;            ///< the driver's title ("GeoTIFF")
    int width = 0;             ///< columns
    int height = 0;            ///< rows
    QString crs;               ///< name and code of the CRS ("WGS 84 (EPSG:4326)"); empty: unknown
    std::optional<QRectF> box; ///< extent on the ground, so that top() is the lowest y; also where it is turned
    QSizeF cell;               ///< sides of a cell in the unit of the CRS; empty: not placed
    QVector<BandFacts> bands;  ///< band 1 first
    QVector<LayerFacts> layers;
    QVector<SourceItem> items;          ///< subdatasets
    std::optional<RasterHeader> header; ///< of SourceKind::OwnRaster
    bool mayBeTile = false; ///< elevations without a header, whose size and place the user can state
    QString listing; ///< folder or archive whose files ItemLister may list, as GDAL names it; empty: none
};

/// Opens the source read-only and describes it; nothing is written beside it. A source that cannot be opened,
/// holds nothing of what is wanted, or might never end has a problem. name: a path, or a name of GDAL's.
///
/// Where a server does not answer, the call returns after about 10 seconds for each of GDAL's requests, which
/// are one or two; for data bases their own limits hold.
SourceInfo readSourceInfo(const QString &name, SourceWanted wanted);

/// The layers of a vector source with geometries and at least one feature, in the source's order. The features
/// are counted even where all of them must be read for it. Empty for a source that cannot be opened.
QVector<LayerFacts> usableLayers(const QString &name);

/// The name under which GDAL lists the files of an archive ("/vsizip/a.zip"), by the ending of its name; empty
/// for a name that is no archive's.
QString archiveListing(const QString &path);
