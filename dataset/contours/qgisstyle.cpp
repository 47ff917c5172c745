#include "dataset/contours/qgisstyle.h"

#include "dataset/contours/contourstyles.h"
#include "dataset/contours/indexlevels.h"
#include "messages/label.h"

#include <QXmlStreamWriter>

#include <initializer_list>
#include <utility>

namespace
{

using Attributes = std::initializer_list<std::pair<const char *, QString>>;

QString colorText(const QColor &color)
{
    return QStringLiteral("%1,%2,%3,255").arg(color.red()).arg(color.green()).arg(color.blue());
}

/// A field in an expression.
QString quoted(const QString &field)
{
    QString name = field;
    return QLatin1Char('"') + name.replace(QLatin1Char('"'), QLatin1String("\"\"")) + QLatin1Char('"');
}

/// Writes the parts of the style.
class StyleWriter
{
public:
    explicit StyleWriter(const QgisContours &contours)
        : m_contours(contours)
        , m_xml(&m_text)
    { }

    QByteArray write()
    {
        const bool isLabelled = !m_contours.indexField.isEmpty() && !m_contours.levelField.isEmpty();
        m_xml.setAutoFormatting(true);
        m_xml.writeDTD(QStringLiteral("<!DOCTYPE qgis PUBLIC 'http://mrcc.com/qgis.dtd' 'SYSTEM'>"));
        begin("qgis",
              {{"version", QStringLiteral("3.0.0")},
               {"styleCategories", QStringLiteral("Symbology|Labeling")},
               {"labelsEnabled", QString::number(isLabelled)}});
        if (!m_contours.classes.isEmpty())
            writeAreas();
        else if (m_contours.indexField.isEmpty())
            writeAlikeLines();
        else
            writeLines();
        if (isLabelled)
            writeLabels();
        m_xml.writeEndDocument();
        return m_text;
    }

private:
    void begin(const char *name, const Attributes &attributes)
    {
        m_xml.writeStartElement(QLatin1String(name));
        for (const auto &[key, value] : attributes)
            m_xml.writeAttribute(QLatin1String(key), value);
    }

    void add(const char *name, const Attributes &attributes)
    {
        begin(name, attributes);
        end();
    }

    void end() { m_xml.writeEndElement(); }

    void writeProperties(const Attributes &properties)
    {
        for (const auto &[key, value] : properties)
            add("prop", {{"k", QLatin1String(key)}, {"v", value}});
    }

    void beginSymbol(int name, const char *type, const char *layer)
    {
        begin("symbol",
              {{"type", QLatin1String(type)}, {"name", QString::number(name)}, {"alpha", QStringLiteral("1")}});
        begin("layer",
              {{"class", QLatin1String(layer)},
               {"enabled", QStringLiteral("1")},
               {"locked", QStringLiteral("0")},
               {"pass", QStringLiteral("0")}});
    }

    void endSymbol()
    {
        end();
        end();
    }

    void writeLineSymbol(int name, bool isIndexLine)
    {
        beginSymbol(name, "line", "SimpleLine");
        writeProperties({{"line_color", colorText(contourColor)},
                         {"line_style", QStringLiteral("solid")},
                         {"line_width", QString::number(lineWidth(isIndexLine))},
                         {"line_width_unit", QStringLiteral("MM")},
                         {"joinstyle", QStringLiteral("round")},
                         {"capstyle", QStringLiteral("round")}});
        endSymbol();
    }

    void writeAlikeLines()
    {
        begin("renderer-v2", {{"type", QStringLiteral("singleSymbol")}});
        begin("symbols", {});
        writeLineSymbol(0, false);
        end();
        end();
    }

    void writeLines()
    {
        const QString names[] = {labelText({"MESS_CN_QML_FINES", "Courbes de niveau"}),
                                 labelText({"MESS_CN_QML_MAITRES", "Courbes maîtresses"})};
        begin("renderer-v2",
              {{"type", QStringLiteral("categorizedSymbol")}, {"attr", quoted(m_contours.indexField)}});
        begin("categories", {});
        for (const int kind : {0, 1})
            add("category",
                {{"value", QString::number(kind)},
                 {"symbol", QString::number(kind)},
                 {"label", names[kind]},
                 {"render", QStringLiteral("true")}});
        end();
        begin("symbols", {});
        for (const int kind : {0, 1})
            writeLineSymbol(kind, kind == 1);
        end();
        end();
    }

    /// The areas are told apart by their middle: at a bound two ranges would meet.
    void writeAreas()
    {
        const QString middle = QStringLiteral("(%1 + %2) / 2")
                                   .arg(quoted(m_contours.lowestField), quoted(m_contours.highestField));
        begin("renderer-v2", {{"type", QStringLiteral("graduatedSymbol")}, {"attr", middle}});
        begin("ranges", {});
        for (const AreaClass &area : m_contours.classes) {
            const AreaBounds &bounds = area.bounds;
            add("range",
                {{"lower", QString::number(bounds.lowest, 'f', 15)},
                 {"upper", QString::number(bounds.highest, 'f', 15)},
                 {"symbol", QString::number(area.rank)},
                 {"label", levelText(bounds.lowest) + QStringLiteral(" – ") + levelText(bounds.highest)},
                 {"render", QStringLiteral("true")}});
        }
        end();
        begin("symbols", {});
        for (const AreaClass &area : m_contours.classes) {
            beginSymbol(area.rank, "fill", "SimpleFill");
            writeProperties(
                {{"color", colorText(hypsometricTint(area.rank, static_cast<int>(m_contours.classes.size())))},
                 {"style", QStringLiteral("solid")},
                 {"outline_color", colorText(contourColor)},
                 {"outline_style", QStringLiteral("solid")},
                 {"outline_width", QStringLiteral("0.1")},
                 {"outline_width_unit", QStringLiteral("MM")}});
            endSymbol();
        }
        end();
        end();
    }

    void writeLabels()
    {
        // QGIS's numbers: 3 curves the text along its line, 1 puts it on the line, 2 shows a text upside down
        // rather than turning its head downhill.
        constexpr int curved = 3;
        constexpr int onLine = 1;
        constexpr int alwaysShown = 2;
        constexpr int decimals = 6; // leaves out the rounding of sums
        begin("labeling", {{"type", QStringLiteral("rule-based")}});
        begin("rules", {{"key", QStringLiteral("labels")}});
        begin("rule",
              {{"key", QStringLiteral("index")},
               {"filter", quoted(m_contours.indexField) + QStringLiteral(" = 1")}});
        begin("settings", {});
        begin("text-style",
              {{"fieldName",
                QStringLiteral("to_string(round(%1, %2))").arg(quoted(m_contours.levelField)).arg(decimals)},
               {"isExpression", QStringLiteral("1")},
               {"fontFamily", QStringLiteral("Sans Serif")},
               {"fontSize", QStringLiteral("8")},
               {"fontSizeUnit", QStringLiteral("Point")},
               {"textColor", colorText(contourColor)}});
        add("text-buffer",
            {{"bufferDraw", QStringLiteral("1")},
             {"bufferSize", QStringLiteral("0.6")},
             {"bufferSizeUnits", QStringLiteral("MM")},
             {"bufferColor", colorText(Qt::white)}});
        end();
        add("placement", {{"placement", QString::number(curved)}, {"placementFlags", QString::number(onLine)}});
        add("rendering", {{"upsidedownLabels", QString::number(alwaysShown)}});
        for (int open = 0; open < 4; ++open) // settings, rule, rules, labeling
            end();
    }

    const QgisContours &m_contours;
    QByteArray m_text;
    QXmlStreamWriter m_xml;
};

} // namespace

QByteArray qgisStyle(const QgisContours &contours)
{
    return StyleWriter(contours).write();
}
