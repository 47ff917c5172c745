#pragma once

#include <QImage>
#include <QRectF>
#include <QString>

#include <array>
#include <memory>

class GDALDataset;

/// The layers of a vector file, drawn into a picture, some features at a time.
class VectorPicture
{
public:
    VectorPicture();
    explicit VectorPicture(const QString &path);
    ~VectorPicture();
    VectorPicture(VectorPicture &&) noexcept;
    VectorPicture &operator=(VectorPicture &&) noexcept;

    bool isOpen() const { return m_dataset != nullptr; }

    /// What the layers cover, in the file's coordinates (y upwards in the numbers); empty without a feature.
    QRectF extent() const;

    /// Begins to draw over the picture, which must be premultiplied ARGB and outlive the drawing. toGround:
    /// GDAL's affine transformation from the picture's pixels to the file's coordinates. lineWidth: of features
    /// without a style of their own, in pixels.
    void begin(QImage &picture, const std::array<double, 6> &toGround, double lineWidth);

    /// Draws for that long at least one portion; false when all is drawn.
    bool advance(int milliseconds);

private:
    struct Drawing;
    std::unique_ptr<GDALDataset> m_dataset;
    std::unique_ptr<Drawing> m_drawing;
};
