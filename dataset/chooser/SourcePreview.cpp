#include "dataset/chooser/SourcePreview.h"

#include "dataset/elevationgrid.h"
#include "dataset/elevationpicture.h"
#include "dataset/vectorpicture.h"

#include <QPainter>

namespace
{

constexpr int sliceLength = 30;  // ms
constexpr int pictureSide = 384; // pixels, the longer side

} // namespace

SourcePreview::SourcePreview(QWidget *parent)
    : QWidget(parent)
{
    connect(&m_timer, &QTimer::timeout, this, &SourcePreview::advance);
}

SourcePreview::~SourcePreview() = default;

void SourcePreview::clear()
{
    m_timer.stop();
    m_sampler.reset();
    m_layer.reset();
    m_isDrawing = false;
    m_picture = {};
    update();
}

void SourcePreview::showBand(const QString &name, int band)
{
    clear();
    m_sampler = std::make_unique<ElevationGridReader>(name, band, pictureSide);
    m_shape = m_sampler->bandSize();
    m_timer.start(0);
}

void SourcePreview::showLayer(const QString &name, const QString &layer)
{
    clear();
    m_layer = std::make_unique<VectorPicture>(name, layer);
    m_timer.start(0);
}

void SourcePreview::advance()
{
    if (m_sampler)
        advanceBand();
    else
        advanceLayer();
    update();
}

void SourcePreview::advanceBand()
{
    const bool hasMore = m_sampler->advance(sliceLength);
    m_picture = elevationPicture(m_sampler->grid());
    if (hasMore)
        return;
    finish(sampleFacts(summaryOf(m_sampler->grid()), m_sampler->isWhole(), m_sampler->problem()));
}

void SourcePreview::advanceLayer()
{
    if (!m_isDrawing) {
        if (m_layer->findExtent(sliceLength))
            return;
        beginDrawing();
    }
    if (!m_layer->advance(sliceLength))
        finish({});
}

/// Prepares a picture of the layer's extent, with a margin for the symbols of points.
void SourcePreview::beginDrawing()
{
    constexpr double margin = 0.05;
    QRectF extent = m_layer->foundExtent();
    const double longest = std::max({extent.width(), extent.height(), 1e-9});
    const double border = longest * margin;
    extent.adjust(-border, -border, border, border);
    const double pixel = longest * (1.0 + 2.0 * margin) / pictureSide;
    m_shape = extent.size();
    m_picture = QImage(std::max(1, qRound(extent.width() / pixel)),
                       std::max(1, qRound(extent.height() / pixel)), QImage::Format_ARGB32_Premultiplied);
    m_picture.fill(Qt::transparent);
    m_layer->begin(m_picture, {extent.left(), pixel, 0.0, extent.bottom(), 0.0, -pixel}, 1.0);
    m_isDrawing = true;
}

void SourcePreview::finish(const QVector<SourceFact> &seen)
{
    m_timer.stop();
    m_sampler.reset();
    m_layer.reset();
    emit described(seen);
}

void SourcePreview::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    painter.fillRect(rect(), palette().color(QPalette::Base));
    if (m_picture.isNull() || m_shape.isEmpty())
        return;
    QRectF target({}, m_shape.scaled(size(), Qt::KeepAspectRatio));
    target.moveCenter(QRectF(rect()).center());
    painter.setRenderHint(QPainter::SmoothPixmapTransform);
    painter.drawImage(target, m_picture);
}
