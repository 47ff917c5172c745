#include "viewshed/io/productfile.h"

#include "viewshed/io/inputfiles.h"
#include "viewshed/io/stop.h"

#include <cpl_string.h>

#include <filesystem>

namespace viewshed
{

namespace
{

namespace fs = std::filesystem;

/// Copies the geotransform or the ground control points, and the coordinate system.
void copyGeoreference(GDALDataset &from, GDALDataset &to)
{
    double transform[6];
    if (from.GetGeoTransform(transform) == CE_None) {
        to.SetGeoTransform(transform);
        if (from.GetSpatialRef() != nullptr)
            to.SetSpatialRef(from.GetSpatialRef());
    } else if (from.GetGCPCount() > 0) {
        to.SetGCPs(from.GetGCPCount(), from.GetGCPs(), from.GetGCPSpatialRef());
    } else if (from.GetSpatialRef() != nullptr) {
        to.SetSpatialRef(from.GetSpatialRef());
    }
}

/// Throws Problem if the driver refuses the creation options.
void checkCreationOptions(GDALDriver &driver, const CPLStringList &creation, const ProductForm &form)
{
    const CPLErrorHandlerPusher quiet(CPLQuietErrorHandler); // the product itself warns again
    constexpr const char *trial = "/vsimem/trial.tif";
    constexpr int side = 64;
    std::unique_ptr<GDALDataset> product(
        driver.Create(trial, side, side, form.bands, form.type, creation.List()));
    if (!product)
        throw Problem(problemOf("The product cannot be created"));
    product.reset();
    driver.Delete(trial);
}

/// Deletes an old file at the destination; with a GeoTIFF its companions, too. GDAL, left to itself, deletes
/// the whole data set around any file, for example all files of a shapefile.
void removeOld(GDALDriver &driver, const Options &options)
{
    const fs::path &old = options.destination;
    std::error_code error;
    if (!fs::is_regular_file(old, error))
        return;
    if (isGeoTiff(options.destination))
        driver.Delete(options.destination.c_str());
    else
        fs::remove(old, error);
    if (fs::exists(old))
        throw Problem("The file " + old.string()
                      + " cannot be replaced: " + (error ? error.message() : CPLGetLastErrorMsg()));
}

} // namespace

std::string problemOf(const std::string &what)
{
    return what + ": " + CPLGetLastErrorMsg();
}

/// Deletes on destruction the files that creating the product may leave, unless keep() was called. Only files
/// that did not exist at construction are deleted.
class ProductFile::CreatedFiles
{
public:
    explicit CreatedFiles(const Options &options)
    {
        std::vector<fs::path> files = sideFiles(options.destination, options.creationOptions);
        files.emplace_back(options.destination);
        for (const fs::path &file : files) {
            std::error_code ignored;
            if (!fs::exists(fs::symlink_status(file, ignored)))
                m_files.push_back(file);
        }
    }
    ~CreatedFiles()
    {
        std::error_code ignored;
        for (const fs::path &file : m_files)
            fs::remove(file, ignored);
    }
    CreatedFiles(const CreatedFiles &) = delete;
    CreatedFiles &operator=(const CreatedFiles &) = delete;

    /// States that the product is complete: the destructor deletes nothing.
    void keep() { m_files.clear(); }

private:
    std::vector<fs::path> m_files;
};

ProductFile::ProductFile(const Raster &raster, const Options &options, const ProductForm &form)
{
    CPLStringList creation;
    for (const std::string &option : options.creationOptions)
        creation.AddString(option.c_str());
    GDALDriver *driver = GetGDALDriverManager()->GetDriverByName("GTiff");
    if (driver == nullptr)
        throw Problem("GDAL has no driver for GeoTIFF.");

    CPLErrorReset();
    checkCreationOptions(*driver, creation, form);
    removeOld(*driver, options);
    m_files = std::make_unique<CreatedFiles>(options);
    catchStopSignals();
    m_dataset.reset(driver->Create(options.destination.c_str(), raster.width(), raster.height(), form.bands,
                                   form.type, creation.List()));
    if (!m_dataset)
        throw Problem(problemOf("The product cannot be created"));
    copyGeoreference(raster.dataset(), *m_dataset);
}

ProductFile::~ProductFile()
{
    m_dataset.reset(); // before its files are deleted
}

void ProductFile::close()
{
    CPLErrorReset();
    m_dataset.reset();
    if (CPLGetLastErrorType() >= CE_Failure)
        throw Problem(problemOf("The product cannot be written"));
    checkStop();
}

void ProductFile::keep()
{
    m_files->keep();
}

} // namespace viewshed
