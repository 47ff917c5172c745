#include "dataset/views/metriccrs.h"

#include "messages/label.h"

#include <ogr_spatialref.h>

#include <QRectF>

#include <algorithm>
#include <cmath>
#include <memory>

namespace
{

/// Longitudes and latitudes of a DEM, in degrees.
struct Place
{
    bool isKnown = false;
    double longitude = 0.0; ///< of the middle
    double latitude = 0.0;
    double width = 0.0; ///< difference of longitudes
};

Place placeOf(const DemFacts &facts)
{
    Place place;
    OGRSpatialReference crs;
    if (!facts.isOpen || crs.SetFromUserInput(facts.crsText.toUtf8().constData()) != OGRERR_NONE)
        return place;
    crs.SetAxisMappingStrategy(OAMS_TRADITIONAL_GIS_ORDER);
    OGRSpatialReference degrees;
    degrees.importFromEPSG(4326);
    degrees.SetAxisMappingStrategy(OAMS_TRADITIONAL_GIS_ORDER);
    const std::unique_ptr<OGRCoordinateTransformation> transform(
        OGRCreateCoordinateTransformation(&crs, &degrees));
    const auto &toGround = facts.toGround;
    std::array<double, 3> x{};
    std::array<double, 3> y{};
    for (std::size_t at = 0; at < 3; ++at) { // the ends and the middle of the middle row
        const double column = facts.width * (static_cast<double>(at) / 2.0);
        const double row = facts.height / 2.0;
        x[at] = toGround[0] + column * toGround[1] + row * toGround[2];
        y[at] = toGround[3] + column * toGround[4] + row * toGround[5];
    }
    if (!transform || !transform->Transform(3, x.data(), y.data()))
        return place;
    place.isKnown = true;
    place.longitude = std::remainder(x[1], 360.0);
    place.latitude = y[1];
    place.width = std::abs(std::remainder(x[2] - x[1], 360.0)) + std::abs(std::remainder(x[1] - x[0], 360.0));
    return place;
}

bool fitsZone(const Place &place)
{
    constexpr double zone = 6.0; // degrees
    return place.width <= zone && place.latitude > -80.0 && place.latitude < 84.0;
}

} // namespace

int utmZone(double longitude, double latitude)
{
    const double turned = std::remainder(longitude, 360.0);
    const int zone = static_cast<int>(std::floor((turned + 180.0) / 6.0)) % 60 + 1;
    if (latitude >= 56.0 && latitude < 64.0 && turned >= 3.0 && turned < 12.0)
        return 32;                                            // south-western Norway
    if (latitude >= 72.0 && turned >= 0.0 && turned < 42.0) { // Svalbard has four wide zones
        if (turned < 9.0)
            return 31;
        if (turned < 21.0)
            return 33;
        return turned < 33.0 ? 35 : 37;
    }
    return zone;
}

QString metricCrs(const DemFacts &facts)
{
    const Place place = placeOf(facts);
    if (!place.isKnown)
        return {};
    if (fitsZone(place))
        return QStringLiteral("EPSG:%1").arg((place.latitude < 0.0 ? 32700 : 32600)
                                             + utmZone(place.longitude, place.latitude));
    return QStringLiteral("+proj=laea +lat_0=%1 +lon_0=%2 +datum=WGS84 +units=m")
        .arg(QString::number(place.latitude, 'f', 4), QString::number(place.longitude, 'f', 4));
}

QString metricCrsName(const DemFacts &facts)
{
    const Place place = placeOf(facts);
    if (!place.isKnown)
        return {};
    if (fitsZone(place))
        return QStringLiteral("UTM %1%2")
            .arg(QString::number(utmZone(place.longitude, place.latitude)),
                 place.latitude < 0.0 ? QStringLiteral("S") : QStringLiteral("N"));
    return labelText({"MESS_CRS_LAEA", "Lambert azimutale équivalente"});
}
