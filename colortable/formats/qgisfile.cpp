#include "colortable/formats/qgisfile.h"

#include "colortable/formats/tableparts.h"
#include "messages/label.h"

#include <QMap>
#include <QRegularExpression>
#include <QXmlStreamReader>

#include <algorithm>
#include <cmath>
#include <limits>

namespace
{

constexpr double noBound = std::numeric_limits<double>::infinity();

/// A colour and its value or upper bound; `noBound` for "inf".
struct ShaderItem
{
    double value = 0.0;
    QColor color;
};

bool isInfinite(const QString &text)
{
    const QString trimmed = text.trimmed();
    return trimmed.compare(QLatin1String("inf"), Qt::CaseInsensitive) == 0;
}

/// "#rrggbb", or "r,g,b[,a]" before any further fields of newer versions.
QColor colorOf(const QString &text)
{
    static const QRegularExpression further(QStringLiteral(",(rgb|hsv|hsl|cmyk):.*$"));
    if (text.startsWith(QLatin1Char('#')))
        return QColor::fromRgba(QColor(text).rgba());
    return colorOfLevels(QString(text).remove(further).split(QLatin1Char(',')));
}

void addSteps(ColorTableReading &reading, const QVector<ShaderItem> &items)
{
    QVector<double> bounds;
    QVector<QColor> colors;
    for (const ShaderItem &item : items) {
        colors += item.color;
        if (std::isinf(item.value))
            break;
        bounds += item.value;
    }
    if (colors.size() == bounds.size())
        colors += Qt::transparent; // no colour above the last bound
    addSteps(reading.entries, bounds, colors, true);
}

/// Adds the items in the shader's way. isClipped: nothing is painted beyond the items of an interpolated
/// shader.
void addItems(ColorTableReading &reading, const QString &type, QVector<ShaderItem> items, bool isClipped)
{
    if (items.isEmpty() || !reading.problem.isEmpty())
        return;
    std::stable_sort(items.begin(), items.end(),
                     [](const ShaderItem &one, const ShaderItem &other) { return one.value < other.value; });
    if (type == QLatin1String("DISCRETE")) {
        addSteps(reading, items);
        return;
    }
    QList<QuvoColorDef> points;
    for (const ShaderItem &item : items) {
        if (std::isinf(item.value))
            refuse(reading, notANumber(QStringLiteral("inf")));
        points += {item.value, item.color, false};
    }
    if (type == QLatin1String("EXACT")) {
        addExactColors(reading, points);
    } else if (type == QLatin1String("INTERPOLATED")) {
        reading.entries += points;
        if (isClipped)
            addOutside(reading.entries, Qt::transparent, Qt::transparent);
    } else {
        refuse(reading, notSupported(type));
    }
}

ShaderItem itemOf(ColorTableReading &reading, const QString &value, const QColor &color,
                  const QString &colorText, int line)
{
    const std::optional<double> number = finiteNumber(value);
    if (!number && !isInfinite(value))
        refuseLine(reading, line, notANumber(value));
    if (!color.isValid())
        refuseLine(reading, line, notAColor(colorText));
    return {number.value_or(noBound), color};
}

/// A stop of a gradient: the place from 0 to 1, its colour, and how the colours before it are mixed.
struct Stop
{
    double place = 0.0;
    QColor color;
    QString mixing;
    bool isClockwise = false;
};

/// The options of a ramp element: <prop k= v=> of older versions, <Option name= value=> of newer ones.
QMap<QString, QString> rampOptions(QXmlStreamReader &xml)
{
    QMap<QString, QString> options;
    const QString name = xml.name().toString();
    while (!xml.atEnd()) {
        xml.readNext();
        if (xml.isEndElement() && xml.name() == name)
            break;
        const auto attributes = xml.attributes();
        if (xml.isStartElement() && xml.name() == QLatin1String("prop"))
            options.insert(attributes.value("k").toString(), attributes.value("v").toString());
        else if (xml.isStartElement() && xml.name() == QLatin1String("Option"))
            options.insert(attributes.value("name").toString(), attributes.value("value").toString());
    }
    return options;
}

Stop stopOf(ColorTableReading &reading, const QString &place, const QString &color, const QString &mixing,
            const QString &direction)
{
    Stop stop;
    const std::optional<double> number = finiteNumber(place);
    if (!number || *number < 0.0 || *number > 1.0)
        refuse(reading, notANumber(place));
    stop.place = number.value_or(0.0);
    stop.color = colorOf(color);
    if (!stop.color.isValid())
        refuse(reading, notAColor(color));
    stop.mixing = mixing.isEmpty() ? QStringLiteral("rgb") : mixing;
    stop.isClockwise = direction == QLatin1String("cw");
    if (!QStringList({QStringLiteral("rgb"), QStringLiteral("hsv"), QStringLiteral("hsl")})
             .contains(stop.mixing))
        refuse(reading, notSupported(stop.mixing));
    return stop;
}

/// The stops of a gradient in order, with both ends.
QVector<Stop> stopsOf(ColorTableReading &reading, const QMap<QString, QString> &options)
{
    QVector<Stop> stops{stopOf(reading, QStringLiteral("0"), options.value(QStringLiteral("color1")), {}, {})};
    for (const QString &text :
         options.value(QStringLiteral("stops")).split(QLatin1Char(':'), Qt::SkipEmptyParts)) {
        // A colour of newer versions holds colons of its own: "255,0,0,255,rgb:1,0,0,1".
        const QStringList fields = text.split(QLatin1Char(';'));
        if (fields.size() < 2) {
            refuse(reading, notSupported(text));
            break;
        }
        stops += stopOf(reading, fields.at(0), fields.at(1), fields.value(2), fields.value(3));
    }
    stops += stopOf(reading, QStringLiteral("1"), options.value(QStringLiteral("color2")),
                    options.value(QStringLiteral("spec")), options.value(QStringLiteral("direction")));
    std::stable_sort(stops.begin(), stops.end(),
                     [](const Stop &one, const Stop &other) { return one.place < other.place; });
    return stops;
}

/// The colour of hue (degrees), saturation, lightness and alpha (0 to 1).
QColor colorOfHsl(double hue, double saturation, double lightness, double alpha)
{
    const double value = lightness + saturation * std::min(lightness, 1.0 - lightness);
    return colorOfHsv(hue, value > 0.0 ? 2.0 * (1.0 - lightness / value) : 0.0, value, alpha);
}

/// The colour between two stops, mixed as the second one says. A hue without a colour is that of the other
/// stop.
QColor mixedHue(const Stop &from, const Stop &to, double place)
{
    const bool isHsl = to.mixing == QLatin1String("hsl");
    const auto mix = [&](double first, double last) { return first + place * (last - first); };
    double first = isHsl ? from.color.hslHueF() : from.color.hsvHueF();
    double last = isHsl ? to.color.hslHueF() : to.color.hsvHueF();
    first = first < 0.0 ? std::max(last, 0.0) : first;
    last = last < 0.0 ? first : last;
    if (to.isClockwise && first < last)
        first += 1.0;
    else if (!to.isClockwise && last < first)
        last += 1.0;
    const double hue = mix(first, last) * 360.0;
    const double alpha = mix(from.color.alphaF(), to.color.alphaF());
    return isHsl ? colorOfHsl(hue, mix(from.color.hslSaturationF(), to.color.hslSaturationF()),
                              mix(from.color.lightnessF(), to.color.lightnessF()), alpha)
                 : colorOfHsv(hue, mix(from.color.hsvSaturationF(), to.color.hsvSaturationF()),
                              mix(from.color.valueF(), to.color.valueF()), alpha);
}

/// Adds a gradient from one value to another.
void addGradient(ColorTableReading &reading, const QMap<QString, QString> &options, double from, double to,
                 bool percent)
{
    const QVector<Stop> stops = stopsOf(reading, options);
    const bool isDiscrete = options.value(QStringLiteral("discrete")) == QLatin1String("1");
    if (!reading.problem.isEmpty())
        return;
    const auto value = [&](const Stop &stop) { return from + stop.place * (to - from); };
    addPoint(reading.entries, value(stops.first()), stops.first().color, percent);
    for (int at = 1; at < stops.size(); ++at) {
        const Stop &last = stops.at(at - 1);
        const Stop &stop = stops.at(at);
        if (!isDiscrete && stop.mixing != QLatin1String("rgb") && last.place < stop.place)
            addCurve(reading.entries, value(last), value(stop), percent,
                     [&](double place) { return mixedHue(last, stop, place); });
        if (isDiscrete)
            addPoint(reading.entries, value(stop), last.color, percent);
        addPoint(reading.entries, value(stop), stop.color, percent);
    }
}

/// What a style holds.
struct Style
{
    QString renderer;
    QString shaderType;
    bool isClipped = false;
    double opacity = 1.0;
    QColor noData;
    QVector<ShaderItem> items;
    QMap<QString, QString> ramp;
    QString minimum, maximum; ///< values at the two ends of the ramp
};

void readElement(ColorTableReading &reading, Style &style, QXmlStreamReader &xml)
{
    const auto attributes = xml.attributes();
    const auto text = [&](const char *name) { return attributes.value(QLatin1String(name)).toString(); };
    if (xml.name() == QLatin1String("rasterrenderer")) {
        style.renderer = text("type");
        style.opacity = finiteNumber(text("opacity")).value_or(1.0);
        style.noData = colorOf(text("nodataColor"));
        style.minimum = text("classificationMin");
        style.maximum = text("classificationMax");
    } else if (xml.name() == QLatin1String("colorrampshader")) {
        style.shaderType = text("colorRampType");
        style.isClipped = text("clip") == QLatin1String("1");
        style.minimum =
            attributes.hasAttribute(QLatin1String("minimumValue")) ? text("minimumValue") : style.minimum;
        style.maximum =
            attributes.hasAttribute(QLatin1String("maximumValue")) ? text("maximumValue") : style.maximum;
    } else if (xml.name() == QLatin1String("item") && !style.shaderType.isEmpty()) {
        QColor color = colorOf(text("color"));
        const std::optional<int> alpha = levelOf(text("alpha"));
        if (color.isValid() && alpha)
            color.setAlpha(*alpha);
        else if (!text("alpha").isEmpty())
            color = QColor();
        style.items += itemOf(reading, text("value"), color, text("color"), static_cast<int>(xml.lineNumber()));
    } else if (xml.name() == QLatin1String("colorramp") && !style.shaderType.isEmpty()) {
        if (text("type") == QLatin1String("gradient"))
            style.ramp = rampOptions(xml);
    }
}

void addStyle(ColorTableReading &reading, const Style &style)
{
    if (style.renderer != QLatin1String("singlebandpseudocolor")) {
        refuse(reading,
               labelText({"MESS_TF_RENDU",
                          "Ce style n'est pas une table couleur : sa couche est dessinée par « %1 »."})
                   .arg(style.renderer.isEmpty() ? QStringLiteral("?") : style.renderer));
        return;
    }
    const std::optional<double> minimum = finiteNumber(style.minimum);
    const std::optional<double> maximum = finiteNumber(style.maximum);
    const bool isRange = minimum && maximum && *minimum < *maximum;
    if (!style.items.isEmpty())
        addItems(reading, style.shaderType, style.items, style.isClipped);
    else if (!style.ramp.isEmpty())
        addGradient(reading, style.ramp, isRange ? *minimum : 0.0, isRange ? *maximum : 100.0, !isRange);
    if (style.noData.isValid())
        reading.entries += {QuvoColorDef::noDataValue, style.noData, false};
    if (style.opacity != 1.0)
        reading.notes += labelText({"MESS_TF_OPACITE", "L'opacité de toute la couche (%1) n'est pas reprise."})
                             .arg(QString::number(style.opacity));
}

QString brokenXml()
{
    return labelText({"MESS_TF_XML", "le fichier XML est mal formé ou incomplet."});
}

} // namespace

bool isQgisText(const QStringList &lines)
{
    return std::any_of(lines.begin(), lines.end(),
                       [](const QString &line) { return line.startsWith(QLatin1String("INTERPOLATION:")); });
}

ColorTableReading readQgisText(const QStringList &lines)
{
    ColorTableReading reading = foreignReading(QStringLiteral("QGIS"));
    QString type;
    QVector<ShaderItem> items;
    int number = 0;
    for (const QString &line : lines) {
        ++number;
        if (line.trimmed().isEmpty() || line.startsWith(QLatin1Char('#')))
            continue;
        const QStringList fields = line.split(QLatin1Char(','));
        if (line.startsWith(QLatin1String("INTERPOLATION:")))
            type = line.section(QLatin1Char(':'), 1).trimmed();
        else if (fields.size() < 5)
            refuseLine(reading, number, badFields());
        else
            items += itemOf(reading, fields.first(), colorOfLevels(fields.mid(1, 4)), line, number);
    }
    addItems(reading, type, items, false);
    return reading;
}

ColorTableReading readQgisStyle(const QByteArray &bytes)
{
    ColorTableReading reading = foreignReading(QStringLiteral("QGIS QML"));
    QXmlStreamReader xml(bytes);
    Style style;
    while (!xml.atEnd()) {
        if (xml.readNext() == QXmlStreamReader::StartElement)
            readElement(reading, style, xml);
    }
    if (xml.hasError())
        refuseLine(reading, static_cast<int>(xml.lineNumber()), brokenXml());
    else
        addStyle(reading, style);
    return reading;
}

ColorTableReading readQgisRamps(const QByteArray &bytes)
{
    ColorTableReading reading = foreignReading(QStringLiteral("QGIS XML"));
    QXmlStreamReader xml(bytes);
    QMap<QString, QString> ramp;
    QString name;
    QStringList otherTypes;
    int ramps = 0;
    while (!xml.atEnd()) {
        if (xml.readNext() != QXmlStreamReader::StartElement || xml.name() != QLatin1String("colorramp"))
            continue;
        const QString type = xml.attributes().value(QLatin1String("type")).toString();
        const QString title = xml.attributes().value(QLatin1String("name")).toString();
        const QMap<QString, QString> options = rampOptions(xml);
        ++ramps;
        if (type != QLatin1String("gradient")) {
            otherTypes += type;
        } else if (ramp.isEmpty()) {
            ramp = options;
            name = title;
        }
    }
    if (xml.hasError())
        refuseLine(reading, static_cast<int>(xml.lineNumber()), brokenXml());
    else if (!ramp.isEmpty())
        addGradient(reading, ramp, 0.0, 100.0, true);
    else if (!otherTypes.isEmpty())
        refuse(reading, notSupported(otherTypes.first()));
    if (ramps > 1)
        reading.notes += labelText({"MESS_TF_RAMPES", "Ce fichier contient %1 rampes ; « %2 » est lue."})
                             .arg(QString::number(ramps), name);
    return reading;
}
