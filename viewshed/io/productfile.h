#pragma once

#include "viewshed/io/raster_io.h"
#include "viewshed/options.h"
#include "viewshed/problem.h"

#include <gdal_priv.h>

#include <algorithm>
#include <memory>
#include <string>
#include <vector>

namespace viewshed
{

/// The bands of a product.
struct ProductForm
{
    int bands;
    GDALDataType type;
};

/// The GeoTIFF that a run makes, with the raster's size and georeference. Unless finish() succeeds, each file
/// that its creation has made is deleted.
class ProductFile
{
public:
    /// Replaces an older file at options.destination, which stays as it was unless the driver accepts the
    /// creation options. From here on the signals SIGTERM and SIGINT are to be asked for with checkStop().
    /// Throws Problem if the file cannot be created.
    ProductFile(const Raster &raster, const Options &options, const ProductForm &form);
    ~ProductFile();
    ProductFile(const ProductFile &) = delete;
    ProductFile &operator=(const ProductFile &) = delete;

    GDALDataset &dataset() { return *m_dataset; }
    /// Closes the complete product. The files are kept only when keep() is called. Throws Problem if they
    /// cannot be written, or if a signal has requested a stop.
    void close();
    void keep();

private:
    class CreatedFiles;

    std::unique_ptr<CreatedFiles> m_files;
    std::unique_ptr<GDALDataset> m_dataset;
};

/// The sentence for a failed call of GDAL, with GDAL's own message.
std::string problemOf(const std::string &what);

/// Writes whole blocks without GDAL's block cache, which would hold a copy of much of the product.
template <class Number> class BlockWriter
{
public:
    explicit BlockWriter(GDALDataset &product)
        : m_product(product)
    {
        product.GetRasterBand(1)->GetBlockSize(&m_width, &m_height);
        m_block.resize(static_cast<std::size_t>(m_width) * static_cast<std::size_t>(m_height));
    }

    /// The number of rows to be written at a time: whole blocks, and `least` rows at least if blocks are low.
    int step(int least) const { return std::max(m_height, least / m_height * m_height); }

    /// Writes `count` rows of all bands from the product's row `top` on. Both must be multiples of a block's
    /// height, except for the count of the last rows. row(band, index) returns the first number of one of the
    /// rows, where bands count from 0.
    template <class Row> void write(int top, int count, const Row &row)
    {
        for (int y = 0; y * m_height < count; ++y) {
            for (int x = 0; x * m_width < m_product.GetRasterXSize(); ++x) {
                for (int band = 0; band < m_product.GetRasterCount(); ++band)
                    writeBlock(x, top / m_height + y, band, y * m_height,
                               std::min(m_height, count - y * m_height), row);
            }
        }
    }

private:
    template <class Row> void writeBlock(int x, int y, int band, int first, int count, const Row &row)
    {
        const int left = x * m_width;
        const int columns = std::min(m_width, m_product.GetRasterXSize() - left);
        for (int index = 0; index < count; ++index)
            std::copy_n(row(band, first + index) + left, columns,
                        m_block.data() + static_cast<std::ptrdiff_t>(index) * m_width);
        if (m_product.GetRasterBand(band + 1)->WriteBlock(x, y, m_block.data()) != CE_None)
            throw Problem(problemOf("The product cannot be written"));
    }

    GDALDataset &m_product;
    int m_width = 0;
    int m_height = 0;
    std::vector<Number> m_block;
};

} // namespace viewshed
