#include "dataset/layercrs.h"

#include <ogrsf_frmts.h>

const OGRSpatialReference *layerCrs(OGRLayer &layer)
{
    const OGRSpatialReference *crs = layer.GetSpatialRef();
    const char *name = crs ? crs->GetName() : nullptr;
    return name && STARTS_WITH_CI(name, "Undefined ") ? nullptr : crs;
}
