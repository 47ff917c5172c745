#include "app/preview/map/mapfile.h"

#include <cairo-pdf.h>
#include <cairo-svg.h>
#include <cairo.h>

#include <algorithm>
#include <cmath>
#include <memory>

namespace
{

constexpr double margin = 12.0; // in points

using Surface = std::unique_ptr<cairo_surface_t, decltype(&cairo_surface_destroy)>;
using Context = std::unique_ptr<cairo_t, decltype(&cairo_destroy)>;

cairo_status_t append(void *bytes, const unsigned char *data, unsigned int length)
{
    static_cast<QByteArray *>(bytes)->append(reinterpret_cast<const char *>(data), static_cast<int>(length));
    return CAIRO_STATUS_SUCCESS;
}

void chooseFont(cairo_t *context, bool bold)
{
    cairo_select_font_face(context, "sans", CAIRO_FONT_SLANT_NORMAL,
                           bold ? CAIRO_FONT_WEIGHT_BOLD : CAIRO_FONT_WEIGHT_NORMAL);
    cairo_set_font_size(context, drawingTextSize);
}

double widthOf(cairo_t *context, const QString &text, bool bold)
{
    chooseFont(context, bold);
    cairo_text_extents_t extents;
    cairo_text_extents(context, text.toUtf8().constData(), &extents);
    return extents.x_advance;
}

void setColor(cairo_t *context, const QColor &color)
{
    cairo_set_source_rgba(context, color.redF(), color.greenF(), color.blueF(), color.alphaF());
}

void drawHatch(cairo_t *context, const QRectF &place)
{
    constexpr double step = 5.0;
    cairo_save(context);
    cairo_rectangle(context, place.x(), place.y(), place.width(), place.height());
    cairo_clip(context);
    cairo_set_source_rgb(context, 0.69, 0.25, 0.59); // as voidHatch()
    cairo_set_line_width(context, 0.8);
    const int lines = static_cast<int>((place.width() + place.height()) / step) + 1;
    for (int line = 0; line < lines; ++line) {
        const double x = place.left() - place.height() + line * step;
        cairo_move_to(context, x, place.bottom());
        cairo_line_to(context, x + place.height(), place.top());
    }
    cairo_stroke(context);
    cairo_restore(context);
}

void drawBox(cairo_t *context, const MapDrawing::Box &box)
{
    const auto outline = [&] {
        cairo_rectangle(context, box.place.x(), box.place.y(), box.place.width(), box.place.height());
    };
    if (box.hatched) {
        drawHatch(context, box.place);
    } else {
        setColor(context, box.fill);
        outline();
        cairo_fill(context);
    }
    if (!box.framed)
        return;
    cairo_set_source_rgb(context, 0.4, 0.4, 0.4);
    cairo_set_line_width(context, 0.6);
    outline();
    cairo_stroke(context);
}

void draw(cairo_t *context, const MapDrawing &drawing, const QPointF &place)
{
    cairo_save(context);
    cairo_translate(context, place.x(), place.y());
    for (const MapDrawing::Box &box : drawing.boxes)
        drawBox(context, box);
    for (const MapDrawing::Line &line : drawing.lines) {
        setColor(context, line.color.isValid() ? line.color : QColor(Qt::black));
        cairo_set_line_width(context, line.width);
        for (const QPointF &point : line.points)
            cairo_line_to(context, point.x(), point.y());
        cairo_stroke(context);
    }
    cairo_set_source_rgb(context, 0.0, 0.0, 0.0);
    for (const MapDrawing::Text &text : drawing.texts) {
        const double width = widthOf(context, text.text, text.bold);
        const double left = text.align == Qt::AlignRight ? width
            : text.align == Qt::AlignHCenter             ? width / 2
                                                         : 0.0;
        cairo_move_to(context, text.place.x() - left, text.place.y());
        cairo_show_text(context, text.text.toUtf8().constData());
    }
    cairo_restore(context);
}

void drawPicture(cairo_t *context, const QImage &picture, const QSizeF &size)
{
    QImage pixels = picture.convertToFormat(QImage::Format_ARGB32_Premultiplied);
    const Surface image(cairo_image_surface_create_for_data(pixels.bits(), CAIRO_FORMAT_ARGB32, pixels.width(),
                                                            pixels.height(),
                                                            static_cast<int>(pixels.bytesPerLine())),
                        cairo_surface_destroy);
    cairo_save(context);
    cairo_translate(context, margin, margin);
    cairo_scale(context, size.width() / pixels.width(), size.height() / pixels.height());
    cairo_set_source_surface(context, image.get(), 0.0, 0.0);
    cairo_paint(context);
    cairo_restore(context);
    cairo_set_source_rgb(context, 0.4, 0.4, 0.4);
    cairo_set_line_width(context, 0.6);
    cairo_rectangle(context, margin, margin, size.width(), size.height());
    cairo_stroke(context);
    cairo_surface_flush(cairo_get_target(context)); // a vector surface copies the pixels before they go
}

} // namespace

double pageTextWidth(const QString &text, bool bold)
{
    const Surface surface(cairo_image_surface_create(CAIRO_FORMAT_A8, 1, 1), cairo_surface_destroy);
    const Context context(cairo_create(surface.get()), cairo_destroy);
    return widthOf(context.get(), text, bold);
}

QByteArray mapFile(const MapPage &page, MapFileFormat format)
{
    if (page.picture.isNull() || page.size.isEmpty())
        return {};
    const double width = std::ceil(page.size.width() + page.legend.size.width() + 3 * margin);
    const double height =
        std::ceil(std::max(page.size.height() + page.footer.size.height() + margin, page.legend.size.height())
                  + 2 * margin);
    QByteArray bytes;
    const bool isPng = format == MapFileFormat::Png;
    const Surface surface(isPng ? cairo_image_surface_create(CAIRO_FORMAT_RGB24, qRound(width * page.pixels),
                                                             qRound(height * page.pixels))
                              : format == MapFileFormat::Svg
                              ? cairo_svg_surface_create_for_stream(append, &bytes, width, height)
                              : cairo_pdf_surface_create_for_stream(append, &bytes, width, height),
                          cairo_surface_destroy);
    {
        const Context context(cairo_create(surface.get()), cairo_destroy);
        if (isPng)
            cairo_scale(context.get(), page.pixels, page.pixels);
        cairo_set_source_rgb(context.get(), 1.0, 1.0, 1.0);
        cairo_paint(context.get());
        drawPicture(context.get(), page.picture, page.size);
        draw(context.get(), page.footer, {margin, page.size.height() + 2 * margin});
        draw(context.get(), page.legend, {page.size.width() + 2 * margin, margin});
        if (cairo_status(context.get()) != CAIRO_STATUS_SUCCESS)
            return {};
    }
    if (isPng)
        cairo_surface_write_to_png_stream(surface.get(), append, &bytes);
    cairo_surface_finish(surface.get());
    return cairo_surface_status(surface.get()) == CAIRO_STATUS_SUCCESS ? bytes : QByteArray();
}
