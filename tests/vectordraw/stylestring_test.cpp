#include "vectordraw/stylestring.h"

#include "tests/fuzz/mutations.h"

#include <QTest>

using namespace vectordraw;

class StyleStringTest : public QObject
{
    Q_OBJECT

private slots:
    void strings_data();
    void strings();
    void units_data();
    void units();
    void expandedText();
    void fieldsInParameters();
    void anyBytes();
};

namespace
{

QString described(const Color &color)
{
    return QString::asprintf("%02x%02x%02x%02x", color.red, color.green, color.blue, color.alpha);
}

QString described(const Length &length)
{
    static const char *units[] = {"px", "pt", "mm", "cm", "in", "g"};
    return QString::number(length.value) + units[static_cast<int>(length.unit)];
}

struct Description
{
    QString operator()(const Pen &pen) const
    {
        QString text = "pen " + described(pen.color) + " " + described(pen.width);
        for (const Length &dash : pen.pattern)
            text += " " + (pen.patternOfWidths ? QString::number(dash.value) + "w" : described(dash));
        if (pen.cap != Cap::Butt || pen.join != Join::Miter)
            text += QStringLiteral(" cap%1 join%2").arg(int(pen.cap)).arg(int(pen.join));
        if (pen.offset.value != 0.0)
            text += " dp" + described(pen.offset);
        return pen.visible ? text : text + " invisible";
    }
    QString operator()(const Brush &brush) const
    {
        return QStringLiteral("brush %1 %2 hatch%3 %4 a%5")
            .arg(described(brush.foreground), described(brush.background), QString::number(int(brush.hatch)),
                 described(brush.size), QString::number(brush.angle));
    }
    QString operator()(const Symbol &symbol) const
    {
        QString text =
            QStringLiteral("symbol %1%2 %3 %4 %5 a%6")
                .arg(QString::number(int(symbol.shape)), symbol.filled ? "f" : "", described(symbol.color),
                     described(symbol.outline), described(symbol.size), QString::number(symbol.angle));
        if (symbol.glyph != 0)
            text += QStringLiteral(" U%1 %2").arg(symbol.glyph).arg(QString::fromStdString(symbol.font));
        if (symbol.step.value != 0.0)
            text += QStringLiteral(" every %1 from %2 beside %3")
                        .arg(described(symbol.step), described(symbol.initialOffset),
                             described(symbol.perpendicular));
        return text;
    }
    QString operator()(const LabelText &label) const
    {
        QString text = QStringLiteral("label <%1> %2 %3 p%4 m%5")
                           .arg(QString::fromStdString(label.text), QString::fromStdString(label.font),
                                described(label.size), QString::number(label.anchor),
                                QString::number(int(label.placement)));
        for (const auto &[on, letter] :
             {std::pair{label.bold, "b"}, {label.italic, "i"}, {label.underline, "u"}})
            text += on ? letter : "";
        return text;
    }
};

} // namespace

void StyleStringTest::strings_data()
{
    QTest::addColumn<QByteArray>("text");
    QTest::addColumn<QStringList>("tools");
    QTest::addColumn<int>("ignored");

    const auto row = [](const char *text, const QStringList &tools, int ignored = 0) {
        QTest::newRow(text) << QByteArray(text) << tools << ignored;
    };
    const QString pen = "pen 000000ff 1px";
    row("PEN(c:#FF0000,w:5px)", {"pen ff0000ff 5px"});
    row("pen( c : #ff000080 , w : 2.5 mm )", {"pen ff000080 2.5mm"});
    row("PEN(w:3)", {"pen 000000ff 3mm"});
    row("PEN(w:1px,id:\"mapinfo-pen-2.7,ogr-pen-2\")", {pen + " 6w 3w"});
    row("PEN(p:\"4px 5pt\",id:ogr-pen-7)", {pen + " 4px 5pt"});
    row("PEN(p:\"24 6 4 6px\")", {pen + " 24px 6px 4px 6px"});
    row("PEN(p:\"1 2px 3 4pt 5\")", {pen + " 1px 2px 3pt 4pt 5pt"});
    row("PEN(p:\"1 2\")", {pen + " 1mm 2mm"});
    row("PEN(id:\"ogr-pen-99,ogr-pen-3\")", {pen + " 3w 3w"});
    row("PEN(id:\"ogr-pen-1\")", {pen + " invisible"});
    row("Pen(C:#FF0000,W:5px,CAP:P,Id:OGR-PEN-0)", {"pen ff0000ff 5px cap2 join0"});
    row("PEN(cap:p,j:r,dp:-2g)", {pen + " cap2 join1 dp-2g"});
    row("PEN", {pen});
    row("PEN()", {pen});
    row("BRUSH(fc:#010203,bc:#04050607,id:\"ogr-brush-6\",a:45,s:1cm)",
        {"brush 010203ff 04050607 hatch6 1cm a45"});
    row("SYMBOL(id:\"ogr-sym-9\",c:#00FF00,o:#0000FF,s:12pt,a:-30)", {"symbol 5f 00ff00ff 0000ffff 12pt a-30"});
    row("SYMBOL(id:\"font-sym-65,ogr-sym-9\",f:\"Some Font\",ds:10px,dp:2px,di:3px)",
        {"symbol 5f 000000ff 00000000 8px a0 U65 Some Font every 10px from 3px beside 2px"});
    row("SYMBOL(id:\"ogr-sym-3,font-sym-65\",s:2)", {"symbol 2f 000000ff 00000000 16px a0"});
    row("BRUSH(s:1.5,id:\"mapinfo-brush-3,ogr-brush-9,ogr-brush-2\")",
        {"brush 808080ff 00000000 hatch2 12px a0"});
    row("SYMBOL(c:{colour})", {"symbol 0 000000ff 00000000 8px a0"}, 1);
    row("LABEL(f:\"Arial, Helvetica\",s:12pt,t:\"He said \\\"{NAME}, (x)\\\"; \",p:11,m:s,bo:1,it:1,un:1)",
        {"label <He said \"{NAME}, (x)\"; > Arial, Helvetica 12pt p11 m2biu"});
    row("LABEL(t:{NAME},s:5)", {"label <{NAME}> Sans 5mm p1 m0"});
    // Levels go before the order in the string; within a level the order stays.
    row("PEN(w:2px,l:2);BRUSH(l:1);PEN(w:3px,l:2);PEN(w:4px)",
        {"brush 808080ff 00000000 hatch0 8px a0", "pen 000000ff 4px", "pen 000000ff 2px", "pen 000000ff 3px"});
    // Odd and hostile ones.
    row("", {});
    row(";;;", {});
    row("PEN(c:#FF00,w:wide,p:\"0px\",id:\"ogr-pen-99\",cap:x,zz:1,alone)", {pen}, 7);
    row("PENCIL(c:#FF0000);PEN(w:2px)", {"pen 000000ff 2px"}, 1);
    row("PEN(w:2px", {"pen 000000ff 2px"});
    row("PEN(c:\"#FF0000", {"pen ff0000ff 1px"});
    row("PEN((((,w:2px)", {"pen 000000ff 2px"}, 1);
    row("PEN(w:1e999px,dp:nan)", {pen}, 2);
    row("PEN(w:1e12px)", {"pen 000000ff 1e+09px"});
    row("PEN(p:\"-1px 2px\")", {pen}, 1);
    row("LABEL(p:13,m:z,w:0,t:)", {"label <> Sans 12pt p1 m0"}, 4);
}

void StyleStringTest::strings()
{
    QFETCH(QByteArray, text);
    QFETCH(QStringList, tools);
    const StyleReading reading = parseStyle(text.toStdString());
    QStringList found;
    for (const Tool &tool : reading.style)
        found += std::visit(Description(), tool);
    QCOMPARE(found, tools);
    QTEST(reading.ignored, "ignored");
    QCOMPARE(reading.reference, std::string());
}

void StyleStringTest::units_data()
{
    QTest::addColumn<int>("unit");
    QTest::addColumn<double>("screen");  // at 96 dots an inch and 2 ground units a pixel
    QTest::addColumn<double>("printer"); // at 300 and 0.5
    QTest::newRow("px") << int(Unit::Pixel) << 6.0 << 6.0;
    QTest::newRow("pt") << int(Unit::Point) << 8.0 << 25.0;
    QTest::newRow("mm") << int(Unit::Millimetre) << 6.0 * 96.0 / 25.4 << 6.0 * 300.0 / 25.4;
    QTest::newRow("cm") << int(Unit::Centimetre) << 60.0 * 96.0 / 25.4 << 60.0 * 300.0 / 25.4;
    QTest::newRow("in") << int(Unit::Inch) << 576.0 << 1800.0;
    QTest::newRow("g") << int(Unit::Ground) << 3.0 << 12.0;
}

void StyleStringTest::units()
{
    QFETCH(int, unit);
    const Length length{6.0, static_cast<Unit>(unit)};
    QTEST(pixels(length, {96.0, 2.0}), "screen");
    QTEST(pixels(length, {300.0, 0.5}), "printer");
}

void StyleStringTest::expandedText()
{
    const auto lookup = [](std::string_view name, std::string &value) {
        value = "{b}";
        return name == "a";
    };
    QCOMPARE(expandText("x{a}{a}y{b}{", lookup), std::string("x{b}{b}y{b}{"));
    QCOMPARE(parseStyle(" @road ; PEN()").reference, std::string("road"));
}

void StyleStringTest::fieldsInParameters()
{
    const auto values = [](std::string_view name, std::string &value) {
        value = name == "colour" ? "#00FF00" : name == "size" ? "3" : "),PEN(w:9px,\"{size}";
        return name != "absent";
    };
    const auto described = [&](const char *text) {
        const StyleReading reading = parseStyle(text, values);
        QStringList found{reading.usesFields ? "fields" : "fixed"};
        for (const Tool &tool : reading.style)
            found += std::visit(Description(), tool);
        return found;
    };
    QCOMPARE(described("PEN(c:{colour},w:{size}px,p:\"{size} 1px\")"),
             QStringList({"fields", "pen 00ff00ff 3px 3px 1px"}));
    QCOMPARE(described("PEN(l:{size});BRUSH(a:{absent},l:2)"),
             QStringList({"fields", "brush 808080ff 00000000 hatch0 8px a0", "pen 000000ff 1px"}));
    // A value is no part of the grammar; a label's text waits for its feature.
    QCOMPARE(described("SYMBOL(f:{wild},id:font-sym-65)"),
             QStringList({"fields", "symbol 0 000000ff 00000000 8px a0 U65 ),PEN(w:9px,\"{size}"}));
    QCOMPARE(described("LABEL(t:\"{wild}\")"), QStringList({"fixed", "label <{wild}> Sans 12pt p1 m0"}));
}

void StyleStringTest::anyBytes()
{
    fuzzMutations({"PEN(c:#FF0000,w:5px,p:\"4px 5px\",id:\"ogr-pen-2\");BRUSH(fc:#010203,id:ogr-brush-3)",
                   "LABEL(f:\"Arial\",t:\"\\\"{A},(;\",p:11,m:s);SYMBOL(id:\"font-sym-65\",dp:1g,c:{F},l:9)"},
                  20000);
}

QTEST_APPLESS_MAIN(StyleStringTest)
#include "stylestring_test.moc"
