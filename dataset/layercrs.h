#pragma once

class OGRLayer;
class OGRSpatialReference;

/// The CRS of a vector layer's coordinates; belongs to the layer. Null where the layer has none, also where a
/// GeoPackage says so: GDAL then returns a CRS named "Undefined geographic SRS" or "Undefined Cartesian SRS",
/// which would turn metres into impossible degrees.
const OGRSpatialReference *layerCrs(OGRLayer &layer);
