#include "app/run/classlegend.h"

#include "panels/options/valueclasses.h"

#include <QFont>
#include <QFontMetricsF>
#include <QPainter>

#include <algorithm>

namespace
{

// Lengths in points; the picture has `scale` pixels for each.
constexpr double scale = 2.0;
constexpr double margin = 10.0;
constexpr double lineHeight = 22.0;
constexpr double boxWidth = 28.0;
constexpr double boxHeight = 16.0;
constexpr double gap = 9.0;

} // namespace

QImage classLegend(const ClassTable &table)
{
    QFont font;
    font.setPixelSize(13);
    QFont bold = font;
    bold.setBold(true);
    const QVector<ClassRow> rows = classRows(table) + QVector<ClassRow>{{table.voidColor, table.voidText}};
    const QFontMetricsF metrics(font);
    double width = QFontMetricsF(bold).horizontalAdvance(table.title);
    for (const ClassRow &row : rows)
        width = std::max(width, boxWidth + gap + metrics.horizontalAdvance(row.text));
    const QSizeF size(width + 2 * margin, (static_cast<double>(rows.size()) + 1) * lineHeight + 2 * margin);
    QImage picture((size * scale).toSize(), QImage::Format_RGB32);
    picture.fill(Qt::white);
    QPainter painter(&picture);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.scale(scale, scale);
    const auto line = [&](int number) {
        return QRectF(margin, margin + number * lineHeight, width, lineHeight);
    };
    painter.setFont(bold);
    painter.drawText(line(0), Qt::AlignVCenter | Qt::AlignLeft, table.title);
    painter.setFont(font);
    for (int at = 0; at < rows.size(); ++at) {
        const QRectF place = line(at + 1);
        const QRectF box(place.left(), place.center().y() - boxHeight / 2.0, boxWidth, boxHeight);
        painter.setPen(QColor(0x60, 0x60, 0x60));
        painter.setBrush(QColor::fromRgb(rows.at(at).color));
        painter.drawRect(box);
        painter.setPen(Qt::black);
        painter.drawText(place.adjusted(boxWidth + gap, 0.0, 0.0, 0.0), Qt::AlignVCenter | Qt::AlignLeft,
                         rows.at(at).text);
    }
    return picture;
}
