#pragma once

#include <ogrsf_frmts.h>

/// The CRS of a vector layer's coordinates; belongs to the layer. Null where the layer has none, also where a
/// GeoPackage says so: GDAL then returns a CRS named "Undefined geographic SRS" or "Undefined Cartesian SRS",
/// which would turn metres into impossible degrees.
inline const OGRSpatialReference *layerCrs(OGRLayer &layer)
{
    const OGRSpatialReference *crs = layer.GetSpatialRef();
    const char *name = crs ? crs->GetName() : nullptr;
    return name && STARTS_WITH_CI(name, "Undefined ") ? nullptr : crs;
}
