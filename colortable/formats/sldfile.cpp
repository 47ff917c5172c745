#include "colortable/formats/sldfile.h"

#include "colortable/formats/tableparts.h"
#include "messages/label.h"

#include <QXmlStreamReader>

#include <algorithm>

namespace
{

class SldReader
{
public:
    explicit SldReader(const QByteArray &bytes)
        : m_xml(bytes)
        , m_reading(foreignReading(QStringLiteral("SLD")))
    { }

    ColorTableReading read()
    {
        while (!m_xml.atEnd()) {
            if (m_xml.readNext() == QXmlStreamReader::StartElement)
                readElement();
        }
        if (m_xml.hasError())
            refuseHere(labelText({"MESS_TF_XML", "le fichier XML est mal formé ou incomplet."}));
        return m_reading;
    }

private:
    void readElement();
    void readColorMap();
    void readColorMapEntry(QList<QuvoColorDef> &points);
    void readInterpolate();
    void readCategorize();
    void addIntervals(const QList<QuvoColorDef> &points);
    QString attribute(const char *name) { return m_xml.attributes().value(QLatin1String(name)).toString(); }
    /// The next start of an element inside of the element `parent`; false at its end.
    bool nextInside(const QString &parent);
    double numberHere(const QString &text);
    QColor colorHere(const QString &text);
    void refuseHere(const QString &why) { refuseLine(m_reading, static_cast<int>(m_xml.lineNumber()), why); }

    QXmlStreamReader m_xml;
    ColorTableReading m_reading;
    int m_maps = 0;
};

bool SldReader::nextInside(const QString &parent)
{
    while (!m_xml.atEnd()) {
        m_xml.readNext();
        if (m_xml.isStartElement())
            return true;
        if (m_xml.isEndElement() && m_xml.name() == parent)
            return false;
    }
    return false;
}

double SldReader::numberHere(const QString &text)
{
    const std::optional<double> number = finiteNumber(text);
    if (!number)
        refuseHere(notANumber(text));
    return number.value_or(0.0);
}

QColor SldReader::colorHere(const QString &text)
{
    const QString trimmed = text.trimmed();
    const bool isHex = (trimmed.size() == 7 || trimmed.size() == 9) && trimmed.startsWith(QLatin1Char('#'));
    const QColor color = isHex ? QColor(trimmed) : QColor();
    if (!color.isValid())
        refuseHere(notAColor(text));
    return color;
}

void SldReader::readElement()
{
    const QString name = m_xml.name().toString();
    const bool isMap = name == QLatin1String("Interpolate") || name == QLatin1String("Categorize")
        || (name == QLatin1String("ColorMap") && m_maps == 0);
    if (name == QLatin1String("Opacity") && m_maps == 0) {
        const QString opacity = m_xml.readElementText(QXmlStreamReader::IncludeChildElements).trimmed();
        if (finiteNumber(opacity) != 1.0)
            m_reading.notes +=
                labelText({"MESS_TF_OPACITE", "L'opacité de toute la couche (%1) n'est pas reprise."})
                    .arg(opacity);
    }
    if (name == QLatin1String("ColorMap") && m_maps > 0)
        m_reading.notes +=
            labelText({"MESS_TF_CARTES", "Ce fichier contient plusieurs tables ; la première est lue."});
    if (!isMap || !m_reading.entries.isEmpty())
        return;
    ++m_maps;
    if (name == QLatin1String("ColorMap"))
        readColorMap();
    else if (name == QLatin1String("Interpolate"))
        readInterpolate();
    else
        readCategorize();
}

void SldReader::readColorMapEntry(QList<QuvoColorDef> &points)
{
    const double quantity = numberHere(attribute("quantity"));
    QColor color = colorHere(attribute("color"));
    const bool hasOpacity = m_xml.attributes().hasAttribute(QLatin1String("opacity"));
    const double opacity = hasOpacity ? numberHere(attribute("opacity")) : 1.0;
    if (opacity < 0.0 || opacity > 1.0)
        refuseHere(notANumber(attribute("opacity")));
    else
        color.setAlpha(qRound(opacity * 255.0));
    points += {quantity, color, false};
}

void SldReader::addIntervals(const QList<QuvoColorDef> &points)
{
    QVector<double> bounds;
    QVector<QColor> colors;
    for (const QuvoColorDef &point : points) {
        bounds += point.value;
        colors += point.color;
    }
    colors += Qt::transparent;
    if (!std::is_sorted(bounds.begin(), bounds.end()))
        refuse(m_reading, labelText({"MESS_TF_ORDRE", "Les bornes de cette table ne vont pas en croissant."}));
    else
        addSteps(m_reading.entries, bounds, colors, false);
}

void SldReader::readColorMap()
{
    const QString type = attribute("type");
    const int line = static_cast<int>(m_xml.lineNumber());
    QList<QuvoColorDef> points;
    while (nextInside(QStringLiteral("ColorMap"))) {
        if (m_xml.name() == QLatin1String("ColorMapEntry"))
            readColorMapEntry(points);
        else // Symbology Encoding has its Interpolate or Categorize here
            readElement();
    }
    if (points.isEmpty())
        return;
    if (type.isEmpty() || type == QLatin1String("ramp"))
        m_reading.entries = points;
    else if (type == QLatin1String("intervals"))
        addIntervals(points);
    else if (type == QLatin1String("values"))
        addExactColors(m_reading, points);
    else
        refuseLine(m_reading, line, notSupported(type));
}

void SldReader::readInterpolate()
{
    const QString mode = attribute("mode");
    if (!mode.isEmpty() && mode != QLatin1String("linear"))
        refuseHere(notSupported(mode));
    std::optional<double> value;
    while (nextInside(QStringLiteral("Interpolate"))) {
        if (m_xml.name() == QLatin1String("Data"))
            value = numberHere(m_xml.readElementText(QXmlStreamReader::IncludeChildElements));
        else if (m_xml.name() == QLatin1String("Value") && value)
            m_reading.entries +=
                {*value, colorHere(m_xml.readElementText(QXmlStreamReader::IncludeChildElements)), false};
    }
}

void SldReader::readCategorize()
{
    const bool boundBelongsBelow = attribute("thresholdsBelongTo") == QLatin1String("preceding")
        || attribute("threshholdsBelongTo") == QLatin1String("preceding"); // the standard's own spelling
    QVector<double> bounds;
    QVector<QColor> colors;
    while (nextInside(QStringLiteral("Categorize"))) {
        const QString name = m_xml.name().toString();
        if (name == QLatin1String("Threshold"))
            bounds += numberHere(m_xml.readElementText(QXmlStreamReader::IncludeChildElements));
        else if (name == QLatin1String("Value"))
            colors += colorHere(m_xml.readElementText(QXmlStreamReader::IncludeChildElements));
    }
    if (colors.size() != bounds.size() + 1)
        refuseHere(badCount(static_cast<int>(bounds.size()) + 1, static_cast<int>(colors.size())));
    else if (!std::is_sorted(bounds.begin(), bounds.end()))
        refuse(m_reading, labelText({"MESS_TF_ORDRE", "Les bornes de cette table ne vont pas en croissant."}));
    else
        addSteps(m_reading.entries, bounds, colors, boundBelongsBelow);
}

} // namespace

ColorTableReading readSld(const QByteArray &bytes)
{
    return SldReader(bytes).read();
}
