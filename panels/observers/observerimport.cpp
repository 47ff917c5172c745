#include "panels/observers/observerimport.h"

#include "dataset/QuvoFilerDialog.h"
#include "dataset/chooser/filefilters.h"
#include "messages/Prompt.h"
#include "messages/label.h"
#include "panels/observers/AbsoluteHeightEditor.h"
#include "panels/observers/LayerDialog.h"
#include "panels/observers/intervisibilityProcessInfoDialog.h"
#include "panels/options/vectorobservers.h"

#include <QFileInfo>
#include <QLocale>
#include <QWidget>

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

/// The layer that is imported; empty where the source has only one.
struct LayerAnswer
{
    QString layer;
    bool cancelled = false;
};

LayerAnswer chooseLayer(const QVector<LayerFacts> &layers, QWidget *parent)
{
    if (layers.size() < 2)
        return {};
    LayerDialog dialog(layers, parent);
    const bool accepted = dialog.exec() == QDialog::Accepted;
    return {dialog.layer(), !accepted};
}

/// The way to make observers of a source.
struct ImportChoices
{
    double step = 1.0; ///< between the samples of lines
    HeightChoice heights;
    bool cancelled = false;
};

/// Asks where there is something to choose: a distance between samples, or where the heights come from.
ImportChoices askChoices(const VectorObservers &source, const DemGround &ground, const ObserverPoint &values,
                         ComputingEstimate *estimate, QWidget *parent)
{
    const bool hasHeights = source.hasZ || !source.numericAttributes.isEmpty();
    if (source.lines.isEmpty() && !hasHeights && sampledCount(source, 1.0) <= mostObservers)
        return {};
    intervisibilityProcessInfoDialog dialog(source, ground.width(), ground.height(), ground.cellSize(), parent);
    if (estimate)
        dialog.setEstimate(*estimate, values);
    const bool accepted = dialog.exec() == QDialog::Accepted;
    return {dialog.step(), dialog.heightChoice(), !accepted};
}

/// Sentences about what could not be imported.
QStringList findingsOf(const VectorObservers &source, const SampledObservers &observers)
{
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
    if (source.unusableValues > 0)
        findings += labelText({"MESS_OBS_VALEURS",
                               "Valeurs ignorées, car aucun observateur ne peut les avoir (azimut, angle, "
                               "distance ou hauteur) : %1."})
                        .arg(source.unusableValues);
    return findings;
}

/// Shows how many observers came, and which CRS they came from.
void confirm(int count, const QStringList &crsNotes, QWidget *button)
{
    QString text =
        labelText({"MESS_OBS_IMPORTES", "Observateurs importés : %1."}).arg(QLocale().toString(count));
    if (!crsNotes.isEmpty())
        text += QLatin1Char('\n') + crsNotes.join(QLatin1Char('\n'));
    Prompt::notice(button, text);
}

} // namespace

QList<ObserverPoint> importObservers(const QString &dem, const DemGround &ground, const ObserverPoint &values,
                                     ComputingEstimate *estimate, QWidget *button)
{
    QWidget *parent = button->window();
    const QString file = chooseSource(dem, parent);
    if (file.isEmpty())
        return {};
    const LayerAnswer layer = chooseLayer(usableLayers(file), parent);
    if (layer.cancelled)
        return {};
    const VectorObservers source = readVectorObservers(file, ground.crs(), layer.layer);
    if (!source.problem.isEmpty()) {
        Prompt::critical(parent, source.problem);
        return {};
    }
    const ImportChoices choices = askChoices(source, ground, values, estimate, parent);
    if (choices.cancelled)
        return {};
    SampledObservers observers = observersFrom(source, choices.step, values, choices.heights);
    adaptOutsidePoints(observers.points, ground, parent);
    const QStringList findings = findingsOf(source, observers);
    if (!findings.isEmpty())
        Prompt::warning(parent, findings.join(QStringLiteral("\n\n")));
    confirm(static_cast<int>(observers.points.size()), source.crsNotes, button);
    return observers.points;
}
