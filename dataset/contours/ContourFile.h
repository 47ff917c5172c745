#pragma once

#include <QString>
#include <QStringList>
#include <QVector>

#include <ogrsf_frmts.h>

#include <memory>

/// A field of a file of contours.
struct ContourField
{
    QString name;
    OGRFieldType type = OFTReal;
    int width = 0; ///< digits or characters; 0: that of the format
};

/// A vector file of contours while it is written, in any of OGR's formats, with one layer. A database makes one
/// transaction of it all. GDAL's messages say why a call failed.
class ContourFile
{
public:
    /// path: must not exist; its folder must. driver: GDAL's short name.
    ContourFile(const QString &path, const QString &driver, const QString &layer);

    /// Creates the file, its layer and the fields. `crs` may be null. In a format whose fields are fixed none
    /// is created.
    bool create(const OGRSpatialReference *crs, OGRwkbGeometryType geometry,
                const QVector<ContourField> &fields);

    /// The layer while the file is open; belongs to it.
    OGRLayer &layer() { return *m_layer; }

    /// Whether the fields exist.
    bool hasFields() const { return !m_fields.isEmpty(); }

    /// Number in the layer of a field by its place among those of create(); -1 where it does not exist.
    int field(int place) const { return m_fields.value(place, -1); }

    /// Adds a feature; returns whether it was written.
    bool write(OGRFeature &feature) { return m_layer->CreateFeature(&feature) == OGRERR_NONE; }

    /// Writes what is left in memory; failures are in GDAL's messages.
    void close();

    /// Removes the files and folders of the product's base name that did not exist before. Some formats are
    /// several files or a folder.
    void remove();

    /// The field "ID" as the contour tool creates it.
    static ContourField numberField();

private:
    bool createFields(const QVector<ContourField> &fields);
    QStringList filesInFolder() const;

    QString m_path;
    QString m_driver;
    QString m_layerName;
    QStringList m_before; ///< what stood in the folder before
    std::unique_ptr<GDALDataset> m_dataset;
    OGRLayer *m_layer = nullptr;
    QVector<int> m_fields;
};
