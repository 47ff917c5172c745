#include "app/process/demremarks.h"

#include "app/process/productsteps.h"
#include "dataset/views/metriccrs.h"
#include "messages/shownnumber.h"

#include <QStringList>

#include <algorithm>
#include <cmath>

namespace
{

/// A number that files use for cells without data, where the file does not declare it.
std::optional<double> undeclaredVoid(const DemFindings &dem)
{
    if (!dem.extremes.known)
        return std::nullopt;
    const double lowest = dem.extremes.minimum;
    constexpr double usual[] = {-9999.0, -32768.0, -32767.0, -99999.0};
    constexpr double noElevation = -1e6;
    const bool isVoid =
        lowest < noElevation || std::find(std::begin(usual), std::end(usual), lowest) != std::end(usual);
    return isVoid ? std::optional(lowest) : std::nullopt;
}

/// Whether the coordinates of a DEM without CRS may be longitudes and latitudes.
bool looksLikeDegrees(const DemFacts &facts)
{
    const auto &toGround = facts.toGround;
    const double east = toGround[0] + facts.width * toGround[1];
    const double south = toGround[3] + facts.height * toGround[5];
    return std::abs(toGround[0]) <= 360.0 && std::abs(east) <= 360.0 && std::abs(toGround[3]) <= 91.0
        && std::abs(south) <= 91.0 && std::abs(toGround[1]) < 0.6;
}

void addCrs(const DemFacts &facts, QVector<DemRemark> &remarks)
{
    if (!facts.isGeoreferenced || facts.crs != DemCrs::None)
        return;
    if (looksLikeDegrees(facts))
        remarks +=
            {labelText({"MESS_REM_CRS_DEGRES",
                        "Aucun système de coordonnées, mais des coordonnées qui ressemblent à des degrés : "
                        "elles comptent pour des mètres tant que le fichier ne le déclare pas."}),
             true};
    else
        remarks += {labelText(
            {"MESS_REM_SANS_CRS", "Aucun système de coordonnées : ses unités comptent pour des mètres."})};
}

/// What the unit of elevations means where the tool reads them as they are.
void addHeights(const DemFacts &facts, Process process, QVector<DemRemark> &remarks)
{
    const bool areStoredInMetres =
        std::abs(facts.elevationUnit.value_or(1.0) * facts.elevationScale - 1.0) < 1e-9
        && facts.elevationOffset == 0.0;
    if (areStoredInMetres)
        return;
    const QString step = QString::number(facts.elevationUnit.value_or(1.0) * facts.elevationScale, 'g', 5);
    if (process == Process::Contour)
        remarks +=
            {labelText({"MESS_REM_HAUT_COURBES",
                        "Altitudes stockées par pas de %1 m : l'équidistance et les niveaux comptent ces pas."})
                 .arg(step)};
    else if (process == Process::ColorRelief)
        remarks +=
            {labelText({"MESS_REM_HAUT_TABLE",
                        "Altitudes stockées par pas de %1 m : les valeurs de la table comptent ces pas."})
                 .arg(step)};
}

/// What the user chose to compute on.
void addProduct(const DemFacts &facts, const ProcessingRequest &request, const QLocale &locale,
                QVector<DemRemark> &remarks)
{
    if (!request.part.isNull())
        remarks += {labelText({"MESS_REM_PARTIE", "Une partie de %1 × %2 cellules est traitée."})
                        .arg(locale.toString(request.part.width()), locale.toString(request.part.height()))};
    const QString &crs = request.outputOptions.reproject;
    if (!crs.isEmpty())
        remarks += {labelText({"MESS_REM_PROJ", "Le résultat est dans le système %1."})
                        .arg(crs == QLatin1String("auto") ? metricCrsName(facts) : crs)};
}

void addVoids(const DemFindings &dem, const ProcessingRequest &request, const QLocale &locale,
              QVector<DemRemark> &remarks)
{
    constexpr double noticeable = 0.0005;
    if (dem.voids.value_or(0.0) < noticeable)
        return;
    const CellUse &use = request.cellUse;
    const QString percent = shownNumber(*dem.voids * 100.0, 'f', *dem.voids < 0.1 ? 1 : 0, locale);
    if (request.outputOptions.fillDistance > 0.0) {
        remarks +=
            {labelText({"MESS_REM_COMBLES",
                        "Environ %1 % de cellules sans donnée, comblées jusqu'à %2 cellules de distance."})
                 .arg(percent, QString::number(request.outputOptions.fillDistance))};
        return;
    }
    remarks += {use.zeroWithoutData
                    ? labelText({"MESS_REM_VIDES_ZERO",
                                 "Environ %1 % de cellules sans donnée, qui valent 0 dans le produit."})
                          .arg(percent)
                    : labelText({"MESS_REM_VIDES", "Environ %1 % de cellules sans donnée."}).arg(percent)};
}

} // namespace

QString demHeadline(const DemFacts &facts, const QLocale &locale)
{
    if (!facts.isOpen)
        return {};
    QString text = labelText({"MESS_REM_TAILLE", "%1 × %2 cellules"})
                       .arg(locale.toString(facts.width), locale.toString(facts.height));
    if (!facts.crsName.isEmpty())
        text += QStringLiteral(" · ") + facts.crsName;
    return text;
}

QVector<DemRemark> demRemarks(const DemFindings &dem, const ProcessingRequest &request, const QLocale &locale)
{
    const DemFacts &facts = dem.facts;
    QVector<DemRemark> remarks;
    if (!facts.isOpen || !request.process)
        return remarks;
    if (const auto value = undeclaredVoid(dem))
        remarks += {labelText({"MESS_REM_NON_DECLARE",
                               "La valeur %1 n'est pas déclarée comme absence de donnée : elle compte pour une "
                               "altitude."})
                        .arg(QString::number(*value, 'g', 7)),
                    true};
    if (facts.cellType == QLatin1String("Byte"))
        remarks +=
            {labelText({"MESS_REM_OCTETS",
                        "Altitudes stockées en octets, de 0 à 255 : ce fichier est peut-être une image."}),
             true};
    addCrs(facts, remarks);
    const DemTreatment treatment = treatmentOf(request, facts);
    const QString treated = treatmentText(treatment, facts, request.cellUse, locale);
    if (!treated.isEmpty())
        remarks += {treated};
    else if (treatmentOf(request.cellUse, facts).isNeeded())
        remarks += {labelText({"MESS_REM_TEL_QUEL", "Le MNT est lu tel quel, comme vous l'avez demandé."})};
    addHeights(facts, *request.process, remarks);
    addVoids(dem, request, locale, remarks);
    addProduct(facts, request, locale, remarks);
    constexpr double large = 25e6; // cells
    if (!facts.hasOverviews && static_cast<double>(facts.width) * facts.height > large)
        remarks += {
            labelText({"MESS_REM_SANS_VUES", "Pas de vues d'ensemble : chaque aperçu lit le fichier entier."})};
    std::stable_sort(remarks.begin(), remarks.end(), [](const DemRemark &one, const DemRemark &other) {
        return one.isUrgent && !other.isUrgent;
    });
    return remarks;
}
