#include "dataset/extraction/vectorextent.h"

#include "dataset/gdalmessages.h"
#include "dataset/layercrs.h"
#include "dataset/pathencoding.h"
#include "dataset/references.h"
#include "messages/label.h"

#include <ogr_spatialref.h>
#include <ogrsf_frmts.h>

#include <algorithm>
#include <cmath>
#include <memory>
#include <optional>

namespace
{

/// The rectangle around both. QRectF's own union ignores rectangles without width or height.
QRectF united(const QRectF &one, const QRectF &other)
{
    return {QPointF(std::min(one.left(), other.left()), std::min(one.top(), other.top())),
            QPointF(std::max(one.right(), other.right()), std::max(one.bottom(), other.bottom()))};
}

/// The extent of a layer, transformed to the DEM's CRS; nothing where the layer is empty, or where it does not
/// reach the area that the CRS is made for.
std::optional<QRectF> layerExtent(OGRLayer &layer, const OGRSpatialReference *dem)
{
    OGREnvelope box;
    if (layer.GetExtent(&box, TRUE) != OGRERR_NONE)
        return std::nullopt;
    if (const OGRSpatialReference *own = layerCrs(layer); own && dem) {
        OGRSpatialReference source(*own);
        source.SetAxisMappingStrategy(OAMS_TRADITIONAL_GIS_ORDER);
        const std::unique_ptr<OGRCoordinateTransformation> transformation(
            OGRCreateCoordinateTransformation(&source, dem));
        constexpr int pointsOnEachEdge = 21; // as GDAL advises
        if (!transformation
            || !transformation->TransformBounds(box.MinX, box.MinY, box.MaxX, box.MaxY, &box.MinX, &box.MinY,
                                                &box.MaxX, &box.MaxY, pointsOnEachEdge))
            return std::nullopt;
    }
    if (!std::isfinite(box.MinX) || !std::isfinite(box.MinY) || !std::isfinite(box.MaxX)
        || !std::isfinite(box.MaxY))
        return std::nullopt;
    return QRectF(QPointF(box.MinX, box.MinY), QPointF(box.MaxX, box.MaxY));
}

} // namespace

VectorExtent readVectorExtent(const QString &file, const QString &demCrs)
{
    VectorExtent extent;
    extent.problem = endlessSourceProblem(file);
    if (!extent.problem.isEmpty())
        return extent;
    const GdalMessages messages;
    const std::unique_ptr<GDALDataset> dataset(
        GDALDataset::Open(encodePath(file).constData(), GDAL_OF_VECTOR | GDAL_OF_VERBOSE_ERROR));
    if (!dataset) {
        extent.problem =
            labelText({"MESS_EXTR_ILLISIBLE", "« %1 » n'est pas un fichier vecteur lisible."}).arg(file)
            + QLatin1Char('\n') + messages.lastError();
        return extent;
    }
    OGRSpatialReference dem;
    dem.importFromWkt(demCrs.toUtf8().constData());
    dem.SetAxisMappingStrategy(OAMS_TRADITIONAL_GIS_ORDER);
    bool found = false;
    for (OGRLayer *layer : dataset->GetLayers()) {
        const auto box = layerExtent(*layer, demCrs.isEmpty() ? nullptr : &dem);
        if (!box)
            continue;
        extent.ground = found ? united(extent.ground, *box) : *box;
        found = true;
        if (!layerCrs(*layer) || demCrs.isEmpty())
            extent.note = labelText({"MESS_EXTR_SANS_CRS",
                                     "Le fichier ou le MNT n'a pas de système de coordonnées : les coordonnées "
                                     "sont prises pour celles du MNT."});
    }
    if (!found)
        extent.problem = labelText({"MESS_EXTR_VIDE",
                                    "« %1 » ne contient aucun objet dont l'étendue soit connue dans le système "
                                    "de coordonnées du MNT."})
                             .arg(file);
    return extent;
}
