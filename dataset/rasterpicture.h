#pragma once

#include <QImage>
#include <QRect>
#include <QSize>
#include <QString>
#include <QVector>

#include <memory>
#include <optional>

class GDALDataset;

/// A raster drawn as a picture. Three or four bands of type Byte are red, green, blue and opacity. Of any other
/// raster the first band is shown in grey: unchanged when it is of type Byte, otherwise stretched from its 2nd
/// to its 98th percentile. Cells without data are transparent.
class RasterPicture
{
public:
    RasterPicture() = default;

    /// Opens the raster for reading and keeps it open; nothing is written beside it. band: the band (from 1) to
    /// show in grey, stretched as above whatever its type; 0 shows the raster as described above.
    explicit RasterPicture(const QString &path, int band = 0);

    bool isOpen() const { return m_dataset != nullptr; }

    /// Whether one band is shown in grey.
    bool isGrey() const { return m_colourBands == 0; }

    /// Columns and rows of the raster.
    QSize size() const { return m_size; }

    /// Reads a part (in cells, within the raster) into a picture of the given size. Null when the part cannot
    /// be read. The stretch is the same for every part. classes: each pixel has the colour of one cell, because
    /// a mixture of colours would mean nothing.
    QImage read(const QRect &part, const QSize &size, bool classes = false) const;

    /// Reads the values of the band that is shown in grey, or of the first one, of a part like read(), by rows.
    /// Cells without data are NaN. Empty when the part cannot be read. classes: as in read().
    QVector<float> values(const QRect &part, const QSize &size, bool classes = false) const;

private:
    struct Range
    {
        double low;
        double high;
    };

    QImage readColours(const QRect &part, const QSize &size, bool classes) const;
    QImage readGrey(const QRect &part, const QSize &size) const;
    Range stretchRange() const;

    std::shared_ptr<GDALDataset> m_dataset;
    int m_band = 1;
    int m_colourBands = 0; ///< 3 or 4; 0 when one band is shown in grey
    QSize m_size;
    Range m_range{};
};

/// Writes the extreme values of a band into the raster's statistics, where GDAL's tools look for them. Changes
/// the file: only for files of the program's own. Returns whether they were written.
bool noteExtremes(const QString &path, int band, double minimum, double maximum);
