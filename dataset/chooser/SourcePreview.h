#pragma once

#include "dataset/chooser/sourcetexts.h"

#include <QImage>
#include <QSizeF>
#include <QTimer>
#include <QWidget>

#include <memory>

class ElevationGridReader;
class VectorPicture;

/// A picture of a band or of a vector layer, which is read in slices of the event loop while it is shown.
class SourcePreview : public QWidget
{
    Q_OBJECT

public:
    explicit SourcePreview(QWidget *parent = nullptr);
    ~SourcePreview() override;

    /// Starts a picture, which replaces the one before; described() follows once from the event loop.
    /// name: as GDAL opens it. band: from 1.
    void showBand(const QString &name, int band);
    void showLayer(const QString &name, const QString &layer);

    /// Shows nothing; no signal follows.
    void clear();

    /// Whether a picture is being read.
    bool isBusy() const { return m_timer.isActive(); }

    QSize sizeHint() const override { return {260, 260}; }
    QSize minimumSizeHint() const override { return {100, 80}; }

signals:
    /// The picture is complete. seen: what its cells say of the band, or why there is no picture; empty for a
    /// layer.
    void described(const QVector<SourceFact> &seen);

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    void advance();
    void advanceBand();
    void advanceLayer();
    void beginDrawing();
    void finish(const QVector<SourceFact> &seen);

    QTimer m_timer;
    std::unique_ptr<ElevationGridReader> m_sampler;
    std::unique_ptr<VectorPicture> m_layer;
    bool m_isDrawing = false; ///< of a layer: its extent is known
    QImage m_picture;
    QSizeF m_shape; ///< proportions of the picture
};
