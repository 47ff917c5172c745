#include "panels/optiontips.h"

#include "messages/label.h"
#include "panels/controls/tips.h"
#include "panels/optionsWidget.h"

#include <QVector>

#include <algorithm>

namespace
{

/// A control that shows an option. `meaning` replaces the field's, where that speaks of words that only recipes
/// use.
struct TipRow
{
    const char *control; ///< object name of the control, or of a frame around it
    const char *field;
    const char *argument = ""; ///< what the tool receives; empty: the tool does not know the option
    Label meaning{nullptr, nullptr};
};

constexpr Label ratioMeaning{
    "MESS_TIP_RAPPORT",
    "Rapport de l'unité verticale à l'unité horizontale : choisissez-le dans la liste ou "
    "tapez un nombre."};
constexpr Label hornMeaning{"MESS_TIP_HORN", "Formule de Horn, pour un terrain accidenté. Par défaut."};
constexpr Label smoothMeaning{"MESS_TIP_ZEVENBERGEN",
                              "Formule de Zevenbergen et Thorne, pour un terrain lisse."};

constexpr TipRow ratioRow{"m_pRatioFrame", "scaleIndex", "-s", ratioMeaning};
constexpr TipRow hornRow{"m_pRBHorn", "zevenbergenThorne", "", hornMeaning};
constexpr TipRow smoothRow{"m_pRBZevenbergenThorne", "zevenbergenThorne", "-alg ZevenbergenThorne",
                           smoothMeaning};
constexpr TipRow edgesRow{"m_pChBComputeAtEdges", "computeEdges", "-compute_edges"};

QVector<TipRow> rowsOf(const ShadedOptions &)
{
    return {
        {"m_pZFactorFrame", "exaggeration", "-z"},
        {"m_pCompassFrame", "compass", "-az"},
        {"m_pAzimuthField", "compass", "-az"},
        {"m_pAltitudeSlider", "altitude", "-alt"},
        ratioRow,
        hornRow,
        smoothRow,
        edgesRow,
        {"m_pCBLight",
         "light",
         "-multidirectional, -combined, -igor",
         {"MESS_TIP_LUMIERE",
          "D'où vient la lumière : d'un soleil, de plusieurs à la fois, d'un soleil avec des pentes "
          "assombries, ou "
          "de toutes parts. Par défaut un soleil."}},
    };
}

QVector<TipRow> rowsOf(const SlopeOptions &)
{
    return {
        {"m_pRBDegreesSlope", "percent", "", {"MESS_TIP_DEGRES", "Pentes en degrés, de 0 à 90. Par défaut."}},
        {"m_pRBPercentSlope",
         "percent",
         "-p",
         {"MESS_TIP_POURCENT", "Pentes en pour cent : 100 % font 45 degrés."}},
        ratioRow,
        hornRow,
        smoothRow,
        edgesRow,
        {"m_pCBClasses",
         "classes",
         "",
         {"MESS_TIP_CLASSES", "Une image en classes à côté du produit, avec sa légende. Par défaut aucune."}},
    };
}

QVector<TipRow> rowsOf(const AspectOptions &)
{
    constexpr Label azimuth{"MESS_TIP_AZIMUT",
                            "Angles depuis le nord, dans le sens des aiguilles d'une montre. Par "
                            "défaut."};
    constexpr Label trigonometric{"MESS_TIP_TRIGO",
                                  "Angles depuis l'est, en sens inverse des aiguilles d'une montre."};
    return {
        {"m_pRBAzimuth", "trigonometric", "", azimuth},
        {"m_pPBAzimuth", "trigonometric", "", azimuth},
        {"m_pRBTrigonometric", "trigonometric", "-trigonometric", trigonometric},
        {"m_pPBTrigonometric", "trigonometric", "-trigonometric", trigonometric},
        {"m_pRBZero",
         "zeroForFlat",
         "-zero_for_flat",
         {"MESS_TIP_PLAT_ZERO", "Les zones plates ont la valeur 0, comme le nord. Par défaut."}},
        {"m_pRBNoData",
         "zeroForFlat",
         "",
         {"MESS_TIP_PLAT_VIDE", "Les zones plates ont la valeur -9999, qui veut dire : pas de donnée."}},
        {"m_pCBDirections",
         "directions",
         "",
         {"MESS_TIP_DIRECTIONS",
          "Une image en 8 ou 16 directions à côté du produit, avec sa légende. Par défaut aucune."}},
        hornRow,
        smoothRow,
        edgesRow,
    };
}

QVector<TipRow> rowsOf(const TerrainIndexOptions &)
{
    return {
        edgesRow,
        {"m_pRBRiley",
         "wilson",
         "",
         {"MESS_TIP_RILEY", "Racine de la somme des carrés des différences (Riley). Par défaut."}},
        {"m_pRBWilson",
         "wilson",
         "-alg Wilson",
         {"MESS_TIP_WILSON", "Moyenne des différences absolues (Wilson), pour la bathymétrie."}},
    };
}

QVector<TipRow> rowsOf(const ColorReliefOptions &)
{
    return {
        {"m_pCBColorTable",
         "table",
         "",
         {"MESS_TIP_TABLE", "Les couleurs des altitudes : une table de la bibliothèque ou l'une des vôtres."}},
        {"m_pRBAbsoluteAltitude",
         "spread",
         "",
         {"MESS_TIP_ABSOLU", "Chaque couleur à l'altitude de la table. Par défaut."}},
        {"m_pRBRelatifAltitude",
         "spread",
         "",
         {"MESS_TIP_RELATIF", "La table s'étale de la plus basse à la plus haute altitude du MNT."}},
        {"m_pChBAddAlphaChannel", "alpha", "-alpha"},
        {"m_pChBShade",
         "shaded",
         "",
         {"MESS_TIP_OMBRER", "Le relief ombré assombrit les couleurs. Par défaut : non"}},
        {"m_pShadeStrength", "shadeStrength"},
    };
}

QVector<TipRow> rowsOf(const IntervisibilityOptions &)
{
    return {
        {"m_pRBOrMode",
         "combination",
         "-DstOp OR",
         {"MESS_TIP_OU", "Les zones que voit un observateur au moins. Par défaut."}},
        {"m_pRBAndMode",
         "combination",
         "-DstOp AND",
         {"MESS_TIP_ET", "Les zones que voient tous les observateurs."}},
        {"m_pLESmokeHeight", "groundHeight", "-SH"},
        {"m_pPBColorZO", "visibleColor", "-COZ"},
        {"m_pPBColorZNO", "hiddenColor", "-CNOZ"},
        {"m_pPBColorNoData", "noDataColor", "-CNoData"},
        {"m_pLESkylineStep", "skylineStep", "-SkylineStep"},
    };
}

QVector<TipRow> rowsOf(const ContourOptions &)
{
    return {
        {"m_pLEElevationInterval", "interval", "-i"},
        {"m_pLEFixedLevels", "fixedLevels", "-fl"},
        {"m_pLEOffset", "offset", "-off"},
        {"m_pLEElevationAttribute", "attribute", "-a"},
        {"m_pChB3D", "threeD", "-3d"},
        {"m_pChBTreatNoDataValue", "everyValueValid", "-inodata"},
        {"m_pNoDataCombo", "noDataValue", "-snodata"},
        {"m_pSBIndex", "indexEvery"},
        {"m_pLERing", "shortestRing"},
        {"m_pSBSmoothing", "smoothing"},
        {"m_pChBAreas", "polygons", "-p"},
        {"m_pLELowest", "lowestAttribute", "-amin"},
        {"m_pLEHighest", "highestAttribute", "-amax"},
        {"m_pChBStyled", "styled"},
        {"m_pChBQgis", "qgisStyle"},
    };
}

/// The text with a capital letter and a full stop.
QString sentence(QString text)
{
    text[0] = text.at(0).toUpper();
    return text.endsWith(QLatin1Char('.')) ? text : text + QLatin1Char('.');
}

/// A default as a person reads it.
QString readable(const QString &value)
{
    if (value == QLatin1String("true"))
        return labelText({"MESS_TIP_OUI", "oui"});
    return value == QLatin1String("false") ? labelText({"MESS_TIP_NON", "non"}) : value;
}

} // namespace

QString optionTip(const FieldDescription &field, const QString &argument, const QString &meaning)
{
    QStringList lines{meaning.isEmpty() ? sentence(field.meaning) : meaning};
    if (meaning.isEmpty()) {
        const QStringList bounds = field.range.split(QStringLiteral(" - "));
        const bool isBounded = bounds.size() == 2 && !bounds.at(0).contains(QLatin1Char('e'))
            && !bounds.at(1).contains(QLatin1Char('e')); // no one types a billion metres
        if (isBounded)
            lines += labelText({"MESS_TIP_BORNES", "De %1 à %2"}).arg(bounds.at(0), bounds.at(1));
        if (!field.defaultValue.isEmpty())
            lines += labelText({"MESS_TIP_DEFAUT", "Par défaut : %1"}).arg(readable(field.defaultValue));
    }
    if (!argument.isEmpty())
        lines += labelText({"MESS_TIP_OUTIL", "Option de l'outil : %1"}).arg(argument);
    return lines.join(QLatin1Char('\n'));
}

void setOptionTips(const optionsWidget &panel, const ProcessOptions &defaults)
{
    const QVector<FieldDescription> fields = describeOptions(defaults);
    const QVector<TipRow> rows = std::visit([](const auto &record) { return rowsOf(record); }, defaults);
    for (const TipRow &row : rows) {
        auto *control = panel.findChild<QWidget *>(QLatin1String(row.control));
        const auto field = std::find_if(fields.begin(), fields.end(), [&](const FieldDescription &description) {
            return description.name == QLatin1String(row.field);
        });
        Q_ASSERT(control && field != fields.end());
        setTip(*control,
               optionTip(*field, QLatin1String(row.argument),
                         row.meaning.key ? labelText(row.meaning) : QString()));
    }
}
