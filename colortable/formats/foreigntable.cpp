#include "colortable/formats/foreigntable.h"

#include "colortable/formats/cptfile.h"
#include "colortable/formats/gimpgradient.h"
#include "colortable/formats/grassfile.h"
#include "colortable/formats/palettes.h"
#include "colortable/formats/qgisfile.h"
#include "colortable/formats/sldfile.h"
#include "colortable/formats/tableparts.h"
#include "messages/label.h"

#include <QRegularExpression>
#include <QXmlStreamReader>

namespace
{

struct TextFormat
{
    bool (*recognises)(const QStringList &lines);
    ColorTableReading (*read)(const QStringList &lines);
};

/// The text formats; the first that recognises a file reads it. The formats with a mark of their own come
/// first.
constexpr TextFormat textFormats[] = {
    {isGimpGradient, readGimpGradient}, {isGimpPalette, readGimpPalette}, {isSagaText, readSagaText},
    {isSurferLevels, readSurferLevels}, {isQgisText, readQgisText},       {isGrassColors, readGrassColors},
    {isCptFile, readCptFile},           {isGrassRules, readGrassRules},
};

ColorTableReading readXml(const QByteArray &bytes)
{
    QXmlStreamReader xml(bytes);
    const QString root = xml.readNextStartElement() ? xml.name().toString() : QString();
    if (root == QLatin1String("qgis"))
        return readQgisStyle(bytes);
    if (root == QLatin1String("qgis_style"))
        return readQgisRamps(bytes);
    return readSld(bytes);
}

} // namespace

std::optional<ColorTableReading> readForeignTable(const QByteArray &bytes)
{
    if (isBinaryPalette(bytes))
        return readBinaryPalette(bytes);
    if (bytes.contains('\0'))
        return std::nullopt;
    static const QRegularExpression lineEnd(QStringLiteral("\r\n|\n|\r"));
    QString text = QString::fromUtf8(bytes);
    text.remove(QChar(QChar::ByteOrderMark));
    if (text.trimmed().startsWith(QLatin1Char('<')))
        return readXml(bytes);
    const QStringList lines = text.split(lineEnd);
    for (const TextFormat &format : textFormats) {
        if (format.recognises(lines))
            return format.read(lines);
    }
    return std::nullopt;
}
