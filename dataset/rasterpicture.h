#pragma once

#include <QImage>
#include <QRect>
#include <QSize>
#include <QString>

#include <memory>
#include <optional>

class GDALDataset;

/// A raster as something to look at. Three or four bands of bytes show as they are, red, green, blue and
/// opacity; so does one band of bytes, in grey. Any other band shows in grey from its 2nd to its 98th
/// percentile. Cells without data are transparent.
class RasterPicture
{
public:
    RasterPicture() = default;

    /// band: the one that is shown in grey, stretched, from 1; 0: the raster as it is described above. The file
    /// stays open and nothing is written beside it.
    explicit RasterPicture(const QString &path, int band = 0);

    bool isOpen() const { return m_dataset != nullptr; }

    /// Whether it shows one band.
    bool isGrey() const { return m_colourBands == 0; }

    /// In cells.
    QSize size() const { return m_size; }

    /// Reads a part (in cells, within the raster) into a picture of that size; null when it cannot be read.
    /// The greys are the same for every part.
    QImage read(const QRect &part, const QSize &size) const;

private:
    struct Range
    {
        double low;
        double high;
    };

    QImage readColours(const QRect &part, const QSize &size) const;
    QImage readGrey(const QRect &part, const QSize &size) const;
    Range stretchRange() const;

    std::shared_ptr<GDALDataset> m_dataset;
    int m_band = 1;
    int m_colourBands = 0; ///< 3 or 4; 0: grey
    QSize m_size;
    Range m_range{};
};

/// Notes the extreme values of a band in the raster, where a tool that needs them finds them. For files of the
/// program's own only. False when it cannot be written.
bool noteExtremes(const QString &path, int band, double minimum, double maximum);
