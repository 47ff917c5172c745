#pragma once

#include <QColor>
#include <QStringList>

#include <optional>

/// In which numbers a GMT colour palette table writes its colours.
enum class CptModel
{
    Unknown, ///< the file does not say; numbers are red, green and blue
    Rgb,     ///< 0 to 255
    Hsv,     ///< degrees, then 0 to 1
    Cmyk     ///< 0 to 100
};

/// A colour of a GMT colour palette table.
struct CptColor
{
    QColor color;            ///< transparent for "-", which paints nothing
    bool isDash = false;     ///< the colour is "-"
    bool isHsv = false;      ///< hue, saturation and value are known
    bool isHyphened = false; ///< written as "h-s-v", of which GMT mixes hue, saturation and value
    bool isRgb = false;      ///< three numbers read as red, green and blue
    double parts[3] = {};    ///< the three numbers of isHsv or isRgb
};

/// Reads a colour: one field ("r/g/b", "h-s-v", "c/m/y/k", a grey, a name, "#rrggbb", "-", each but "-" also
/// with
/// "@transparency" in percent), or three or four fields of numbers. Nothing when the fields are no colour.
std::optional<CptColor> readCptColor(const QStringList &fields, CptModel model);
