#include "colortable/formats/foreigntable.h"

#include "colortable/formats/colornames.h"
#include "colortable/toolcolors.h"

#include <QTest>

/// Files of other programs: the colours of cells as the tool paints them, and the files that are refused.
class ForeignTableTest : public QObject
{
    Q_OBJECT

private slots:
    void pictures_data();
    void pictures();
    void refusals_data();
    void refusals();
    void ownFilesStayOwn();
    void colorNames();
};

namespace
{

/// A file in XML around a colour map.
QByteArray sld(const QByteArray &map)
{
    return "<?xml version='1.0'?><sld:StyledLayerDescriptor xmlns:sld='http://www.opengis.net/sld'>"
           "<sld:RasterSymbolizer>"
        + map + "</sld:RasterSymbolizer></sld:StyledLayerDescriptor>";
}

QByteArray qml(const QByteArray &shader, const QByteArray &renderer = "type='singlebandpseudocolor'")
{
    return "<!DOCTYPE qgis PUBLIC 'http://mrcc.com/qgis.dtd' 'SYSTEM'>\n<qgis><pipe><rasterrenderer " + renderer
        + "><rastershader>" + shader + "</rastershader></rasterrenderer></pipe></qgis>";
}

QByteArray ramps(const QByteArray &options)
{
    return "<qgis_style><colorramps><colorramp type='gradient' name='a'>" + options
        + "</colorramp></colorramps></qgis_style>";
}

QByteArray little32(int number)
{
    return {reinterpret_cast<const char *>(&number), 4};
}

/// "rrggbb", and the alpha before it where the colour is not opaque.
QString named(QRgb color)
{
    return QColor::fromRgba(color).name(qAlpha(color) == 255 ? QColor::HexRgb : QColor::HexArgb).mid(1);
}

} // namespace

void ForeignTableTest::pictures_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<QString>("format");
    QTest::addColumn<QString>("cells"); // "elevation=colour"; percentages are of a DEM from 0 to 100
    QTest::addColumn<int>("notes");
    const auto row = [](const char *name, const char *format, const QByteArray &bytes, const char *cells,
                        int notes = 0) {
        QTest::newRow(name) << bytes << QString(format) << QString(cells) << notes;
    };

    row("CPT of GMT 4", "GMT CPT",
        "0 0 0 255 10 0 0 255 L\n10 0 255 0 20 255 255 0 ;top\nB 1 2 3\nF 4 5 6\nN 7 8 9\n",
        "-1=010203 0=0000ff 9.99=0000ff 10=00ff00 15=7fff00 20=ffff00 20.01=040506 nv=070809");
    row("CPT without a mark", "GMT CPT", "0 0 0 255 10 0 0 255\n10 0 255 0 20 255 255 0\n",
        "10=00ff00 99=ffff00");
    row("CPT of GMT 6", "GMT CPT",
        "# COLOR_MODEL = RGB\n0 green 10 maroon B\n10 #010203 20 -\n20 128 30 0/0/0/100@50\n30 - 40 -\nN -\n",
        "0=00ff00 10=010203 19.9=010203 20=808080 25=bf404040 35=00000000 nv=00000000");
    row("CPT in HSV", "GMT CPT", "# COLOR_MODEL = hsv\n0 0-1-1 360 360-1-1\n",
        "0=ff0000 60=fefe00 120=01ff01 180=00ffff 300=fe00fe 360=ff0000");
    row("CPT in HSV, mixed in RGB", "GMT CPT", "# COLOR_MODEL = HSV\n0 0 1 1 10 120 1 1\n",
        "0=ff0000 5=7f7f00");
    row("CPT in +HSV", "GMT CPT", "#COLOR_MODEL = +HSV\n0 0 1 1 10 120 1 1\n", "0=ff0000 5=ffff00 10=00ff00");
    row("CPT in CMYK", "GMT CPT", "# COLOR_MODEL = cmyk\n0 0/100/100/0 10 0 \n", "0=ff0000 10=000000");
    row("CPT with a hinge", "GMT CPT",
        "# HARD_HINGE\n# RANGE = -1000/4000\n-1 0/0/0 0 0/0/200\n0 0/100/0 1 200/200/200\n",
        "-1000=000000 -500=000064 -1=0000c8 0=006400 2000=649664", 1);
    row("CPT from 0 to 1", "GMT CPT", "0 0/0/0 0.5 100/100/100\n0.5 9/9/9 1 9/9/9\n", "25=323232 50=090909", 1);
    row("cyclic CPT", "GMT CPT", "# CYCLIC\n0 0/0/0 10 9/9/9\n", "99=090909", 1);
    row("CPT of categories", "GMT CPT", "1 255/0/0 ;town\n2 blue ;sea\n",
        "1=ff0000 2=0000ff 1.5=00000000 3=00000000", 1);
    row("CPT at -9999", "GMT CPT", "-9999 1/1/1 0 1/1/1\n0 2/2/2 5 2/2/2\n",
        "-20000=010101 -9999=010101 1=020202");

    const QByteArray title = "# Fichier généré par QGIS\n";
    row("QGIS text", "QGIS", title + "INTERPOLATION:INTERPOLATED\r\n0,0,0,0,255,a, b\r\n10,200,0,0,55,\r\n",
        "-5=000000 5=9b640000 10=37c80000");
    row("QGIS bounds", "QGIS",
        title + "INTERPOLATION:DISCRETE\n0.1,1,1,1,255,a\n10,2,2,2,255,b\ninf,3,3,3,255,c\n",
        "-5=010101 0.1=020202 0.09999999=010101 10=020202 10.000001=030303 999=030303");
    row("QGIS bounds with an end", "QGIS", title + "INTERPOLATION:DISCRETE\n10,2,2,2,255,b\n0,1,1,1,255,a\n",
        "0=010101 1e-20=020202 10=020202 11=00000000");
    row("QGIS values", "QGIS", title + "INTERPOLATION:EXACT\n1,9,9,9,255,a\n2,8,8,8,128,b\n1,7,7,7,255,a\n",
        "1=090909 2=80080808 1.0001=00000000 0.9999=00000000 0=00000000", 1);

    row("QML", "QGIS QML",
        qml("<colorrampshader colorRampType='INTERPOLATED' clip='1'><colorramp type='gradient'>"
            "<prop k='color1' v='9,9,9'/></colorramp><item value='0' color='#000000' alpha='255' label=''/>"
            "<item value='10' color='200,100,0,255,rgb:0.7,0.4,0,1' alpha='0'/></colorrampshader>",
            "type='singlebandpseudocolor' opacity='0.5' nodataColor='1,2,3,4'"),
        "0=000000 5=7f643200 -1=00000000 10.1=00000000 nv=04010203", 1);
    row("QML with a ramp alone", "QGIS QML",
        qml("<colorrampshader minimumValue='100' maximumValue='300' colorRampType='INTERPOLATED'>"
            "<colorramp type='gradient'><Option name='color1' value='0,0,0,255'/>"
            "<Option name='color2' value='100,0,0,255'/></colorramp></colorrampshader>"),
        "200=320000");
    row("QGIS ramp", "QGIS XML",
        ramps("<prop k='color1' v='255,0,0,255'/><prop k='stops' v='0.5;0,0,255,255;hsv;cw:0.75;9,9,9,255'/>"
              "<prop k='color2' v='0,255,0,55'/>"),
        "0=ff0000 25=ff00ff 50=0000ff 75=090909 100=3700ff00");
    row("QGIS ramp in steps", "QGIS XML",
        ramps("<prop k='color1' v='1,1,1'/><prop k='stops' v='0.5;5,5,5'/><prop k='discrete' v='1'/>"
              "<prop k='color2' v='9,9,9'/></colorramp><colorramp type='random' name='b'>"),
        "49=010101 50=050505 99=050505", 1);
    row("QGIS ramp in HSL", "QGIS XML",
        ramps("<prop k='color1' v='255,0,0'/><prop k='color2' v='0,0,255'/><prop k='spec' v='hsl'/>"),
        "50=00ff00 25=ffff00");

    row("SLD ramp", "SLD",
        sld("<sld:ColorMap><sld:ColorMapEntry color='#000000' quantity='0'/>"
            "<sld:ColorMapEntry color='#C80000' quantity='10' opacity='0.5' label='x'/></sld:ColorMap>"),
        "-1=000000 5=bf640000 99=80c80000");
    row("SLD intervals", "SLD",
        sld("<Opacity>0.4</Opacity><ColorMap type='intervals'><ColorMapEntry color='#010101' quantity='0'/>"
            "<ColorMapEntry color='#020202' quantity='10'/></ColorMap>"),
        "-1=010101 0=020202 9.99=020202 10=00000000", 1);
    row("SLD values", "SLD",
        sld("<ColorMap type='values'><ColorMapEntry color='#010101' quantity='4'/></ColorMap>"),
        "4=010101 5=00000000", 1);
    const QByteArray categories =
        "><LookupValue>Rasterdata</LookupValue><Value>#010101</Value><Threshold>5</Threshold>"
        "<Value>#020202</Value></Categorize></ColorMap>";
    row("SE categories", "SLD", sld("<ColorMap><Categorize fallbackValue='#78c818'" + categories),
        "4.9=010101 5=020202");
    row("SE categories below", "SLD", sld("<ColorMap><Categorize thresholdsBelongTo='preceding'" + categories),
        "5=010101 5.1=020202");
    row("SE interpolation", "SLD",
        sld("<ColorMap><Interpolate><InterpolationPoint><Data>0</Data><Value>#000000</Value></"
            "InterpolationPoint>"
            "<InterpolationPoint><Data>10</Data><Value>#0a0a0a</Value></InterpolationPoint></Interpolate></"
            "ColorMap>"),
        "5=050505");

    row("GRASS rules", "GRASS", "# c\n0 aqua\n100% 0,9,0\n50 brown\nnv 1:2:3\ndefault 4 5 6\nend\nrubbish\n",
        "0=6480ff 50=b44d19 -1=040506 nv=010203");
    row("GRASS rules in order", "GRASS", "0 0:0:0\n10 10:10:10\n10 20:20:20\n20 30:30:30\ndefault gray\n",
        "5=050505 10=141414 20=1e1e1e 20.001=808080");
    row("GRASS colours", "GRASS colr",
        "% 0 30\nnv:9\n*:1:2:3\nshift:100\n20:7:7:7 30:8:8:8\n0:0:0:0 10:100:0:0\n10:5 12\n15:6:6:6\n",
        "99=010203 105=320000 110=050505 112=050505 112.1=010203 115=060606 116=010203 120=070707 131=010203 "
        "nv=090909");
    row("inverted GRASS colours", "GRASS colr", "%% 0 10\ninvert\n0:0 10:255\n", "0=ffffff 10=000000", 1);

    row("Surfer", "Surfer", "ColorMap 2 1\n0 0 0 0 255\n100 200 0 0 55\n", "50=9b640000");
    row("Surfer's elevations", "Surfer", "ColorMap 1 1\n0 0 0 0\n200 200 0 0\n", "100=640000");
    const QByteArray saga = "SAGA_COLORPALETTE_VERSION_0.100__";
    row("SAGA text", "SAGA", saga + "ASCII\n3\n000 000 000\n100 000 000\n000 000 200\n", "25=320000 100=0000c8",
        1);
    row("SAGA binary", "SAGA", saga + "BINARY" + little32(2) + little32(0x000a0a) + little32(0xc80000),
        "0=0a0a00 100=0000c8", 1);
    row("SAGA 1", "SAGA", QByteArray("\2\0\1\2\3\4\5\6", 8), "0=010305 100=020406", 1);
    row("GIMP gradient", "GIMP Gradient",
        "GIMP Gradient\nName: x\n3\n0 0.1 0.2 0 0 0 1 1 0 0 1 0 0\n0.2 0.3 0.4 1 0 0 1 0 1 0 1 0 1 0 0\n"
        "0.4 0.7 1 0 0 0 1 1 1 1 0 5 0\n",
        "0=000000 10=800000 30=ffff00 39.999=00ff00 40=000000 69=000000 70=00ffffff");
    row("sinusoidal GIMP gradient", "GIMP Gradient", "GIMP Gradient\n1\n0 0.5 1 0 0 0 1 1 1 1 1 2 0\n",
        "25=252525 50=808080 75=dadada");
    row("GIMP palette", "GIMP Palette",
        "GIMP Palette\nName: x\nColumns: 4\n# c\n  0   0   0\tBlack\n200 0 0 Red 2\n", "50=640000", 1);
    QByteArray act(768, '\0');
    act[5] = '\x64';
    row("ACT", "ACT", act + QByteArray("\0\2\377\377", 4), "0=000000 100=000064", 1);
    row("whole ACT", "ACT", act, "0=000000", 1);
}

void ForeignTableTest::pictures()
{
    QFETCH(QByteArray, bytes);
    QFETCH(QString, cells);
    const ColorTableReading reading = parseColorTable(bytes);
    QCOMPARE(reading.problem, QString());
    QTEST(reading.format, "format");
    QVERIFY(!reading.plain);
    const ToolColors colors(reading.entries, 0.0, 100.0);
    QStringList painted;
    for (const QString &cell : cells.split(' ')) {
        const QString elevation = cell.section('=', 0, 0);
        const auto value = static_cast<double>(elevation.toFloat()); // the tool's cells have 32 bits
        const QuvoColorDef *noData = noDataEntry(reading.entries);
        painted += elevation + '='
            + named(elevation != "nv" ? colors.color(value)
                        : noData      ? noData->color.rgba()
                                      : 0xbadU);
    }
    QCOMPARE(painted.join(' '), cells);
    QTEST(static_cast<int>(reading.notes.size()), "notes");
}

void ForeignTableTest::refusals_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<QString>("word"); // of the sentence
    const auto row = [](const char *name, const QByteArray &bytes, const char *word) {
        QTest::newRow(name) << bytes << QString(word);
    };
    row("CPT: HSV without its model", "0 240 1 1 10 0 1 0.5\n", "COLOR_MODEL");
    row("CPT: unknown model", "# COLOR_MODEL = lab\n0 1/1/1 2 2/2/2\n", "Ligne 1");
    row("CPT: too high", "0 1/1/1 2 2/2/256\n", "Ligne 1 : « 2/2/256 »");
    row("CPT: negative", "# COLOR_MODEL = rgb\n0 -1/1/1 2 2/2/2\n", "Ligne 2");
    row("CPT: HSV beyond 1", "# COLOR_MODEL = hsv\n0 1-1-1 2 2-2-2\n", "« 2-2-2 »");
    row("CPT: unknown name", "0 red 1 lightbrown\n", "« lightbrown »");
    row("CPT: pattern", "0 1/1/1 2 2/2/2\n2 p20/10 3 -\n", "Ligne 2");
    row("CPT: gap", "0 1/1/1 2 2/2/2\n3 1/1/1 4 1/1/1\n", "Ligne 2");
    row("CPT: cut", "0 1/1/1 2 2/2/2\n2 1/1/1 3\n", "Ligne 2");
    row("CPT: hinge without a range", "# HARD_HINGE\n-1 1/1/1 0 1/1/1\n0 2/2/2 1 2/2/2\n", "RANGE");
    row("CPT: mixed", "0 1/1/1 2 2/2/2\n2 9/9/9\n", "plages");
    row("QGIS: unknown type", "INTERPOLATION:CUBIC\n1,1,1,1,255,a\n", "CUBIC");
    row("QGIS: too few fields", "INTERPOLATION:EXACT\n1,1,1,1\n", "Ligne 2");
    row("QGIS: negative", "INTERPOLATION:DISCRETE\n1,1,-1,1,255,\n", "Ligne 2");
    row("QGIS: endless point", "INTERPOLATION:INTERPOLATED\ninf,1,1,1,255,\n", "inf");
    row("QML: other renderer", qml("", "type='paletted'"), "paletted");
    row("QML: alpha",
        qml("<colorrampshader colorRampType='EXACT'><item value='1' color='#000000' alpha='300'/>"
            "</colorrampshader>"),
        "Ligne 2");
    row("QML: cut", qml("").chopped(30), "XML");
    row("QGIS ramp: other type", "<qgis_style><colorramp type='random'/></qgis_style>", "random");
    row("QGIS ramp: no colour", ramps("<prop k='color1' v='1,1,1'/>"), "n'est pas une couleur");
    row("SLD: unknown type",
        sld("<ColorMap type='spline'><ColorMapEntry color='#000000' quantity='4'/></ColorMap>"), "spline");
    row("SLD: expression", sld("<ColorMap><ColorMapEntry color='${c}' quantity='4'/></ColorMap>"), "${c}");
    row("SLD: opacity", sld("<ColorMap><ColorMapEntry color='#000000' quantity='4' opacity='50'/></ColorMap>"),
        "50");
    row("SLD: order",
        sld("<ColorMap type='intervals'><ColorMapEntry color='#000000' quantity='4'/>"
            "<ColorMapEntry color='#000000' quantity='3'/></ColorMap>"),
        "croissant");
    row("SE: a threshold too many",
        sld("<Categorize><Value>#000000</Value><Threshold>1</Threshold></Categorize>"), "2 couleurs");
    row("SE: curve", sld("<Interpolate mode='cubic'/>"), "cubic");
    row("GRASS: not its name", "0 salmon\nend\n", "salmon");
    row("GRASS: percent", "101% red\nend\n", "Ligne 1");
    row("GRASS colours: overlap", "% 0 9\n0:0 5:5\n4:4 9:9\n", "4");
    row("GRASS colours: negative", "% 0 9\n0:0:0:0 5:5:-5:5\n", "Ligne 2");
    row("Surfer: version 3", "ColorMap 3 1\n0 0 0 0\n", "ColorMap 3");
    row("Surfer: cut", "ColorMap 1 1\n0 0 0\n", "Ligne 2");
    row("SAGA: cut", "SAGA_COLORPALETTE_VERSION_0.100__ASCII\n3\n1 2 3\n", "3 couleurs");
    row("SAGA: cut bytes", "SAGA_COLORPALETTE_VERSION_0.100__BINARY" + little32(2) + "123", "2 couleurs");
    row("GIMP gradient: cut", "GIMP Gradient\n2\n0 0.5 1 0 0 0 1 1 1 1 1 0 0\n", "2 couleurs");
    row("GIMP gradient: blend", "GIMP Gradient\n1\n0 0.5 1 0 0 0 1 1 1 1 1 9 0\n", "Ligne 3");
    row("GIMP gradient: painter's colour", "GIMP Gradient\n1\n0 0.5 1 0 0 0 1 1 1 1 1 0 0 1 0\n", "Ligne 3");
    row("GIMP palette", "GIMP Palette\n1 2 300 x\n", "Ligne 2");
    row("ACT: count", QByteArray(768, '\0') + QByteArray("\2\0\0\0", 4), "512");
    QByteArray many;
    for (int at = 0; at < 20000; ++at)
        many += QByteArray::number(at) + " 1/1/1 " + QByteArray::number(at + 1) + " 2/2/2\n";
    row("too many", many, "10000");
}

void ForeignTableTest::refusals()
{
    QFETCH(QByteArray, bytes);
    QFETCH(QString, word);
    const ColorTableReading reading = parseColorTable(bytes);
    QVERIFY2(reading.problem.contains(word), qPrintable(reading.problem));
    QVERIFY(reading.entries.isEmpty());
}

void ForeignTableTest::ownFilesStayOwn()
{
    for (const char *text :
         {"0 red\n10 blue\n", "0:1:2:3\n5:1:2:3:4\n", "0 1 2 3 255 a b c\n", "0,1,2,3,4,label\n",
          "1 255 0 0\n2 0 255 0\n", "nv 1 2 3\n0% 1 2 3\n100% 4 5 6\n", "# ColorMap 1 1\n", "",
          "0 1 2 3 100 4 5 6\n50 1 2 3 90 4 5 6\n", "// 1/2/3\n1 2 3 4\n", "10 20 30 40\n"})
        QVERIFY2(!readForeignTable(text), text);
    QVERIFY(!readForeignTable(QByteArray(768, ' ')) && !readForeignTable(QByteArray(600, '\0')));
}

void ForeignTableTest::colorNames()
{
    const auto named = [](const QColor &color) { return color.isValid() ? color.name() : QString(); };
    QCOMPARE(named(toolNamedColor("Green")), QString("#00ff00"));
    QCOMPARE(named(toolNamedColor("salmon")), QString("#fa8072"));
    QCOMPARE(named(grassNamedColor("orange")), QString("#ff8000"));
    QCOMPARE(named(x11NamedColor("gray50")), QString("#7f7f7f"));
    QCOMPARE(named(x11NamedColor("grey70")), QString("#b3b3b3"));
    QCOMPARE(named(x11NamedColor("red4")), QString("#8b0000"));
    QCOMPARE(named(x11NamedColor("gray")), QString("#bebebe"));
    QCOMPARE(named(x11NamedColor("gray101")) + named(x11NamedColor("tan7")), QString());
}

QTEST_APPLESS_MAIN(ForeignTableTest)
#include "foreigntable_test.moc"
