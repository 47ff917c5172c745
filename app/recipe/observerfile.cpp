#include "app/recipe/observerfile.h"

#include "messages/label.h"
#include "panels/options/pointfile.h"
#include "panels/options/vectorobservers.h"

SourceObservers sourceObservers(const IntervisibilityOptions &options, const DemGround &ground)
{
    SourceObservers observers;
    if (options.points.isEmpty())
        return observers;
    const VectorObservers source = readVectorObservers(options.points, ground.crs(), options.pointsLayer);
    observers.skippedFeatures = source.skippedFeatures;
    observers.files = source.files;
    const double step = options.step > 0.0 ? options.step : ground.cellSize();
    if (!source.problem.isEmpty()) {
        observers.problem = source.problem;
        return observers;
    }
    if (sampledCount(source, step) > mostObservers) {
        observers.problem =
            labelText({"MESS_OBS_TROP", "« %1 » donne plus de %2 observateurs ; choisissez un pas plus grand."})
                .arg(options.points, QString::number(mostObservers, 'f', 0));
        return observers;
    }
    ObserverPoint point;
    point.height = options.height;
    point.mode = readAltitudeMode(options.mode).value_or(point.mode);
    point.maxDistance = options.distance;
    observers.points = observersFrom(source, step, point).points;
    return observers;
}

ToolObservers prepareObservers(const IntervisibilityOptions &options, const QString &dem, int band,
                               WorkFolder &workFolder)
{
    ToolObservers prepared;
    const DemGround ground(dem, band);
    const SourceObservers source = sourceObservers(options, ground);
    prepared.sourceFiles = source.files;
    prepared.problem = source.problem;
    if (!prepared.problem.isEmpty())
        return prepared;
    int leftOutCount = source.skippedFeatures;
    const QList<ObserverPoint> points = options.observers + source.points;

    QList<ToolObserver> observers;
    for (const ObserverPoint &point : points) {
        const auto observer = toolObserver(point, {}, ground.surfaceElevation(point.position()));
        if (observer)
            observers += *observer;
        else
            leftOutCount += point.enabled;
    }
    if (observers.isEmpty()) {
        prepared.problem =
            labelText({"MESS_OBS_NUL_PART", "Aucun observateur ne se trouve sur le sol de ce MNT."});
        return prepared;
    }
    if (leftOutCount > 0)
        prepared.warnings +=
            labelText({"MESS_OBS_LAISSES", "Observateurs ignorés, faute de sol ou de position : %1."})
                .arg(leftOutCount);
    const QString folder = workFolder.newFolder();
    const QString file = folder.isEmpty() ? QString() : writePointFile(folder, observers);
    if (file.isEmpty())
        prepared.problem =
            labelText({"MESS_OBS_NON_ECRIT", "Le fichier des observateurs ne peut pas être écrit."});
    IntervisibilityOptions combined = options;
    combined.combined = observers.size() > 1;
    prepared.fragment = intervisibilityFragment(combined, file);
    return prepared;
}
