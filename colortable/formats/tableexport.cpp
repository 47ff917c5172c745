#include "colortable/formats/tableexport.h"

#include "colortable/formats/tableparts.h"
#include "messages/label.h"

#include <QLocale>
#include <QXmlStreamWriter>

#include <algorithm>

namespace
{

QString numberText(double value)
{
    return QString::number(value, 'g', QLocale::FloatingPointShortest);
}

/// "r<separator>g<separator>b"
QString levelsText(const QColor &color, char separator)
{
    const QString parts = QStringLiteral("%1%4%2%4%3");
    return parts.arg(QString::number(color.red()), QString::number(color.green()),
                     QString::number(color.blue()), QString(QLatin1Char(separator)));
}

QByteArray cptText(QList<QuvoColorDef> entries, const QuvoColorDef *noData)
{
    const bool percent = entries.first().percent;
    if (percent) { // GMT stretches a table from 0 to 1 over the elevations
        entries.prepend({0.0, entries.first().color, true});
        entries.append({100.0, entries.last().color, true});
    } else if (entries.size() == 1 || entries.at(entries.size() - 2).value == entries.last().value) {
        entries.append(
            {nextAbove(entries.last().value), entries.last().color, false}); // a range of one cell value
    }
    const double scale = percent ? 100.0 : 1.0;
    QString text = QStringLiteral("# COLOR_MODEL = RGB\n");
    for (int at = 1; at < entries.size(); ++at) {
        const QuvoColorDef &low = entries.at(at - 1);
        const QuvoColorDef &high = entries.at(at);
        if (low.value < high.value)
            text += QStringLiteral("%1\t%2\t%3\t%4\n")
                        .arg(numberText(low.value / scale), levelsText(low.color, '/'),
                             numberText(high.value / scale), levelsText(high.color, '/'));
    }
    text += QStringLiteral("B\t%1\nF\t%2\n")
                .arg(levelsText(entries.first().color, '/'), levelsText(entries.last().color, '/'));
    if (noData)
        text += QStringLiteral("N\t%1\n").arg(noData->color.alpha() > 0 ? levelsText(noData->color, '/')
                                                                        : QStringLiteral("-"));
    return text.toUtf8();
}

QByteArray qgisText(const QList<QuvoColorDef> &entries)
{
    QString text = QStringLiteral("# QGIS Generated Color Map Export File\nINTERPOLATION:INTERPOLATED\n");
    for (const QuvoColorDef &entry : toolEntries(entries)) {
        const QString value = numberText(entry.value);
        text += QStringLiteral("%1,%2,%3,%1\n")
                    .arg(value, levelsText(entry.color, ','), QString::number(entry.color.alpha()));
    }
    return text.toUtf8();
}

QByteArray qgisStyle(const QList<QuvoColorDef> &entries, const QuvoColorDef *noData)
{
    QByteArray bytes;
    QXmlStreamWriter xml(&bytes);
    xml.setAutoFormatting(true);
    xml.writeDTD(QStringLiteral("<!DOCTYPE qgis PUBLIC 'http://mrcc.com/qgis.dtd' 'SYSTEM'>"));
    const QString minimum = numberText(entries.first().value);
    const QString maximum = numberText(entries.last().value);
    xml.writeStartElement("qgis");
    xml.writeAttribute("version", "3.22.0");
    xml.writeAttribute("styleCategories", "Symbology");
    xml.writeStartElement("pipe");
    xml.writeStartElement("rasterrenderer");
    xml.writeAttribute("type", "singlebandpseudocolor");
    xml.writeAttribute("band", "1");
    xml.writeAttribute("opacity", "1");
    xml.writeAttribute("alphaBand", "-1");
    xml.writeAttribute("nodataColor",
                       noData ? levelsText(noData->color, ',') + ',' + QString::number(noData->color.alpha())
                              : QString());
    xml.writeAttribute("classificationMin", minimum);
    xml.writeAttribute("classificationMax", maximum);
    xml.writeEmptyElement("rasterTransparency");
    xml.writeStartElement("rastershader");
    xml.writeStartElement("colorrampshader");
    xml.writeAttribute("colorRampType", "INTERPOLATED");
    xml.writeAttribute("classificationMode", "1");
    xml.writeAttribute("clip", "0");
    xml.writeAttribute("minimumValue", minimum);
    xml.writeAttribute("maximumValue", maximum);
    for (const QuvoColorDef &entry : toolEntries(entries)) {
        xml.writeEmptyElement("item");
        xml.writeAttribute("value", numberText(entry.value));
        xml.writeAttribute("color", entry.color.name());
        xml.writeAttribute("alpha", QString::number(entry.color.alpha()));
        xml.writeAttribute("label", numberText(entry.value));
    }
    xml.writeEndDocument();
    return bytes + '\n';
}

QByteArray sldText(const QList<QuvoColorDef> &entries)
{
    QByteArray bytes;
    QXmlStreamWriter xml(&bytes);
    xml.setAutoFormatting(true);
    xml.writeStartDocument();
    const QString sld = QStringLiteral("http://www.opengis.net/sld");
    xml.writeDefaultNamespace(sld);
    xml.writeStartElement(sld, "StyledLayerDescriptor");
    xml.writeAttribute("version", "1.0.0");
    xml.writeStartElement(sld, "NamedLayer");
    xml.writeTextElement(sld, "Name", "dem");
    for (const char *element : {"UserStyle", "FeatureTypeStyle", "Rule", "RasterSymbolizer", "ColorMap"})
        xml.writeStartElement(sld, QLatin1String(element));
    xml.writeAttribute("type", "ramp");
    for (const QuvoColorDef &entry : toolEntries(entries)) {
        xml.writeEmptyElement(sld, "ColorMapEntry");
        xml.writeAttribute("color", entry.color.name());
        xml.writeAttribute("quantity", numberText(entry.value));
        xml.writeAttribute("opacity", QString::number(entry.color.alpha() / 255.0, 'g', 4));
    }
    xml.writeEndDocument();
    return bytes;
}

QByteArray grassRules(const QList<QuvoColorDef> &entries, const QuvoColorDef *noData)
{
    QString text;
    for (const QuvoColorDef &entry : entries)
        text += QStringLiteral("%1%2 %3\n")
                    .arg(numberText(entry.value), entry.percent ? QStringLiteral("%") : QString(),
                         levelsText(entry.color, ':'));
    if (noData)
        text += QStringLiteral("nv %1\n").arg(levelsText(noData->color, ':'));
    return text.toUtf8() + "end\n";
}

bool isMixed(const QList<QuvoColorDef> &elevations)
{
    return std::any_of(elevations.begin(), elevations.end(),
                       [&](const QuvoColorDef &entry) { return entry.percent != elevations.first().percent; });
}

} // namespace

QByteArray exportedTable(const QList<QuvoColorDef> &entries, TableFormat format)
{
    const QList<QuvoColorDef> all = elevationEntries(entries);
    const QuvoColorDef *noData = noDataEntry(entries);
    if (all.isEmpty())
        return {};
    const QList<QuvoColorDef> elevations = entriesOfKind(all, all.first().percent);
    switch (format) {
    case TableFormat::GmtCpt:
        return cptText(elevations, noData);
    case TableFormat::QgisText:
        return qgisText(elevations);
    case TableFormat::QgisStyle:
        return qgisStyle(elevations, noData);
    case TableFormat::Sld:
        return sldText(elevations);
    case TableFormat::GrassRules:
        return grassRules(all, noData);
    }
    return {};
}

QStringList exportLosses(const QList<QuvoColorDef> &entries, TableFormat format)
{
    const QList<QuvoColorDef> elevations = elevationEntries(entries);
    if (elevations.isEmpty())
        return {};
    const QuvoColorDef *noData = noDataEntry(entries);
    const bool isCpt = format == TableFormat::GmtCpt;
    const bool isGrass = format == TableFormat::GrassRules;
    const bool holdsNoData = isCpt || isGrass || format == TableFormat::QgisStyle;
    const auto isTranslucent = [](const QuvoColorDef &entry) { return entry.color.alpha() < 255; };
    const bool noDataIsLost =
        noData && (isGrass ? isTranslucent(*noData) : isCpt && noData->color.alpha() % 255 != 0);
    QStringList losses;
    if ((isCpt || isGrass)
        && (noDataIsLost || std::any_of(elevations.begin(), elevations.end(), isTranslucent)))
        losses += labelText(
            {"MESS_TF_SANS_ALPHA", "Ce format n'a pas de transparence : les couleurs deviennent opaques."});
    if (isMixed(elevations) && !isGrass)
        losses += labelText({"MESS_TF_SANS_MELANGE",
                             "Ce format ne mélange pas altitudes et pourcentages : une partie des couleurs est "
                             "perdue."});
    if (elevations.first().percent && !isCpt && !isGrass)
        losses += labelText({"MESS_TF_SANS_POURCENT",
                             "Ce format n'a pas de pourcentages : ils deviennent des altitudes de 0 à 100."});
    if (noData && !holdsNoData)
        losses +=
            labelText({"MESS_TF_SANS_NODATA", "Ce format n'a pas de couleur pour les cellules sans donnée."});
    return losses;
}
