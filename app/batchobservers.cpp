#include "app/batchobservers.h"

#include "messages/label.h"
#include "panels/vectorobservers.h"

namespace
{

/// The observers of the vector source; a problem in the batch where there are none.
QList<ObserverPoint> sourceObservers(const IntervisibilityOptions &options, const DemGround &ground,
                                     int &notTaken, BatchObservers &batch)
{
    if (options.points.isEmpty())
        return {};
    const VectorObservers source = readVectorObservers(options.points, ground.crs());
    notTaken = source.notTaken;
    batch.sourceFiles = source.files;
    const double step = options.step > 0.0 ? options.step : ground.cellSize();
    if (!source.error.isEmpty()) {
        batch.problem = labelText({"MESS_ERR_FORMAT", "Format non reconnu"}) + QLatin1Char('\n') + source.error;
        return {};
    }
    if (sampledCount(source, step) > mostObservers) {
        batch.problem =
            labelText({"MESS_OBS_TROP", "« %1 » donne plus de %2 observateurs ; choisissez un pas plus grand."})
                .arg(options.points, QString::number(mostObservers, 'f', 0));
        return {};
    }
    ObserverPoint point;
    point.height = options.height;
    point.mode = readAltitudeMode(options.mode).value_or(point.mode);
    point.maxDistance = options.distance;
    return observersFrom(source, step, point);
}

} // namespace

BatchObservers batchObservers(const IntervisibilityOptions &options, const QString &dem, int band,
                              WorkFolder &workFolder)
{
    BatchObservers batch;
    const DemGround ground(dem, band);
    int leftOut = 0;
    const QList<ObserverPoint> points = options.observers + sourceObservers(options, ground, leftOut, batch);
    if (!batch.problem.isEmpty())
        return batch;

    QList<ToolObserver> observers;
    for (const ObserverPoint &point : points) {
        const auto altitude = absoluteAltitude(point, ground.elevation(point.position()));
        if (point.enabled && altitude)
            observers += {point.x, point.y, *altitude, point.maxDistance};
        else
            leftOut += point.enabled;
    }
    if (observers.isEmpty()) {
        batch.problem = labelText({"MESS_OBS_NUL_PART", "Aucun observateur n'a de sol sous lui dans ce MNT."});
        return batch;
    }
    if (leftOut > 0)
        batch.warning = labelText({"MESS_OBS_LAISSES",
                                   "Observateurs laissés de côté, sans sol sous eux ou sans position : %1."})
                            .arg(leftOut);
    const QString folder = workFolder.newFolder();
    const QString file = folder.isEmpty() ? QString() : writePointFile(folder, observers);
    if (file.isEmpty())
        batch.problem =
            labelText({"MESS_OBS_NON_ECRIT", "Le fichier des observateurs ne peut pas être écrit."});
    IntervisibilityOptions combined = options;
    combined.combined = observers.size() > 1;
    batch.fragment = intervisibilityFragment(combined, file);
    return batch;
}
