#include "dataset/vectorpicture.h"

#include "dataset/gdalmessages.h"
#include "dataset/pathencoding.h"
#include "vectordraw/featurelayer.h"

#include <QElapsedTimer>

#include <ogrsf_frmts.h>

#include <optional>

namespace
{

QRectF boxOf(const OGREnvelope &box)
{
    return box.IsInit() ? QRectF(QPointF(box.MinX, box.MinY), QPointF(box.MaxX, box.MaxY)) : QRectF();
}

} // namespace

/// A drawing that is under way.
struct VectorPicture::Drawing
{
    Drawing(QImage &image, const std::array<double, 6> &toGround, double lineWidth)
        : view{image.width(), image.height(), toGround, {}}
        , surface(vectordraw::Surface::onPixels(image.bits(), image.width(), image.height(),
                                                static_cast<int>(image.bytesPerLine())))
        , painter(surface, {96.0, view.groundPerPixel()})
    {
        // No pen is narrower than a pixel: a line that should be is paler instead.
        const int alpha = qRound(0xC0 * qBound(0.0, lineWidth, 1.0));
        styles.lines = QStringLiteral("PEN(c:#8A5A32%1,w:%2px)")
                           .arg(alpha, 2, 16, QLatin1Char('0'))
                           .arg(qMax(1.0, lineWidth), 0, 'f', 2)
                           .toStdString();
    }

    vectordraw::View view;
    vectordraw::Surface surface;
    vectordraw::Painter painter;
    vectordraw::DefaultStyles styles;
    std::optional<vectordraw::FeatureLayer> features;
    std::size_t nextLayer = 0; ///< index of the layer to draw after `features`
};

/// A search for the extent that is under way.
struct VectorPicture::Search
{
    OGREnvelope found;
    std::size_t nextLayer = 0;
    OGRLayer *read = nullptr; ///< the layer whose features are being read
    int featuresRead = 0;     ///< of that layer
};

VectorPicture::VectorPicture() = default;

VectorPicture::VectorPicture(const QString &path, const QString &layer)
    : m_search(std::make_unique<Search>())
{
    const GdalMessages messages;
    m_dataset.reset(GDALDataset::Open(encodePath(path).constData(), GDAL_OF_VECTOR));
    for (int index = 0; m_dataset && index < m_dataset->GetLayerCount(); ++index) {
        OGRLayer *one = m_dataset->GetLayer(index);
        if (layer.isEmpty() || layer == QString::fromUtf8(one->GetName()))
            m_layers.push_back(one);
    }
}

VectorPicture::~VectorPicture() = default;
VectorPicture::VectorPicture(VectorPicture &&) noexcept = default;
VectorPicture &VectorPicture::operator=(VectorPicture &&) noexcept = default;

QRectF VectorPicture::extent() const
{
    OGREnvelope all;
    for (OGRLayer *layer : m_layers) {
        OGREnvelope one;
        if (layer->GetExtent(&one) == OGRERR_NONE)
            all.Merge(one);
    }
    return boxOf(all);
}

QRectF VectorPicture::foundExtent() const
{
    return m_search ? boxOf(m_search->found) : QRectF();
}

bool VectorPicture::findExtent(int milliseconds)
{
    constexpr int mostFeatures = 200000;
    constexpr int evenIfAllMustBeRead = FALSE;
    const GdalMessages messages;
    QElapsedTimer timer;
    timer.start();
    do {
        if (!m_search->read) {
            if (m_search->nextLayer >= m_layers.size())
                return false;
            OGRLayer *layer = m_layers[m_search->nextLayer++];
            OGREnvelope one;
            if (layer->GetExtent(&one, evenIfAllMustBeRead) == OGRERR_NONE) {
                m_search->found.Merge(one);
                continue;
            }
            layer->ResetReading();
            m_search->read = layer;
            m_search->featuresRead = 0;
        }
        const OGRFeatureUniquePtr feature(m_search->read->GetNextFeature());
        if (!feature || ++m_search->featuresRead >= mostFeatures)
            m_search->read = nullptr;
        const OGRGeometry *geometry = feature ? feature->GetGeometryRef() : nullptr;
        if (geometry && !geometry->IsEmpty()) {
            OGREnvelope one;
            geometry->getEnvelope(&one);
            m_search->found.Merge(one);
        }
    } while (timer.elapsed() < milliseconds);
    return true;
}

void VectorPicture::begin(QImage &picture, const std::array<double, 6> &toGround, double lineWidth)
{
    m_drawing = m_dataset ? std::make_unique<Drawing>(picture, toGround, lineWidth) : nullptr;
}

int VectorPicture::percent() const
{
    if (!m_drawing)
        return 100;
    const long long total = m_drawing->features ? m_drawing->features->total() : 0;
    return total > 0 ? static_cast<int>(100 * m_drawing->features->count() / total) : 0;
}

bool VectorPicture::advance(int milliseconds)
{
    constexpr long long portion = 10000; // vertices, a fraction of a millisecond
    const GdalMessages messages;
    QElapsedTimer timer;
    timer.start();
    while (m_drawing && timer.elapsed() < milliseconds) {
        if (m_drawing->features && m_drawing->features->drawNext(portion))
            continue;
        m_drawing->features.reset();
        if (m_drawing->nextLayer < m_layers.size()) {
            m_drawing->features.emplace(*m_layers[m_drawing->nextLayer++], m_drawing->view, m_drawing->painter,
                                        m_drawing->styles, m_dataset->GetStyleTable(),
                                        vectordraw::FeatureReader::Spread);
        } else {
            m_drawing->surface.flush();
            m_drawing.reset();
        }
    }
    return m_drawing != nullptr;
}
