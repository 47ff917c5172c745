#include "panels/options/contours/contourfields.h"

#include "panels/options/contours/contourinput.h"
#include "panels/options/contours/contourlevels.h"

#include <limits>

QVector<RecordField<ContourOptions>> fieldsOf(const ContourOptions &)
{
    constexpr double highest = highestElevation;
    constexpr int mostIndexSteps = 100;
    constexpr double anyNumber = std::numeric_limits<double>::max();
    return {
        QUVO_FIELD(ContourOptions, interval, 0, highest, "MESS_OPT_INTERVALLE",
                   "intervalle entre les courbes, dans l'unité du MNT"),
        QUVO_FIELD(ContourOptions, attribute, 0, 0, "MESS_OPT_ATTRIBUT",
                   "attribut qui reçoit l'altitude ; vide : aucun"),
        QUVO_FIELD(ContourOptions, threeD, 0, 0, "MESS_OPT_3D", "une altitude à chaque point des courbes"),
        QUVO_FIELD(ContourOptions, fixedLevels, 0, 0, "MESS_OPT_NIVEAUX",
                   "altitudes séparées par des espaces, en plus de celles de l'intervalle"),
        QUVO_FIELD(ContourOptions, everyValueValid, 0, 0, "MESS_OPT_TOUT_VALIDE",
                   "prendre aussi la valeur sans donnée du MNT pour une altitude"),
        QUVO_FIELD(ContourOptions, noDataValue, -anyNumber, anyNumber, "MESS_OPT_IGNORER",
                   "valeur du MNT à ignorer"),
        QUVO_FIELD(ContourOptions, offset, -highest, highest, "MESS_OPT_OFFSET",
                   "altitude à partir de laquelle comptent les intervalles"),
        QUVO_FIELD(ContourOptions, indexEvery, 0, mostIndexSteps, "MESS_OPT_MAITRESSES",
                   "une courbe maîtresse toutes les n courbes de l'intervalle ; 0 : aucune"),
        QUVO_FIELD(ContourOptions, shortestRing, 0, highest, "MESS_OPT_ANNEAU",
                   "longueur en dessous de laquelle une courbe fermée est omise, dans l'unité du terrain"),
        QUVO_FIELD(ContourOptions, smoothing, 0, longestSmoothing, "MESS_OPT_LISSAGE",
                   "rayon de lissage du MNT avant le tracé, en cellules ; 0 : pas de lissage"),
        QUVO_FIELD(ContourOptions, polygons, 0, 0, "MESS_OPT_SURFACES",
                   "surfaces entre les niveaux au lieu de courbes"),
        QUVO_FIELD(ContourOptions, lowestAttribute, 0, 0, "MESS_OPT_ATTR_BAS",
                   "attribut qui reçoit l'altitude la plus basse d'une surface"),
        QUVO_FIELD(ContourOptions, highestAttribute, 0, 0, "MESS_OPT_ATTR_HAUT",
                   "attribut qui reçoit l'altitude la plus haute d'une surface"),
        QUVO_FIELD(ContourOptions, styled, 0, 0, "MESS_OPT_STYLES",
                   "donner leur dessin aux objets, dans les formats qui le gardent"),
        QUVO_FIELD(ContourOptions, qgisStyle, 0, 0, "MESS_OPT_QML",
                   "écrire un style QGIS (.qml) à côté du produit"),
    };
}

QString fieldProblem(const ContourOptions &options)
{
    if (options.polygons
        && (options.lowestAttribute.isEmpty() || options.highestAttribute.isEmpty()
            || options.lowestAttribute.compare(options.highestAttribute, Qt::CaseInsensitive) == 0))
        return labelText(
            {"MESS_OPT_CN_ATTRIBUTS", "Les deux attributs des surfaces doivent avoir des noms différents."});
    const QString taken = takenAttributeProblem(options);
    return taken.isEmpty() ? levelsProblem(options.fixedLevels) : taken;
}

QString runProblem(const ContourOptions &options)
{
    if (!isComplete(options))
        return labelText({"MESS_OPT_CN_RIEN", "Indiquez interval ou fixedLevels."});
    if (options.interval && *options.interval <= 0.0)
        return labelText({"MESS_CN_INTERV_NUL", "Un intervalle de 0 ne donne aucune courbe."});
    if (options.indexEvery > 0 && !options.interval && !options.polygons)
        return labelText({"MESS_OPT_CN_MAITRES",
                          "Les courbes maîtresses se comptent dans un intervalle : indiquez-le aussi."});
    const QString problem = fieldProblem(options);
    return problem.isEmpty() ? ignoredValueProblem(options) : problem;
}

bool dependsOnExtremes(const ContourOptions &)
{
    return true;
}
