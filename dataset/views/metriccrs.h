#pragma once

#include "dataset/views/demfacts.h"

#include <QString>

/// Number of the zone of the Universal Transverse Mercator projection at a place, 1 to 60, with the exceptions
/// of south-western Norway and of Svalbard. Degrees; latitude from -80 to 84.
int utmZone(double longitude, double latitude);

/// A CRS in metres that suits the DEM: the UTM zone of its middle where the DEM is no wider than a zone and
/// lies between 80° south and 84° north, otherwise Lambert's azimuthal equal-area projection around its middle.
/// As GDAL takes it ("EPSG:32632"). Empty where the place of the DEM is not known.
QString metricCrs(const DemFacts &facts);

/// Name of that CRS for people: "UTM 32N", "Lambert azimuthal equal-area".
QString metricCrsName(const DemFacts &facts);
