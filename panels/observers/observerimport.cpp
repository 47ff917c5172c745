#include "panels/observers/observerimport.h"

#include "dataset/QuvoFilerDialog.h"
#include "dataset/chooser/filefilters.h"
#include "messages/Prompt.h"
#include "messages/label.h"
#include "panels/observers/AbsoluteHeightEditor.h"
#include "panels/observers/intervisibilityProcessInfoDialog.h"
#include "panels/options/vectorobservers.h"

#include <QFileInfo>

#include <algorithm>

namespace
{

QString chooseSource(const QString &dem, QWidget *parent)
{
    return QuvoFilerDialog::getSelection(parent, QuvoFilerDialog::OpenFile,
                                         labelText({"MESS_CHX_VEC_AJOUT", "open vector"}),
                                         QFileInfo(dem).absolutePath(), fileFilter(vectorFileFormats()));
}

/// Sets the altitude of the points outside of the DEM that the user types, or removes these points.
void adaptOutsidePoints(QList<ObserverPoint> &points, const DemGround &ground, QWidget *parent)
{
    const auto isOutside = [&](const ObserverPoint &point) { return !ground.holds(point.position()); };
    if (std::none_of(points.begin(), points.end(), isOutside))
        return;
    AbsoluteHeightEditor editor(parent);
    if (editor.exec() != QDialog::Accepted) {
        points.erase(std::remove_if(points.begin(), points.end(), isOutside), points.end());
        return;
    }
    for (ObserverPoint &point : points) {
        if (isOutside(point)) {
            point.mode = AltitudeMode::Absolute;
            point.height = editor.absoluteHeight();
        }
    }
}

} // namespace

QList<ObserverPoint> importObservers(const QString &dem, const DemGround &ground, const ObserverPoint &values,
                                     QWidget *parent)
{
    const QString file = chooseSource(dem, parent);
    if (file.isEmpty())
        return {};
    const VectorObservers source = readVectorObservers(file, ground.crs());
    if (!source.problem.isEmpty()) {
        Prompt::critical(parent,
                         labelText({"MESS_ERR_FORMAT", "Format non reconnu"}) + QStringLiteral("\n\n")
                             + source.problem);
        return {};
    }
    intervisibilityProcessInfoDialog choices(source, ground.width(), ground.height(), ground.cellSize(),
                                             parent);
    if (choices.exec() != QDialog::Accepted)
        return {};
    SampledObservers observers = observersFrom(source, choices.step(), values, choices.heightChoice());
    adaptOutsidePoints(observers.points, ground, parent);
    QStringList findings;
    if (source.skippedFeatures > 0)
        findings +=
            labelText({"MESS_OBS_NON_PRIS",
                       "%1 objets ont été ignorés : sans géométrie, ou hors du système de coordonnées du MNT."})
                .arg(source.skippedFeatures);
    if (observers.withoutHeight > 0)
        findings += labelText({"MESS_OBS_SANS_HAUTEUR",
                               "Points sans hauteur utilisable, qui ont reçu la hauteur par défaut : %1."})
                        .arg(observers.withoutHeight);
    if (!findings.isEmpty())
        Prompt::warning(parent, findings.join(QStringLiteral("\n\n")));
    return observers.points;
}
