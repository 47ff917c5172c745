#include "dataset/chooser/sourcetexts.h"

#include "dataset/chooser/ownraster.h"
#include "messages/label.h"
#include "messages/shownnumber.h"

#include <QLocale>

#include <algorithm>
#include <cmath>

namespace
{

constexpr int valueDigits = 6;
constexpr int placeDigits = 10; // a second of arc is 0.000277778 degrees

/// A number as people read it: with group separators, and so many digits at most, as far as they count.
QString plain(double value, int digits = valueDigits)
{
    constexpr double largest = 1e15;
    constexpr double smallest = 1e-7;
    const double size = std::abs(value);
    if (size >= largest || (size > 0.0 && size < smallest))
        return shownNumber(value, 'g', digits);
    const int before = size < 1.0 ? 0 : static_cast<int>(std::log10(size)) + 1;
    const QString text = QString::number(value, 'f', std::max(0, digits - before));
    auto end = text.size();
    while (text.contains(QLatin1Char('.')) && text.at(end - 1) == QLatin1Char('0'))
        --end;
    const auto point = text.indexOf(QLatin1Char('.'));
    return shownNumber(value, 'f', point < 0 ? 0 : static_cast<int>(end - point - 1));
}

QString whole(long long value)
{
    return QLocale().toString(static_cast<qlonglong>(value));
}

void add(QVector<SourceFact> &facts, const Label &title, const QString &value)
{
    if (!value.isEmpty())
        facts += {labelText(title), value};
}

QString sizeText(long long columns, long long rows)
{
    return labelText({"MESS_SRC_CELLULES", "%1 × %2 cellules"}).arg(whole(columns), whole(rows));
}

QString crsValue(const QString &crs)
{
    return crs.isEmpty() ? labelText({"MESS_SRC_SCR_INCONNU", "inconnu"}) : crs;
}

/// The geometry type of a layer in everyday words.
QString geometryText(const LayerFacts &layer)
{
    switch (layer.geometry) {
    case LayerGeometry::Points:
        return labelText({"MESS_GEOM_POINTS", "points"});
    case LayerGeometry::Lines:
        return labelText({"MESS_GEOM_LIGNES", "lignes"});
    case LayerGeometry::Areas:
        return labelText({"MESS_GEOM_SURFACES", "surfaces"});
    case LayerGeometry::Any:
        return labelText({"MESS_GEOM_DIVERSES", "diverse"});
    case LayerGeometry::None:
        return labelText({"MESS_GEOM_AUCUNE", "aucune"});
    }
    return {};
}

void addRaster(QVector<SourceFact> &facts, const SourceInfo &info)
{
    add(facts, {"MESS_SRC_TAILLE", "Taille :"}, sizeText(info.width, info.height));
    add(facts, {"MESS_SRC_SCR", "Système de coordonnées :"}, crsValue(info.crs));
    if (!info.box)
        return;
    const QString range = labelText({"MESS_SRC_INTERVALLE", "de %1 à %2"});
    add(facts, {"MESS_SRC_ETENDUE_X", "Étendue en x :"},
        range.arg(plain(info.box->left(), placeDigits), plain(info.box->right(), placeDigits)));
    add(facts, {"MESS_SRC_ETENDUE_Y", "Étendue en y :"},
        range.arg(plain(info.box->top(), placeDigits), plain(info.box->bottom(), placeDigits)));
    add(facts, {"MESS_SRC_CELLULE", "Taille d'une cellule :"},
        QStringLiteral("%1 × %2").arg(plain(info.cell.width(), placeDigits),
                                      plain(info.cell.height(), placeDigits)));
}

void addHeader(QVector<SourceFact> &facts, const RasterHeader &header)
{
    add(facts, {"MESS_SRC_TAILLE", "Taille :"}, sizeText(header.firstDimension, header.secondDimension));
    add(facts, {"MESS_SRC_NOM_TYPE", "Type :"}, headerText(header.typeName));
    add(facts, {"MESS_SRC_COMMENT", "Commentaire :"}, headerText(header.comment));
}

} // namespace

QVector<SourceFact> sourceFacts(const SourceInfo &info)
{
    QVector<SourceFact> facts;
    add(facts, {"MESS_SRC_FORMAT", "Format :"}, info.format);
    if (info.kind == SourceKind::Raster) {
        addRaster(facts, info);
    } else if (info.kind == SourceKind::Vector) {
        add(facts, {"MESS_SRC_COUCHES", "Nombre de couches :"}, whole(info.layers.size()));
        add(facts, {"MESS_SRC_SCR", "Système de coordonnées :"}, crsValue(info.crs));
    } else if (info.header) {
        addHeader(facts, *info.header);
    }
    return facts;
}

QStringList partTitles(SourceKind kind)
{
    if (kind == SourceKind::Vector)
        return {labelText({"MESS_SRC_COUCHE", "Couche"}), labelText({"MESS_SRC_GEOM", "Géométrie"}),
                labelText({"MESS_SRC_OBJETS", "Objets"})};
    return {labelText({"MESS_SRC_BANDE", "Bande"}),      labelText({"MESS_SRC_TYPE", "Type"}),
            labelText({"MESS_SRC_SANS", "Sans valeur"}), labelText({"MESS_SRC_MINI", "Minimum"}),
            labelText({"MESS_SRC_MAXI", "Maximum"}),     labelText({"MESS_SRC_MOYENNE", "Moyenne"}),
            labelText({"MESS_SRC_DESCR", "Description"})};
}

QVector<QStringList> partRows(const SourceInfo &info)
{
    QVector<QStringList> rows;
    for (const LayerFacts &layer : info.layers)
        rows += {layer.name, geometryText(layer), layer.count < 0 ? QStringLiteral("?") : whole(layer.count)};
    for (const BandFacts &band : info.bands)
        rows += {QString::number(rows.size() + 1),
                 band.type,
                 band.noData,
                 band.known ? plain(band.minimum) : QString(),
                 band.known ? plain(band.maximum) : QString(),
                 band.known ? plain(band.mean) : QString(),
                 band.description};
    return rows;
}

QVector<SourceFact> sampleFacts(const SampleSummary &summary, bool isWhole, const QString &problem)
{
    QVector<SourceFact> facts;
    if (!problem.isEmpty()) {
        add(facts, {"MESS_SRC_NON_LUES", "Cellules illisibles :"}, problem);
        return facts;
    }
    if (summary.known)
        add(facts, {"MESS_SRC_VALEURS", "Valeurs :"},
            (isWhole ? labelText({"MESS_SRC_DE_A", "de %1 à %2, en moyenne %3"})
                     : labelText({"MESS_SRC_DE_A_ENV", "d'environ %1 à %2, en moyenne %3"}))
                .arg(plain(summary.minimum), plain(summary.maximum), plain(summary.mean)));
    add(facts, {"MESS_SRC_VIDES", "Cellules sans valeur :"},
        (isWhole ? labelText({"MESS_SRC_PART", "%1 %"}) : labelText({"MESS_SRC_PART_ENV", "environ %1 %"}))
            .arg(shownNumber(100.0 * summary.voids, 'f', 1)));
    return facts;
}
