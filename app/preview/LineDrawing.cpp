#include "app/preview/LineDrawing.h"

LineDrawing::LineDrawing(QObject *parent)
    : QObject(parent)
{
    connect(&m_slices, &QTimer::timeout, this, &LineDrawing::advance);
}

bool LineDrawing::begin(const QString &file, const QSize &pixels, const std::array<double, 6> &toGround,
                        double lineWidth)
{
    stop();
    m_lines = VectorPicture(file);
    if (!m_lines.isOpen())
        return false;
    m_picture = QImage(pixels, QImage::Format_ARGB32_Premultiplied);
    m_picture.fill(Qt::transparent);
    m_lines.begin(m_picture, toGround, lineWidth);
    m_slices.start(0);
    return true;
}

bool LineDrawing::stop()
{
    const bool wasDrawing = m_slices.isActive();
    m_slices.stop();
    return wasDrawing;
}

void LineDrawing::advance()
{
    constexpr int slice = 25; // ms
    const bool hasMore = m_lines.advance(slice);
    if (!hasMore)
        stop();
    emit drawn(m_picture.copy(), hasMore ? m_lines.percent() : -1);
}
