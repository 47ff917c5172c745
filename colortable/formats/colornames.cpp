#include "colortable/formats/colornames.h"

#include <QHash>
#include <QRegularExpression>

namespace
{

using Names = QHash<QString, QRgb>;

/// Names that the DEM tool and GRASS share.
Names basicNames()
{
    return {{"white", qRgb(255, 255, 255)}, {"black", qRgb(0, 0, 0)},   {"red", qRgb(255, 0, 0)},
            {"green", qRgb(0, 255, 0)},     {"blue", qRgb(0, 0, 255)},  {"yellow", qRgb(255, 255, 0)},
            {"magenta", qRgb(255, 0, 255)}, {"cyan", qRgb(0, 255, 255)}};
}

Names with(Names names, const Names &more)
{
    for (auto name = more.begin(); name != more.end(); ++name)
        names.insert(name.key(), name.value());
    return names;
}

QColor found(const Names &names, const QString &name)
{
    const auto at = names.find(name.toLower());
    return at == names.end() ? QColor() : QColor(at.value());
}

QColor qtNamedColor(const QString &name)
{
    const QColor color(name);
    return color.isValid() ? QColor::fromRgba(color.rgba()) : color; // 8 bits, also of "#rrrgggbbb"
}

/// X11's "gray0" to "gray100". Two of its greys are rounded down.
QColor numberedGray(int percent)
{
    const bool roundedDown = percent == 50 || percent == 90;
    const int level = (percent * 255 + (roundedDown ? 49 : 50)) / 100;
    return percent > 100 ? QColor() : QColor(level, level, level);
}

/// X11's darker variants of a colour with components of 0 and 255: "red1" is red itself, "red4" the darkest.
QColor numberedVariant(const QString &name, int variant)
{
    constexpr int levels[] = {255, 238, 205, 139};
    if (!QStringList({"red", "green", "blue", "yellow", "cyan", "magenta"}).contains(name))
        return {};
    const QColor full = found(basicNames(), name);
    const auto part = [&](int component) { return component * levels[variant - 1] / 255; };
    return {part(full.red()), part(full.green()), part(full.blue())};
}

} // namespace

QColor toolNamedColor(const QString &name)
{
    static const Names names = with(basicNames(),
                                    {{"aqua", qRgb(0, 191, 191)},
                                     {"grey", qRgb(191, 191, 191)},
                                     {"gray", qRgb(191, 191, 191)},
                                     {"orange", qRgb(255, 127, 0)},
                                     {"brown", qRgb(191, 127, 63)},
                                     {"purple", qRgb(127, 0, 255)},
                                     {"violet", qRgb(127, 0, 255)},
                                     {"indigo", qRgb(0, 127, 255)}});
    const QColor color = found(names, name);
    return color.isValid() ? color : qtNamedColor(name);
}

QColor grassNamedColor(const QString &name)
{
    static const Names names = with(basicNames(),
                                    {{"aqua", qRgb(100, 128, 255)},
                                     {"grey", qRgb(128, 128, 128)},
                                     {"gray", qRgb(128, 128, 128)},
                                     {"orange", qRgb(255, 128, 0)},
                                     {"brown", qRgb(180, 77, 25)},
                                     {"purple", qRgb(128, 0, 255)},
                                     {"violet", qRgb(128, 0, 255)},
                                     {"indigo", qRgb(0, 128, 255)}});
    return found(names, name);
}

QColor x11NamedColor(const QString &name)
{
    static const Names names{{"gray", qRgb(190, 190, 190)},
                             {"grey", qRgb(190, 190, 190)},
                             {"green", qRgb(0, 255, 0)},
                             {"maroon", qRgb(176, 48, 96)},
                             {"purple", qRgb(160, 32, 240)}};
    static const QRegularExpression gray(QStringLiteral("^gr[ae]y([0-9]{1,3})$"));
    static const QRegularExpression variant(QStringLiteral("^([a-z]+)([1-4])$"));
    const QString lower = name.toLower();
    const QRegularExpressionMatch grayNumber = gray.match(lower);
    if (grayNumber.hasMatch())
        return numberedGray(grayNumber.captured(1).toInt());
    const QRegularExpressionMatch numbered = variant.match(lower);
    if (numbered.hasMatch())
        return numberedVariant(numbered.captured(1), numbered.captured(2).toInt());
    const QColor color = found(names, lower);
    return color.isValid() ? color : qtNamedColor(name);
}
