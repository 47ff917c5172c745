#pragma once

#include <QImage>
#include <QRectF>
#include <QString>

#include <array>
#include <memory>
#include <vector>

class GDALDataset;
class OGRLayer;

/// The layers of a vector file, or one of them, drawn into a picture in portions of some vertices. The first
/// portions are spread over each layer where its format allows that.
class VectorPicture
{
public:
    VectorPicture();
    /// Opens the file for reading. layer: name of the only layer to draw; empty: all of them.
    explicit VectorPicture(const QString &path, const QString &layer = {});
    ~VectorPicture();
    VectorPicture(VectorPicture &&) noexcept;
    VectorPicture &operator=(VectorPicture &&) noexcept;

    bool isOpen() const { return m_dataset != nullptr; }

    /// The extent of all layers in the file's coordinates, so that top() is the lowest y; empty without a
    /// feature.
    QRectF extent() const;

    /// Looks for the extent without a long wait: for the milliseconds at least one layer is asked, or some of
    /// its features are read where it does not know its extent at once. Returns whether it must be called
    /// again. foundExtent() grows until then; of a layer that does not know, it holds the first 200000
    /// features.
    bool findExtent(int milliseconds);
    QRectF foundExtent() const;

    /// Starts to draw over the picture, which must be premultiplied ARGB and outlive the drawing. toGround:
    /// GDAL's affine transformation from the picture's pixels to the file's coordinates. lineWidth: line width
    /// in pixels of features that have no style of their own.
    void begin(QImage &picture, const std::array<double, 6> &toGround, double lineWidth);

    /// Draws at least one portion, and further ones until the milliseconds have passed. Returns whether
    /// anything is left to draw.
    bool advance(int milliseconds);

    /// Part of the current layer's features that has been drawn, 0 to 100; 0 where the layer does not know how
    /// many it has, and 100 while nothing is left to draw.
    int percent() const;

private:
    struct Drawing;
    struct Search;
    std::unique_ptr<GDALDataset> m_dataset;
    std::vector<OGRLayer *> m_layers; ///< to draw; they belong to the data set
    std::unique_ptr<Drawing> m_drawing;
    std::unique_ptr<Search> m_search;
};
