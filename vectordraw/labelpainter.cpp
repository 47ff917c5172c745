#include "vectordraw/labelpainter.h"

#include "vectordraw/textplaces.h"

#include <pango/pangocairo.h>

#include <memory>
#include <numbers>
#include <optional>
#include <span>
#include <string_view>

namespace vectordraw
{

namespace
{

struct Release
{
    void operator()(PangoLayout *layout) const { g_object_unref(layout); }
    void operator()(PangoFontDescription *font) const { pango_font_description_free(font); }
    void operator()(PangoAttrList *list) const { pango_attr_list_unref(list); }
    void operator()(PangoFont *font) const { g_object_unref(font); }
    void operator()(char *text) const { g_free(text); }
    void operator()(PangoFontFamily **families) const { g_free(families); }
};
using Layout = std::unique_ptr<PangoLayout, Release>;
using FontDescription = std::unique_ptr<PangoFontDescription, Release>;

constexpr double degrees = std::numbers::pi / 180.0;
constexpr std::size_t longestText = 4096; // bytes of one label

double fontSize(const LabelText &label, const Resolution &resolution)
{
    constexpr double smallest = 1.0;
    constexpr double largest = 2000.0;
    return std::clamp(pixels(label.size, resolution), smallest, largest);
}

FontDescription makeFont(const LabelText &label, double size)
{
    FontDescription font(pango_font_description_new());
    pango_font_description_set_family(font.get(), label.font.c_str());
    pango_font_description_set_absolute_size(font.get(), size * PANGO_SCALE);
    pango_font_description_set_weight(font.get(), label.bold ? PANGO_WEIGHT_BOLD : PANGO_WEIGHT_NORMAL);
    pango_font_description_set_style(font.get(), label.italic ? PANGO_STYLE_ITALIC : PANGO_STYLE_NORMAL);
    return font;
}

Layout makeLayout(cairo_t *cairo, const LabelText &label, double size, const std::string &text)
{
    Layout layout(pango_cairo_create_layout(cairo));
    const FontDescription font = makeFont(label, size);
    pango_layout_set_font_description(layout.get(), font.get());
    const std::unique_ptr<PangoAttrList, Release> attributes(pango_attr_list_new());
    if (label.underline)
        pango_attr_list_insert(attributes.get(), pango_attr_underline_new(PANGO_UNDERLINE_SINGLE));
    if (label.strikeout)
        pango_attr_list_insert(attributes.get(), pango_attr_strikethrough_new(TRUE));
    pango_layout_set_attributes(layout.get(), attributes.get());
    const std::unique_ptr<char, Release> valid(
        g_utf8_make_valid(text.data(), static_cast<gssize>(std::min(text.size(), longestText))));
    pango_layout_set_text(layout.get(), valid.get(), -1);
    return layout;
}

struct Extent
{
    double width = 0.0;
    double height = 0.0;
    double baseline = 0.0; ///< below the top
};

Extent extentOf(PangoLayout *layout)
{
    PangoRectangle logical;
    pango_layout_get_extents(layout, nullptr, &logical);
    return {pango_units_to_double(logical.width), pango_units_to_double(logical.height),
            pango_units_to_double(pango_layout_get_baseline(layout))};
}

/// Of the text's upper left corner from its anchor.
Point cornerOf(int anchor, const Extent &extent)
{
    const int column = (anchor - 1) % 3;
    const int row = (anchor - 1) / 3; // base line, middle, top, bottom
    const double y = row == 0 ? -extent.baseline
        : row == 1            ? -extent.height / 2.0
        : row == 2            ? 0.0
                              : -extent.height;
    return {-extent.width * column / 2.0, y};
}

/// Draws the layout at a place of the picture; `wanted` stretches it to that width, in pixels.
class TextDrawing
{
public:
    TextDrawing(Surface &surface, const Resolution &resolution, const LabelText &label)
        : m_cairo(surface.context())
        , m_resolution(resolution)
        , m_label(label)
        , m_size(fontSize(label, resolution))
        , m_perpendicular(pixels(label.perpendicular, resolution))
    { }

    bool readsLeftwards(const std::string &text) const
    {
        return pango_layout_get_direction(makeLayout(m_cairo, m_label, m_size, text).get(), 0)
            == PANGO_DIRECTION_RTL;
    }

    /// In pixels, with the label's own stretch.
    double widthOf(const std::string &text) const
    {
        return extentOf(makeLayout(m_cairo, m_label, m_size, text).get()).width * m_label.stretch / 100.0;
    }

    /// turned: besides the label's own angle, in radians, clockwise. flipped: against the line's direction.
    void draw(const std::string &text, const Point &at, double turned, int anchor, double wanted = 0.0,
              bool flipped = false) const
    {
        const Layout layout = makeLayout(m_cairo, m_label, m_size, text);
        const Extent extent = extentOf(layout.get());
        // A font of a size beyond all bounds would put an end to every drawing of text in the process.
        constexpr double narrowest = 0.05;
        constexpr double widest = 20.0;
        const double stretch =
            std::clamp(wanted > 0.0 && extent.width > 0.0 ? wanted / extent.width : m_label.stretch / 100.0,
                       narrowest, widest);
        const Point corner = cornerOf(anchor, extent);
        cairo_save(m_cairo);
        cairo_translate(m_cairo, at.x + pixels(m_label.offsetX, m_resolution),
                        at.y - pixels(m_label.offsetY, m_resolution));
        cairo_rotate(m_cairo, turned - m_label.angle * degrees);
        cairo_translate(m_cairo, 0.0, flipped ? -m_perpendicular : m_perpendicular);
        cairo_scale(m_cairo, stretch, 1.0);
        cairo_translate(m_cairo, corner.x, corner.y);
        paint(layout.get(), extent);
        cairo_restore(m_cairo);
    }

private:
    void paint(PangoLayout *layout, const Extent &extent) const
    {
        cairo_new_path(m_cairo);
        if (m_label.box.alpha > 0) {
            constexpr double rim = 2.0;
            cairo_rectangle(m_cairo, -rim, -rim, extent.width + 2.0 * rim, extent.height + 2.0 * rim);
            useColor(m_cairo, m_label.box);
            cairo_fill(m_cairo);
        }
        const double thickness = std::max(1.0, m_size / 12.0);
        if (m_label.shadow.alpha > 0) {
            cairo_move_to(m_cairo, thickness, thickness);
            useColor(m_cairo, m_label.shadow);
            pango_cairo_show_layout(m_cairo, layout);
        }
        if (m_label.outline.alpha > 0) {
            cairo_move_to(m_cairo, 0.0, 0.0);
            pango_cairo_layout_path(m_cairo, layout);
            useColor(m_cairo, m_label.outline);
            cairo_set_dash(m_cairo, nullptr, 0, 0.0);
            cairo_set_line_width(m_cairo, 2.0 * thickness);
            cairo_set_line_join(m_cairo, CAIRO_LINE_JOIN_ROUND);
            cairo_stroke(m_cairo);
        }
        cairo_move_to(m_cairo, 0.0, 0.0);
        useColor(m_cairo, m_label.color);
        if (m_label.color.alpha > 0)
            pango_cairo_show_layout(m_cairo, layout);
        cairo_new_path(m_cairo);
    }

    cairo_t *m_cairo;
    const Resolution &m_resolution;
    const LabelText &m_label;
    double m_size;
    double m_perpendicular; ///< to the right of the line's direction, in pixels
};

std::vector<std::string> wordsOf(const std::string &text)
{
    std::vector<std::string> words;
    std::string word;
    for (const char letter : text + ' ') {
        if (letter != ' ') {
            word += letter;
        } else if (!word.empty()) {
            words.push_back(word);
            word.clear();
        }
    }
    return words;
}

/// What a reader takes for one letter each, with its accents.
std::vector<std::string> lettersOf(const std::string &text)
{
    const std::unique_ptr<char, Release> valid(
        g_utf8_make_valid(text.data(), static_cast<gssize>(text.size())));
    const std::string whole(valid.get());
    std::vector<PangoLogAttr> marks(static_cast<std::size_t>(g_utf8_strlen(whole.c_str(), -1)) + 1);
    pango_get_log_attrs(whole.c_str(), static_cast<int>(whole.size()), -1, pango_language_get_default(),
                        marks.data(), static_cast<int>(marks.size()));
    std::vector<std::string> letters;
    const char *at = whole.c_str();
    for (std::size_t index = 0; index + 1 < marks.size(); ++index) {
        const char *next = g_utf8_next_char(at);
        if (marks[index].is_cursor_position || letters.empty())
            letters.emplace_back();
        letters.back().append(at, next);
        at = next;
    }
    return letters;
}

/// Turns a direction so that text along it is not upside down.
double upright(double angle)
{
    constexpr double quarter = std::numbers::pi / 2.0;
    if (angle > quarter)
        return angle - std::numbers::pi;
    return angle < -quarter ? angle + std::numbers::pi : angle;
}

/// Whether the text stands on its line instead of beside it, as the height of a contour line does: it keeps
/// the direction of the line, which says on which side the ground rises.
bool liesOnItsLine(const LabelText &label)
{
    constexpr int firstMiddle = 4;
    constexpr int lastMiddle = 6;
    return label.anchor >= firstMiddle && label.anchor <= lastMiddle;
}

/// The first of the families, separated by commas, that is installed; empty when none is. A family that the
/// system only replaces by another is not: its symbols would become letters.
std::string firstInstalled(PangoContext *context, std::string_view fonts)
{
    PangoFontFamily **list = nullptr;
    int count = 0;
    pango_context_list_families(context, &list, &count);
    const std::unique_ptr<PangoFontFamily *, Release> owner(list);
    while (!fonts.empty()) {
        const auto comma = std::min(fonts.find(','), fonts.size());
        const std::unique_ptr<char, Release> wanted(g_strndup(fonts.data(), comma));
        g_strstrip(wanted.get());
        for (PangoFontFamily *family : std::span(list, static_cast<std::size_t>(count))) {
            if (g_ascii_strcasecmp(pango_font_family_get_name(family), wanted.get()) == 0)
                return wanted.get();
        }
        fonts.remove_prefix(std::min(comma + 1, fonts.size()));
    }
    return {};
}

/// The character as UTF-8; none when the font does not have it. Fonts of symbols have theirs from U+F000 on,
/// and are asked for them by the last byte alone.
std::optional<std::string> characterOf(PangoLayout *layout, const LabelText &label, double size,
                                       std::uint32_t codePoint)
{
    constexpr std::uint32_t symbols = 0xF000;
    constexpr std::uint32_t bytes = 0x100;
    const FontDescription description = makeFont(label, size);
    const std::unique_ptr<PangoFont, Release> font(
        pango_context_load_font(pango_layout_get_context(layout), description.get()));
    for (const std::uint32_t code : {codePoint, codePoint < bytes ? symbols + codePoint : codePoint}) {
        if (font && code != 0 && g_unichar_validate(code) && pango_font_has_char(font.get(), code)) {
            char text[6] = {};
            return std::string(text, static_cast<std::size_t>(g_unichar_to_utf8(code, text)));
        }
    }
    return std::nullopt;
}

void drawStretched(const TextDrawing &drawing, const std::string &text, const std::vector<Point> &line)
{
    constexpr int baseCentre = 2;
    const std::vector<std::string> letters = lettersOf(text);
    const double gap = lengthOf(line) / static_cast<double>(std::max<std::size_t>(letters.size(), 1));
    LineWalk walk(line);
    for (std::size_t at = 0; at < letters.size(); ++at) {
        const Place place = walk.placeAt(gap * (static_cast<double>(at) + 0.5));
        drawing.draw(letters[at], place.point, place.angle, baseCentre);
    }
}

void drawWords(const TextDrawing &drawing, const LabelText &label, const std::string &text,
               std::vector<Point> line)
{
    constexpr int baseLeft = 1;
    line.erase(std::unique(line.begin(), line.end()),
               line.end()); // a segment without a length has room for no word
    std::vector<std::string> words = wordsOf(text);
    if (line.size() < 2) {
        drawing.draw(text, line.front(), 0.0, label.anchor);
        return;
    }
    const std::size_t segments = line.size() - 1;
    for (std::size_t at = segments; at < words.size(); ++at)
        words[segments - 1] += ' ' + words[at];
    words.resize(std::min(words.size(), segments));
    for (std::size_t at = 0; at < words.size(); ++at) {
        const Point &from = line[at];
        const Point &to = line[at + 1];
        const double angle = std::atan2(to.y - from.y, to.x - from.x);
        if (label.placement == Placement::HorizontalWords)
            drawing.draw(words[at], {(from.x + to.x) / 2.0, (from.y + to.y) / 2.0}, 0.0, label.anchor);
        else if (label.placement == Placement::StretchedWords)
            drawing.draw(words[at], from, angle, baseLeft, distance(from, to));
        else
            drawing.draw(words[at], from, angle, label.anchor);
    }
}

} // namespace

void drawLabel(Surface &surface, const Resolution &resolution, const LabelText &label, const std::string &text,
               const std::vector<Point> &line)
{
    if (line.empty() || text.empty())
        return;
    const TextDrawing drawing(surface, resolution, label);
    const std::string shown = text.substr(0, longestText);
    Placement placement =
        line.size() > 1 || label.placement == Placement::LastVertex ? label.placement : Placement::Point;
    // Letters and words of such a text have to stand together to be read: it is placed as a whole.
    const bool letterByLetter = placement != Placement::Point && placement != Placement::LastVertex;
    if (letterByLetter && drawing.readsLeftwards(shown))
        placement = Placement::Middle;
    std::vector<Point> reading = line; // from left to right
    if (letterByLetter && placement != Placement::Middle && line.back().x < line.front().x)
        std::reverse(reading.begin(), reading.end());
    switch (placement) {
    case Placement::Point:
        drawing.draw(shown, line.front(), 0.0, label.anchor);
        break;
    case Placement::LastVertex:
        drawing.draw(shown, line.back(), 0.0, label.anchor);
        break;
    case Placement::Middle: {
        if (liesOnItsLine(label) && !drawing.readsLeftwards(shown)) {
            const Rect seen{0.0, 0.0, static_cast<double>(surface.width()),
                            static_cast<double>(surface.height())};
            const double width = drawing.widthOf(shown);
            for (const TextPlace &at : placesOnLine(line, width, seen)) {
                if (surface.reserve(at.middle, width))
                    drawing.draw(shown, at.middle, at.angle, label.anchor);
            }
            break;
        }
        const Place place = placeAt(line, lengthOf(line) / 2.0);
        const double angle = upright(place.angle);
        drawing.draw(shown, place.point, angle, label.anchor, 0.0, angle != place.angle);
        break;
    }
    case Placement::Stretched:
        drawStretched(drawing, shown, reading);
        break;
    case Placement::WordPerSegment:
    case Placement::HorizontalWords:
    case Placement::StretchedWords:
        drawWords(drawing, label, shown, reading);
        break;
    }
}

bool glyphPath(Surface &surface, const std::string &fonts, std::uint32_t codePoint, double height)
{
    constexpr int centre = 5;
    cairo_t *cairo = surface.context();
    const Layout empty(pango_cairo_create_layout(cairo));
    LabelText label;
    label.font = firstInstalled(pango_layout_get_context(empty.get()), fonts);
    if (label.font.empty())
        return false;
    const double size = std::clamp(height, 1.0, 2000.0);
    const auto character = characterOf(empty.get(), label, size, codePoint);
    if (!character)
        return false;
    const Layout layout = makeLayout(cairo, label, size, *character);
    const Point corner = cornerOf(centre, extentOf(layout.get()));
    cairo_move_to(cairo, corner.x, corner.y);
    pango_cairo_layout_path(cairo, layout.get());
    return true;
}

} // namespace vectordraw
