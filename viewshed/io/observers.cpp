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

/// Beyond it, a number is no altitude on Earth in any unit, but somebody's mark for "none".
constexpr double absurdAltitude = 1e7;

/// Of coordinates; those that merely miss the raster are found later.
constexpr double absurdCoordinate = 1e15;

bool usable(double coordinate, double absurd)
{
    return std::abs(coordinate) < absurd; // not with NaN
}

Observer observerOf(const OGRFeature &feature, int field, const std::string &name)
{
    const OGRGeometry *geometry = feature.GetGeometryRef();
    if (geometry == nullptr || wkbFlatten(geometry->getGeometryType()) != wkbPoint || geometry->IsEmpty())
        throw Problem(name + " is no point.");
    const OGRPoint &point = *geometry->toPoint();
    if (!point.Is3D())
        throw Problem(name + " has no altitude.");
    if (!usable(point.getX(), absurdCoordinate) || !usable(point.getY(), absurdCoordinate))
        throw Problem(name + " has coordinates that are nowhere.");
    if (!usable(point.getZ(), absurdAltitude))
        throw Problem(name + " has an altitude that is none on Earth.");

    Observer observer{name, point.getX(), point.getY(), point.getZ()};
    if (field >= 0 && feature.IsFieldSetAndNotNull(field)) {
        const double distance = feature.GetFieldAsDouble(field);
        if (std::isnan(distance))
            throw Problem(name + " has a " + reachField + " that is no number.");
        if (distance > 0.0)
            observer.reach = distance;
    }
    return observer;
}

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
    const std::unique_ptr<GDALDataset> dataset(
        GDALDataset::Open(path.c_str(), GDAL_OF_VECTOR | GDAL_OF_VERBOSE_ERROR));
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
