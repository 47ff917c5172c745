#include "vectordraw/stylestring.h"

#include <algorithm>
#include <array>
#include <cctype>
#include <charconv>
#include <cmath>
#include <optional>
#include <utility>

namespace vectordraw
{

namespace
{

constexpr std::size_t mostTools = 64;
constexpr std::size_t mostDashes = 32;
constexpr double largestLength = 1e9;

struct Parameter
{
    std::string key;   ///< in lower case
    std::string value; ///< without its quotes, with the attributes' values in it
};

struct ToolText
{
    std::string_view name;
    std::vector<Parameter> parameters;
    double level = 1.0;
};

std::string_view trimmed(std::string_view text)
{
    while (!text.empty() && std::isspace(static_cast<unsigned char>(text.front())))
        text.remove_prefix(1);
    while (!text.empty() && std::isspace(static_cast<unsigned char>(text.back())))
        text.remove_suffix(1);
    return text;
}

bool equalsIgnoringCase(std::string_view one, std::string_view other)
{
    return std::equal(one.begin(), one.end(), other.begin(), other.end(),
                      [](unsigned char a, unsigned char b) { return std::tolower(a) == std::tolower(b); });
}

/// The number at the start of the text, which loses it; none for what is no number, or no finite one.
std::optional<double> takeNumber(std::string_view &text)
{
    text = trimmed(text);
    if (!text.empty() && text.front() == '+')
        text.remove_prefix(1);
    double number = 0.0;
    const auto [end, fault] = std::from_chars(text.data(), text.data() + text.size(), number);
    if (fault != std::errc() || !std::isfinite(number))
        return std::nullopt;
    text.remove_prefix(static_cast<std::size_t>(end - text.data()));
    return std::clamp(number, -largestLength, largestLength);
}

std::optional<double> number(std::string_view text)
{
    return takeNumber(text);
}

/// The unit at the start of the text, which loses it; none, and the text as it was, where there is none.
std::optional<Unit> takeUnit(std::string_view &text)
{
    static constexpr std::pair<std::string_view, Unit> units[] = {
        {"px", Unit::Pixel},      {"pt", Unit::Point}, {"mm", Unit::Millimetre},
        {"cm", Unit::Centimetre}, {"in", Unit::Inch},  {"g", Unit::Ground}};
    const std::string_view behind =
        trimmed(text); // "4 px" has a unit, too; in "4 5px" the 4 has none of its own
    for (const auto &[name, unit] : units) {
        if (equalsIgnoringCase(behind.substr(0, name.size()), name)) {
            text = behind.substr(name.size());
            return unit;
        }
    }
    return std::nullopt;
}

std::optional<Length> length(std::string_view text)
{
    const auto value = takeNumber(text);
    return value ? std::optional(Length{*value, takeUnit(text).value_or(Unit::Millimetre)}) : std::nullopt;
}

/// A size, or without a unit a factor of the usual one.
std::optional<Length> sizeOrFactor(std::string_view text, const Length &usual)
{
    const auto value = takeNumber(text);
    if (!value)
        return std::nullopt;
    const auto unit = takeUnit(text);
    return unit ? Length{*value, *unit} : Length{*value * usual.value, usual.unit};
}

std::optional<Color> color(std::string_view text)
{
    text = trimmed(text);
    if ((text.size() != 7 && text.size() != 9) || text.front() != '#')
        return std::nullopt;
    std::array<std::uint8_t, 4> parts{0, 0, 0, 255};
    for (std::size_t at = 0; 2 * at + 1 < text.size(); ++at) {
        const char *first = text.data() + 1 + 2 * at;
        const auto [end, fault] = std::from_chars(first, first + 2, parts.at(at), 16);
        if (fault != std::errc() || end != first + 2)
            return std::nullopt;
    }
    return Color{parts[0], parts[1], parts[2], parts[3]};
}

std::optional<bool> flag(std::string_view text)
{
    const auto value = number(text);
    return value ? std::optional<bool>(*value != 0.0) : std::nullopt;
}

/// The number behind the prefix of an identifier ("ogr-pen-2"); none for one of another kind, or a number that
/// is not below the limit.
std::optional<unsigned> identifier(std::string_view name, std::string_view prefix, unsigned limit)
{
    if (!equalsIgnoringCase(name.substr(0, prefix.size()), prefix))
        return std::nullopt;
    name.remove_prefix(prefix.size());
    unsigned value = 0;
    const auto [last, fault] = std::from_chars(name.data(), name.data() + name.size(), value);
    const bool whole = fault == std::errc() && last == name.data() + name.size();
    return whole && value < limit ? std::optional(value) : std::nullopt;
}

/// Hands the identifiers of a list to take(), up to the first that it takes; false when it takes none.
template <class Take> bool takeFirst(std::string_view list, Take take)
{
    while (!list.empty()) {
        const auto comma = list.find(',');
        if (take(trimmed(list.substr(0, comma))))
            return true;
        list.remove_prefix(comma == std::string_view::npos ? list.size() : comma + 1);
    }
    return false;
}

/// Sets the member where the value was understood.
template <class Value, class Member> bool take(const std::optional<Value> &value, Member &member)
{
    if (value)
        member = static_cast<Member>(*value);
    return value.has_value();
}

bool takePattern(Pen &pen, std::string_view text)
{
    std::vector<std::pair<double, std::optional<Unit>>> dashes;
    while (!trimmed(text).empty() && dashes.size() < mostDashes) {
        const auto dash = takeNumber(text);
        if (!dash || *dash < 0.0)
            return false;
        dashes.emplace_back(*dash, takeUnit(text));
    }
    if (std::none_of(dashes.begin(), dashes.end(), [](const auto &dash) { return dash.first > 0.0; }))
        return false;
    Unit unit = Unit::Millimetre;
    for (const auto &dash : dashes)
        unit = dash.second.value_or(unit);
    pen.pattern.resize(dashes.size());
    for (std::size_t at = dashes.size();
         at-- > 0;) { // from the end: the unit of several numbers is at the last
        unit = dashes[at].second.value_or(unit);
        pen.pattern[at] = {dashes[at].first, unit};
    }
    pen.patternOfWidths = false;
    return true;
}

bool takePenId(Pen &pen, std::string_view list)
{
    static const std::vector<double> patterns[] = {
        {}, {}, {6, 3}, {3, 3}, {12, 4}, {1, 2}, {6, 3, 1, 3}, {6, 3, 1, 3, 1, 3}, {1, 1}};
    return takeFirst(list, [&](std::string_view name) {
        const auto id = identifier(name, "ogr-pen-", std::size(patterns));
        if (!id)
            return false;
        pen.visible = *id != 1;
        if (pen.pattern.empty()) { // one that is spelled out goes before the identifier's
            for (const double dash : patterns[*id])
                pen.pattern.push_back({dash, Unit::Pixel});
            pen.patternOfWidths = true;
        }
        return true;
    });
}

/// Sets the member to the value whose letter was given.
template <class Member> bool takeLetter(std::string_view letters, std::string_view value, Member &member)
{
    const auto at = value.size() == 1
        ? letters.find(static_cast<char>(std::tolower(static_cast<unsigned char>(value.front()))))
        : std::string_view::npos;
    if (at == std::string_view::npos)
        return false;
    member = static_cast<Member>(at);
    return true;
}

bool takeParameter(Pen &pen, const Parameter &given)
{
    if (given.key == "c")
        return take(color(given.value), pen.color);
    if (given.key == "w")
        return take(length(given.value), pen.width);
    if (given.key == "p")
        return takePattern(pen, given.value);
    if (given.key == "id")
        return takePenId(pen, given.value);
    if (given.key == "dp")
        return take(length(given.value), pen.offset);
    if (given.key == "cap")
        return takeLetter("brp", given.value, pen.cap);
    if (given.key == "j")
        return takeLetter("mrb", given.value, pen.join);
    return false;
}

bool takeParameter(Brush &brush, const Parameter &given)
{
    if (given.key == "fc")
        return take(color(given.value), brush.foreground);
    if (given.key == "bc")
        return take(color(given.value), brush.background);
    if (given.key == "a")
        return take(number(given.value), brush.angle);
    if (given.key == "s")
        return take(sizeOrFactor(given.value, Brush().size), brush.size);
    if (given.key == "dx")
        return take(length(given.value), brush.spacingX);
    if (given.key == "dy")
        return take(length(given.value), brush.spacingY);
    if (given.key == "id") {
        constexpr unsigned hatches = static_cast<unsigned>(Hatch::DiagonalCross) + 1;
        return takeFirst(given.value, [&](std::string_view name) {
            return take(identifier(name, "ogr-brush-", hatches), brush.hatch);
        });
    }
    return false;
}

bool takeSymbolId(Symbol &symbol, std::string_view list)
{
    static constexpr std::pair<Shape, bool> shapes[] = {{Shape::Cross, false},    {Shape::DiagonalCross, false},
                                                        {Shape::Circle, false},   {Shape::Circle, true},
                                                        {Shape::Square, false},   {Shape::Square, true},
                                                        {Shape::Triangle, false}, {Shape::Triangle, true},
                                                        {Shape::Star, false},     {Shape::Star, true},
                                                        {Shape::Bar, false}};
    constexpr unsigned codePoints = 0x110000;
    symbol.glyph = 0;
    const bool shape = takeFirst(list, [&](std::string_view name) {
        // A character needs its font: what comes behind it in the list is kept for where that is missing.
        if (symbol.glyph == 0)
            symbol.glyph = identifier(name, "font-sym-", codePoints).value_or(0);
        const auto id = identifier(name, "ogr-sym-", std::size(shapes));
        if (id)
            std::tie(symbol.shape, symbol.filled) = shapes[*id];
        return id.has_value();
    });
    return shape || symbol.glyph != 0;
}

bool takeParameter(Symbol &symbol, const Parameter &given)
{
    if (given.key == "id")
        return takeSymbolId(symbol, given.value);
    if (given.key == "c")
        return take(color(given.value), symbol.color);
    if (given.key == "o")
        return take(color(given.value), symbol.outline);
    if (given.key == "s")
        return take(sizeOrFactor(given.value, Symbol().size), symbol.size);
    if (given.key == "a")
        return take(number(given.value), symbol.angle);
    if (given.key == "f") {
        symbol.font = given.value;
        return !given.value.empty();
    }
    static constexpr std::pair<std::string_view, Length Symbol::*> lengths[] = {{"dx", &Symbol::offsetX},
                                                                                {"dy", &Symbol::offsetY},
                                                                                {"ds", &Symbol::step},
                                                                                {"di", &Symbol::initialOffset},
                                                                                {"dp", &Symbol::perpendicular}};
    for (const auto &[key, member] : lengths) {
        if (given.key == key)
            return take(length(given.value), symbol.*member);
    }
    return false;
}

bool takeParameter(LabelText &label, const Parameter &given)
{
    static constexpr std::pair<std::string_view, Color LabelText::*> colors[] = {{"c", &LabelText::color},
                                                                                 {"b", &LabelText::box},
                                                                                 {"o", &LabelText::outline},
                                                                                 {"h", &LabelText::shadow}};
    static constexpr std::pair<std::string_view, bool LabelText::*> flags[] = {{"bo", &LabelText::bold},
                                                                               {"it", &LabelText::italic},
                                                                               {"un", &LabelText::underline},
                                                                               {"st", &LabelText::strikeout}};
    static constexpr std::pair<std::string_view, Length LabelText::*> lengths[] = {
        {"s", &LabelText::size},
        {"dx", &LabelText::offsetX},
        {"dy", &LabelText::offsetY},
        {"dp", &LabelText::perpendicular}};
    for (const auto &[key, member] : colors) {
        if (given.key == key)
            return take(color(given.value), label.*member);
    }
    for (const auto &[key, member] : flags) {
        if (given.key == key)
            return take(flag(given.value), label.*member);
    }
    for (const auto &[key, member] : lengths) {
        if (given.key == key)
            return take(length(given.value), label.*member);
    }
    if (given.key == "t" || given.key == "f") {
        (given.key == "t" ? label.text : label.font) = given.value;
        return !given.value.empty();
    }
    if (given.key == "a")
        return take(number(given.value), label.angle);
    if (given.key == "w") {
        const auto stretch = number(given.value);
        return stretch && *stretch > 0.0 && take(stretch, label.stretch);
    }
    if (given.key == "m")
        return takeLetter("plsmwha", given.value, label.placement);
    if (given.key == "p") {
        const auto anchor = number(given.value);
        return anchor && *anchor >= 1.0 && *anchor <= 12.0 && take(anchor, label.anchor);
    }
    return false;
}

/// Takes a value up to the comma or bracket that ends it; quoted ones may hold both, and quotes behind a
/// backslash.
std::string takeValue(std::string_view &text)
{
    std::string value;
    text = trimmed(text);
    if (text.empty() || text.front() != '"') {
        const auto end = std::min(text.find_first_of(",)"), text.size());
        value = trimmed(text.substr(0, end));
        text.remove_prefix(end);
        return value;
    }
    std::size_t at = 1;
    for (; at < text.size() && text[at] != '"'; ++at) {
        if (text[at] == '\\' && at + 1 < text.size() && (text[at + 1] == '"' || text[at + 1] == '\\'))
            ++at;
        value += text[at];
    }
    text.remove_prefix(std::min(at + 1, text.size()));
    return value;
}

std::string lowered(std::string_view text)
{
    std::string lower(text);
    for (char &letter : lower)
        letter = static_cast<char>(std::tolower(static_cast<unsigned char>(letter)));
    return lower;
}

/// Takes "NAME(key:value,…)" and the semicolon behind it.
ToolText takeTool(std::string_view &text, const FieldLookup &fields, StyleReading &reading)
{
    ToolText tool;
    const auto bracket = text.find_first_of("(;");
    tool.name = trimmed(text.substr(0, bracket));
    text.remove_prefix(std::min(bracket, text.size()));
    if (!text.empty() && text.front() == '(') {
        text.remove_prefix(1);
        while (!text.empty() && text.front() != ')') {
            const auto colon = text.find_first_of(":,)");
            Parameter parameter;
            parameter.key = lowered(trimmed(text.substr(0, colon)));
            text.remove_prefix(std::min(colon, text.size()));
            if (!text.empty() && text.front() == ':') {
                text.remove_prefix(1);
                parameter.value = takeValue(text);
                const bool labelText = parameter.key == "t" && equalsIgnoringCase(tool.name, "LABEL");
                if (!labelText && parameter.value.find('{') != std::string::npos) {
                    reading.usesFields = true;
                    if (fields)
                        parameter.value = expandText(parameter.value, fields);
                }
                if (parameter.key == "l")
                    tool.level = number(parameter.value).value_or(1.0);
                else
                    tool.parameters.push_back(std::move(parameter));
            } else if (!parameter.key.empty()) {
                ++reading.ignored;
            }
            const auto next = text.find_first_of(",)");
            text.remove_prefix(std::min(next, text.size()));
            if (!text.empty() && text.front() == ',')
                text.remove_prefix(1);
        }
    }
    const auto end = text.find(';');
    text.remove_prefix(end == std::string_view::npos ? text.size() : end + 1);
    return tool;
}

template <class Record> Tool readTool(const ToolText &text, int &ignored)
{
    Record record;
    for (const Parameter &parameter : text.parameters)
        ignored += !takeParameter(record, parameter);
    return record;
}

} // namespace

double pixels(const Length &length, const Resolution &resolution)
{
    constexpr double pointsPerInch = 72.0;
    constexpr double millimetresPerInch = 25.4;
    switch (length.unit) {
    case Unit::Pixel:
        return length.value;
    case Unit::Point:
        return length.value * resolution.dotsPerInch / pointsPerInch;
    case Unit::Millimetre:
        return length.value * resolution.dotsPerInch / millimetresPerInch;
    case Unit::Centimetre:
        return length.value * resolution.dotsPerInch / millimetresPerInch * 10.0;
    case Unit::Inch:
        return length.value * resolution.dotsPerInch;
    case Unit::Ground:
        return length.value / resolution.groundPerPixel;
    }
    return length.value;
}

StyleReading parseStyle(std::string_view text, const FieldLookup &fields)
{
    StyleReading reading;
    text = trimmed(text);
    if (!text.empty() && text.front() == '@') {
        reading.reference = trimmed(text.substr(1, text.find(';') - 1));
        return reading;
    }
    std::vector<std::pair<double, Tool>> tools;
    while (!text.empty() && tools.size() < mostTools) {
        const ToolText tool = takeTool(text, fields, reading);
        if (equalsIgnoringCase(tool.name, "PEN"))
            tools.emplace_back(tool.level, readTool<Pen>(tool, reading.ignored));
        else if (equalsIgnoringCase(tool.name, "BRUSH"))
            tools.emplace_back(tool.level, readTool<Brush>(tool, reading.ignored));
        else if (equalsIgnoringCase(tool.name, "SYMBOL"))
            tools.emplace_back(tool.level, readTool<Symbol>(tool, reading.ignored));
        else if (equalsIgnoringCase(tool.name, "LABEL"))
            tools.emplace_back(tool.level, readTool<LabelText>(tool, reading.ignored));
        else if (!tool.name.empty())
            ++reading.ignored;
    }
    std::stable_sort(tools.begin(), tools.end(),
                     [](const auto &one, const auto &other) { return one.first < other.first; });
    for (auto &tool : tools)
        reading.style.push_back(std::move(tool.second));
    return reading;
}

std::string expandText(std::string_view text, const FieldLookup &fields)
{
    constexpr std::size_t longest = 4096; // bytes of one label; more cannot be read in a picture
    std::string expanded;
    while (!text.empty() && expanded.size() < longest) {
        const auto open = text.find('{');
        const auto close = open == std::string_view::npos ? open : text.find('}', open);
        if (close == std::string_view::npos)
            break;
        expanded += text.substr(0, open);
        std::string value;
        if (fields(text.substr(open + 1, close - open - 1), value))
            expanded += value;
        else
            expanded += text.substr(open, close - open + 1);
        text.remove_prefix(close + 1);
    }
    if (expanded.size() < longest)
        expanded.append(text);
    return expanded.substr(0, longest);
}

} // namespace vectordraw
