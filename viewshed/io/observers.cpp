#include "viewshed/io/observers.h"

#include "viewshed/problem.h"

#include <ogrsf_frmts.h>

#include <cmath>
#include <filesystem>

namespace viewshed
{

namespace
{

constexpr const char *reachField = "Max_Dist";

/// A greater number is no altitude on Earth in any unit, but a file's mark for a missing one.
constexpr double altitudeLimit = 1e7;

/// A greater number is no coordinate in any unit. Whether a point is near the raster is checked elsewhere.
constexpr double coordinateLimit = 1e15;

bool isWithin(double number, double limit)
{
    return std::abs(number) <= limit; // false for NaN
}

/// `field` is the number of the field with the reach, or -1. Throws Problem if the feature is not usable.
Observer observerOf(const OGRFeature &feature, int field, const std::string &name)
{
    const OGRGeometry *geometry = feature.GetGeometryRef();
    if (geometry == nullptr || wkbFlatten(geometry->getGeometryType()) != wkbPoint || geometry->IsEmpty())
        throw Problem(name + " is not a point.");
    const OGRPoint &point = *geometry->toPoint();
    if (!point.Is3D())
        throw Problem(name + " has no altitude.");
    if (!isWithin(point.getX(), coordinateLimit) || !isWithin(point.getY(), coordinateLimit))
        throw Problem(name + " has impossible coordinates.");
    if (!isWithin(point.getZ(), altitudeLimit))
        throw Problem(name + " has an altitude that is impossible on Earth.");

    Observer observer{.name = name, .x = point.getX(), .y = point.getY(), .z = point.getZ()};
    if (field >= 0 && feature.IsFieldSetAndNotNull(field)) {
        const double distance = feature.GetFieldAsDouble(field);
        if (std::isnan(distance))
            throw Problem(name + " has a " + reachField + " that is not a number.");
        if (distance > 0.0)
            observer.reach = distance;
    }
    return observer;
}

/// The number of the field with the reach, or -1 if the layer has none. Throws Problem if it is not numeric.
int reachFieldOf(OGRLayer &layer, const std::string &path)
{
    const int field = layer.GetLayerDefn()->GetFieldIndex(reachField);
    if (field < 0)
        return field;
    const OGRFieldType type = layer.GetLayerDefn()->GetFieldDefn(field)->GetType();
    if (type != OFTReal && type != OFTInteger && type != OFTInteger64)
        throw Problem("The field " + std::string(reachField) + " of " + path + " holds no numbers.");
    return field;
}

} // namespace

std::vector<Observer> readObservers(const std::string &path)
{
    // The option keeps the GML driver from writing a file beside the user's; "@": other drivers ignore it.
    const char *const open[] = {"@WRITE_GFS=NO", nullptr};
    const std::unique_ptr<GDALDataset> dataset(
        GDALDataset::Open(path.c_str(), GDAL_OF_VECTOR | GDAL_OF_VERBOSE_ERROR, nullptr, open));
    if (!dataset)
        throw Problem("The observers cannot be read: " + std::string(CPLGetLastErrorMsg()));
    OGRLayer *layer = dataset->GetLayerCount() > 0 ? dataset->GetLayer(0) : nullptr;
    std::vector<Observer> observers;
    if (layer != nullptr) {
        const int field = reachFieldOf(*layer, path);
        const std::string file = std::filesystem::path(path).filename().string();
        CPLErrorReset();
        for (const auto &feature : *layer)
            observers.push_back(observerOf(*feature, field,
                                           "Observer " + std::to_string(observers.size() + 1) + " of " + file));
        if (CPLGetLastErrorType() >= CE_Failure)
            throw Problem("The observers cannot be read: " + std::string(CPLGetLastErrorMsg()));
    }
    if (observers.empty())
        throw Problem("The file " + path + " holds no observer.");
    return observers;
}

} // namespace viewshed
