#include "dataset/contours/contourstyles.h"

#include <algorithm>
#include <array>

namespace
{

constexpr char mapInfo[] = "MapInfo File";
constexpr char dxf[] = "DXF";

bool isOneOf(const QString &driver, std::initializer_list<const char *> names)
{
    return std::any_of(names.begin(), names.end(), [&](const char *name) {
        return driver.compare(QLatin1String(name), Qt::CaseInsensitive) == 0;
    });
}

QString number(double value)
{
    return QString::number(value, 'g', 10);
}

} // namespace

StylePlace stylePlace(const QString &driver)
{
    if (isOneOf(driver, {mapInfo, dxf, "KML", "LIBKML", "PDF"}))
        return StylePlace::Feature;
    // Their fields are fixed.
    if (isOneOf(driver,
                {"DGN", "GPX", "GeoRSS", "Interlis 1", "Interlis 2", "MBTiles", "MVT", "S57", "Selafin", "VDV",
                 "WAsP"}))
        return StylePlace::Nowhere;
    return StylePlace::Attribute;
}

bool keepsStyles(const QString &driver)
{
    return stylePlace(driver) != StylePlace::Nowhere;
}

bool labelsArePoints(const QString &driver)
{
    return isOneOf(driver, {mapInfo, dxf});
}

QString nameAttribute(const QString &driver)
{
    return isOneOf(driver, {"KML", "LIBKML"}) ? QStringLiteral("Name") : QString();
}

double lineWidth(bool isIndexLine)
{
    return isIndexLine ? 0.4 : 0.15;
}

QString lineStyle(const QString &driver, bool isIndexLine)
{
    QString width = number(lineWidth(isIndexLine)) + QLatin1String("mm");
    // A MapInfo file keeps whole pixels, so that both widths would become a single one. The driver of DXF
    // writes lengths on the ground as hundredths of a millimetre on paper, and those on paper as nothing.
    if (isOneOf(driver, {mapInfo}))
        width = isIndexLine ? QStringLiteral("3px") : QStringLiteral("1px");
    else if (isOneOf(driver, {dxf}))
        width = number(lineWidth(isIndexLine)) + QLatin1Char('g');
    return QStringLiteral("PEN(c:%1,w:%2)").arg(contourColor.name().toUpper(), width);
}

QString lineStyle(const QString &driver, const QString &label)
{
    const QString pen = lineStyle(driver, !label.isEmpty());
    if (label.isEmpty() || labelsArePoints(driver))
        return pen;
    // The white outline parts the text from the line that it stands on.
    return pen
        + QStringLiteral(";LABEL(f:\"Sans\",s:8pt,t:\"%1\",m:m,p:5,c:%2,o:#FFFFFF)")
              .arg(label, contourColor.name().toUpper());
}

QString labelStyle(const QString &label, double angle, double height)
{
    return QStringLiteral("LABEL(f:\"Sans\",t:\"%1\",a:%2,s:%3g,p:2,c:%4)")
        .arg(label, number(angle), number(height), contourColor.name().toUpper());
}

QString areaStyle(const QColor &tint)
{
    return QStringLiteral("BRUSH(fc:%1);PEN(c:%2,w:0.1mm)")
        .arg(tint.name().toUpper(), contourColor.name().toUpper());
}

QColor hypsometricTint(int rank, int count)
{
    // Lowland, hills, highland, mountains and snow.
    static const std::array<QColor, 5> stops{QColor(0x8C, 0xBF, 0x88), QColor(0xD9, 0xE3, 0xA4),
                                             QColor(0xEF, 0xD3, 0x8F), QColor(0xC4, 0x96, 0x6A),
                                             QColor(0xF7, 0xF3, 0xEF)};
    const double place = count > 1 ? static_cast<double>(rank) / (count - 1) * (stops.size() - 1) : 0.0;
    const auto below = std::min(static_cast<std::size_t>(place), stops.size() - 2);
    const double share = place - static_cast<double>(below);
    const auto mix = [share](int from, int to) { return qRound(from + share * (to - from)); };
    const QColor &from = stops[below];
    const QColor &to = stops[below + 1];
    return {mix(from.red(), to.red()), mix(from.green(), to.green()), mix(from.blue(), to.blue())};
}
