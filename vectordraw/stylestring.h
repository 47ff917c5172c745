#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

// OGR's style strings ("PEN(c:#FF0000,w:2px);LABEL(t:{NAME})") as plain records. What a string leaves out has
// the default of its record; what cannot be understood is left out, and never an error: style strings come from
// files.

namespace vectordraw
{

struct Color
{
    std::uint8_t red = 0;
    std::uint8_t green = 0;
    std::uint8_t blue = 0;
    std::uint8_t alpha = 255; ///< 0: not drawn at all

    bool operator==(const Color &) const = default;
};

inline constexpr Color noColor{0, 0, 0, 0};

enum class Unit
{
    Pixel,
    Point, ///< 1/72 inch
    Millimetre,
    Centimetre,
    Inch,
    Ground ///< the unit of the picture's coordinates
};

/// A length. Without a unit it is in millimetres, as GDAL's own style tools have it, but for the size of a
/// symbol or of a brush's pattern: there it is a factor of the size that the record has from the start.
struct Length
{
    double value = 0.0;
    Unit unit = Unit::Pixel;

    bool operator==(const Length &) const = default;
};

/// What turns lengths into pixels.
struct Resolution
{
    double dotsPerInch = 96.0;
    double groundPerPixel = 1.0; ///< of the picture's coordinates
};

double pixels(const Length &length, const Resolution &resolution);

enum class Cap
{
    Butt,
    Round,
    Square
};

enum class Join
{
    Miter,
    Round,
    Bevel
};

/// Lines, and the outlines of areas.
struct Pen
{
    Color color;
    Length width{1.0, Unit::Pixel};
    /// Drawn, left out, drawn … along the line; empty: solid. A number without a unit has the unit of the next
    /// number that has one ("24 6 4 6px"), or else of the one before it.
    std::vector<Length> pattern;
    bool patternOfWidths = false; ///< the pattern counts in widths of the pen, at least pixels
    Cap cap = Cap::Butt;
    Join join = Join::Miter;
    Length offset;       ///< of the line drawn, to the right of the line's direction
    bool visible = true; ///< "ogr-pen-1" draws nothing

    bool operator==(const Pen &) const = default;
};

enum class Hatch
{
    Solid,
    None, ///< nothing is filled, whatever the colours
    Horizontal,
    Vertical,
    ForwardDiagonal,  ///< from the upper left to the lower right
    BackwardDiagonal, ///< from the lower left to the upper right
    Cross,
    DiagonalCross
};

/// Areas.
struct Brush
{
    Color foreground{128, 128, 128, 255};
    Color background = noColor; ///< between the lines of a hatch
    Hatch hatch = Hatch::Solid;
    Length size{8.0, Unit::Pixel}; ///< distance of a hatch's lines
    double angle = 0.0;            ///< of the pattern, in degrees, counter-clockwise
    Length spacingX;               ///< added to the distance of the lines
    Length spacingY;

    bool operator==(const Brush &) const = default;
};

enum class Shape
{
    Cross,
    DiagonalCross,
    Circle,
    Square,
    Triangle,
    Star,
    Bar ///< a vertical line
};

/// Points, also along lines and in areas.
struct Symbol
{
    Shape shape = Shape::Cross;
    bool filled = false;
    std::uint32_t glyph = 0; ///< character to draw instead of the shape where the font has it; 0: none
    std::string font;        ///< families of the character, separated by commas
    Color color;
    Color outline = noColor;
    Length size{8.0, Unit::Pixel}; ///< the height
    double angle = 0.0;            ///< in degrees, counter-clockwise
    Length offsetX;                ///< to the right
    Length offsetY;                ///< upwards
    Length step;                   ///< "ds", distance of symbols along a line; 0: one symbol, not turned
    Length initialOffset;          ///< "di", along the line to the first symbol
    Length perpendicular;          ///< "dp", to the right of the line's direction
};

enum class Placement
{
    Point,      ///< at the point, or the line's first vertex
    LastVertex, ///< at the line's last vertex
    Stretched,  ///< its letters evenly along the whole line
    /// At the middle of the line's length, upright. A text on the line itself (an anchor of 4 to 6) keeps the
    /// line's direction, even upside down, and is repeated along a long line (textplaces.h) where no other such
    /// text is near.
    Middle,
    // The last segment of a line that has fewer segments than the text has words takes all that are left.
    WordPerSegment,  ///< a word a segment, in its direction
    HorizontalWords, ///< a word a segment, at its centre, not turned
    StretchedWords   ///< a word a segment, as long as the segment
};

struct LabelText
{
    std::string text; ///< UTF-8, with "{FIELD}" for the value of an attribute
    std::string font = "Sans";
    Length size{12.0, Unit::Point};
    double angle = 0.0;   ///< in degrees, counter-clockwise
    double stretch = 100; ///< width of the letters in percent
    bool bold = false;
    bool italic = false;
    bool underline = false;
    bool strikeout = false;
    Color color;
    Color box = noColor;
    Color outline = noColor;
    Color shadow = noColor;
    int anchor = 1; ///< 1 to 3 base line, 4 to 6 middle, 7 to 9 top, 10 to 12 bottom: left, centre, right
    Placement placement = Placement::Point;
    Length offsetX;       ///< to the right
    Length offsetY;       ///< upwards
    Length perpendicular; ///< to the right of the line's direction
};

using Tool = std::variant<Pen, Brush, Symbol, LabelText>;

/// The tools of a style in the order in which they are drawn: by level, and as they stand within one.
using Style = std::vector<Tool>;

/// Finds the value of a feature's attribute; false where there is no attribute of that name.
using FieldLookup = std::function<bool(std::string_view name, std::string &value)>;

/// A style string that was read.
struct StyleReading
{
    Style style;
    std::string reference;   ///< name of a style of the style table ("@name"); the style is empty then
    int ignored = 0;         ///< tools and parameters that were not understood
    bool usesFields = false; ///< a parameter other than a label's text holds "{FIELD}": the style depends on it
};

/// Reads a style string of any content and length; at most 64 tools of it are taken. fields: replaces "{FIELD}"
/// in every parameter but a label's text; without it such a parameter stands as it is. An attribute's value
/// never ends its parameter, whatever commas or brackets it holds.
StyleReading parseStyle(std::string_view text, const FieldLookup &fields = {});

/// The text of a label with the attributes' values in it, 4096 bytes at most; what names no attribute stands as
/// it is.
std::string expandText(std::string_view text, const FieldLookup &fields);

} // namespace vectordraw
