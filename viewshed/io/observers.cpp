#include "viewshed/io/observers.h"

#include "viewshed/problem.h"

#include <ogrsf_frmts.h>

#include <algorithm>
#include <cmath>
#include <filesystem>

namespace viewshed
{

namespace
{

/// A greater number is no altitude on Earth in any unit, but a file's mark for a missing one.
constexpr double altitudeLimit = 1e7;

/// A greater number is no coordinate in any unit. Whether a point is near the raster is checked elsewhere.
constexpr double coordinateLimit = 1e15;

bool isWithin(double number, double limit)
{
    return std::abs(number) <= limit; // false for NaN
}

/// The fields of a layer that describe observers.
class Fields
{
public:
    /// Throws Problem if a field of numbers is not numeric.
    Fields(OGRFeatureDefn &layer, const std::string &path)
        : m_layer(layer)
    {
        for (const char *name : {"Max_Dist", "RADIUS1", "RADIUS2", "OFFSETA", "OFFSETB", "AZIMUTH1", "AZIMUTH2",
                                 "VERT1", "VERT2"}) {
            const int field = layer.GetFieldIndex(name);
            if (field < 0)
                continue;
            const OGRFieldType type = layer.GetFieldDefn(field)->GetType();
            if (type != OFTReal && type != OFTInteger && type != OFTInteger64)
                throw Problem("The field " + std::string(name) + " of " + path + " holds no numbers.");
        }
    }

    std::string name(const OGRFeature &feature) const
    {
        const int field = m_layer.GetFieldIndex("NAME");
        return field >= 0 && feature.IsFieldSetAndNotNull(field) ? feature.GetFieldAsString(field) : "";
    }

    /// The number in a field; nothing without the field or a value. Throws Problem if its absolute value is
    /// greater than `limit`.
    std::optional<double> number(const OGRFeature &feature, const char *name, double limit,
                                 const std::string &observer) const
    {
        const int field = m_layer.GetFieldIndex(name);
        if (field < 0 || !feature.IsFieldSetAndNotNull(field))
            return {};
        const double number = feature.GetFieldAsDouble(field);
        if (std::isnan(number))
            throw Problem(observer + " has a " + name + " that is not a number.");
        if (!isWithin(number, limit))
            throw Problem(observer + " has an impossible " + name + ".");
        return number;
    }

private:
    OGRFeatureDefn &m_layer;
};

/// The azimuth from 0 up to but not including 360.
double wrapped(double azimuth)
{
    constexpr double circle = 360.0;
    const double rest = std::fmod(azimuth, circle);
    return rest < 0.0 ? rest + circle : rest;
}

/// Throws Problem if the feature is not usable.
void readFields(Observer &observer, const OGRFeature &feature, const Fields &fields)
{
    constexpr double any = std::numeric_limits<double>::infinity();
    constexpr double circle = 360.0;
    constexpr double upright = 90.0;
    const auto number = [&](const char *name, double limit) {
        return fields.number(feature, name, limit, observer.name);
    };
    observer.ownName = fields.name(feature);
    observer.z += number("OFFSETA", altitudeLimit).value_or(0.0);
    observer.targetHeight = number("OFFSETB", altitudeLimit);
    observer.fromAzimuth = wrapped(number("AZIMUTH1", circle).value_or(0.0));
    observer.toAzimuth = wrapped(number("AZIMUTH2", circle).value_or(0.0));
    observer.highestAngle = number("VERT1", upright).value_or(upright);
    observer.lowestAngle = number("VERT2", upright).value_or(-upright);
    if (observer.highestAngle < observer.lowestAngle)
        throw Problem(observer.name + " has a VERT1 below its VERT2.");
    observer.nearest = std::max(number("RADIUS1", any).value_or(0.0), 0.0);
    for (const char *name : {"Max_Dist", "RADIUS2"}) {
        const double distance = number(name, any).value_or(0.0);
        if (distance > 0.0)
            observer.reach = std::min(observer.reach, distance);
    }
}

/// Throws Problem if the feature is not usable.
Observer observerOf(const OGRFeature &feature, const Fields &fields, const std::string &name)
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

    Observer observer{.name = name, .x = point.getX(), .y = point.getY(), .z = point.getZ(), .ownName = {}};
    readFields(observer, feature, fields);
    return observer;
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
        const Fields fields(*layer->GetLayerDefn(), path);
        const std::string file = std::filesystem::path(path).filename().string();
        CPLErrorReset();
        for (const auto &feature : *layer)
            observers.push_back(observerOf(*feature, fields,
                                           "Observer " + std::to_string(observers.size() + 1) + " of " + file));
        if (CPLGetLastErrorType() >= CE_Failure)
            throw Problem("The observers cannot be read: " + std::string(CPLGetLastErrorMsg()));
    }
    if (observers.empty())
        throw Problem("The file " + path + " holds no observer.");
    return observers;
}

} // namespace viewshed
