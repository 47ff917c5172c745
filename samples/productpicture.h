#pragma once

#include "vectordraw/featurelayer.h"

#include <QImage>
#include <QString>

#include <gdal_priv.h>

#include <memory>

// Products as pictures, for the contact sheet and the guide. Needs QGuiApplication.

using DataSet = std::unique_ptr<GDALDataset>;

/// Opens a raster or vector file; null when GDAL cannot.
DataSet openData(const QString &file);

/// The raster in greys or in its own colours, as large as fits into `size`; white where it has no data. Null
/// when it cannot be read.
QImage rasterPicture(const QString &file, const QSize &size);

/// Features drawn over a pale copy of a relief, which has their extent.
class FeaturePicture
{
public:
    /// The picture is as large as fits into `size`.
    FeaturePicture(const QString &reliefFile, const QSize &size);

    /// Draws the features of the layer in their own styles, or in `styles`. Draws nothing where the relief
    /// cannot be read.
    void draw(OGRLayer &layer, const vectordraw::DefaultStyles &styles);

    /// A copy of the picture; null where the relief cannot be read.
    QImage image() const { return m_picture.copy(); }

private:
    QImage m_picture;
    vectordraw::View m_view{};
};
