#include "app/process/demtreatment.h"

#include "dataset/views/truecells.h"
#include "messages/label.h"
#include "messages/shownnumber.h"

#include <algorithm>
#include <cmath>

namespace
{

bool differ(double one, double other)
{
    constexpr double negligible = 1e-9;
    return std::abs(one / other - 1.0) > negligible;
}

/// Whether slopes from the stored numbers would be wrong: the coordinates are no lengths of the elevations'
/// unit.
bool mixesUnits(const DemFacts &facts)
{
    return facts.crs == DemCrs::Geographic || !facts.groundUnits.isEmpty()
        || differ(elevationFactor(facts), facts.unit);
}

/// Whether the stored elevations are declared to be something else than metres.
bool areHeightsForeign(const DemFacts &facts)
{
    return differ(facts.elevationUnit.value_or(1.0) * facts.elevationScale, 1.0);
}

QString heightsText(const DemFacts &facts)
{
    const double metres = facts.elevationUnit.value_or(1.0);
    const bool isFeet = std::abs(metres - 0.3048) < 1e-4;
    if (isFeet && facts.elevationScale == 1.0)
        return labelText({"MESS_VUE_PIEDS", "Altitudes en pieds, lues en mètres."});
    return labelText({"MESS_VUE_HAUTEURS", "Altitudes stockées par pas de %1 m, lues en mètres."})
        .arg(elevationFactor(facts), 0, 'g', 6);
}

QString lengthsText(const DemFacts &facts, const QLocale &locale)
{
    const QString cell = cellSizeText(facts, locale);
    if (!facts.isGeoreferenced)
        return labelText({"MESS_VUE_SANS_CALAGE",
                          "Sans géoréférence : les cellules mesurent 1 m, et les lignes partent du nord."});
    if (facts.crs == DemCrs::Geographic)
        return labelText({"MESS_VUE_DEGRES", "Degrés : une cellule mesure %1."}).arg(cell);
    if (!facts.groundUnits.isEmpty())
        return labelText({"MESS_VUE_PROJECTION", "Projection qui déforme : une cellule mesure %1 au sol."})
            .arg(cell);
    return labelText({"MESS_VUE_CELLULE", "Une cellule mesure %1."}).arg(cell);
}

} // namespace

DemTreatment treatmentOf(const CellUse &use, const DemFacts &facts)
{
    if (!facts.isOpen || !use.neighbours)
        return {};
    // The tool takes the rows of a DEM without georeference from the south.
    const bool isUpsideDown = use.light && !facts.isGeoreferenced;
    return {.turn = isMirrored(facts) || isRotated(facts),
            .metres =
                isUpsideDown || (use.lengths && mixesUnits(facts)) || (use.heights && areHeightsForeign(facts)),
            .directions = use.directions && !areCellsSquare(facts)};
}

QString treatmentText(const DemTreatment &treatment, const DemFacts &facts, const CellUse &use,
                      const QLocale &locale)
{
    QStringList sentences;
    if (treatment.metres && (use.lengths || use.light))
        sentences += lengthsText(facts, locale);
    if (treatment.metres && (use.lengths || use.heights) && areHeightsForeign(facts))
        sentences += heightsText(facts);
    if (treatment.directions)
        sentences += labelText({"MESS_VUE_ORIENT", "Cellules de %1 : les orientations en tiennent compte."})
                         .arg(cellSizeText(facts, locale));
    if (treatment.turn)
        sentences += isRotated(facts)
            ? labelText({"MESS_VUE_TOURNEE", "Grille tournée : redressée vers le nord, au plus proche voisin."})
            : labelText({"MESS_VUE_LIGNES", "Lignes lues depuis le nord."});
    return sentences.join(QLatin1Char(' '));
}

namespace
{

QString sizeText(const QSizeF &cell, const QLocale &locale)
{
    const auto length = [&locale](double metres) {
        const int digitsBefore = static_cast<int>(std::floor(std::log10(std::max(metres, 1e-9)))) + 1;
        return shownNumber(metres, 'f', qBound(0, 3 - digitsBefore, 6), locale);
    };
    return labelText({"MESS_TAILLE_CELLULE", "%1 m × %2 m"}).arg(length(cell.width()), length(cell.height()));
}

} // namespace

QString cellSizeText(const DemFacts &facts, const QLocale &locale)
{
    return sizeText(trueCell(facts, facts.height / 2.0), locale);
}

QString ratioText(const DemFacts &facts, double ratio, const QLocale &locale)
{
    constexpr double negligible = 0.005;
    if (!facts.isOpen || !(ratio > 0.0))
        return {};
    const auto &toGround = facts.toGround;
    const double metresPerUnit = ratio * elevationFactor(facts);
    const QSizeF assumed =
        QSizeF(std::hypot(toGround[1], toGround[4]), std::hypot(toGround[2], toGround[5])) * metresPerUnit;
    const QSizeF real = trueCell(facts, facts.height / 2.0);
    if (std::abs(assumed.width() / real.width() - 1.0) < negligible
        && std::abs(assumed.height() / real.height() - 1.0) < negligible)
        return {};
    return labelText({"MESS_VUE_RAPPORT", "Avec ce rapport, une cellule compte pour %1 ; elle mesure %2."})
        .arg(sizeText(assumed, locale), sizeText(real, locale));
}
