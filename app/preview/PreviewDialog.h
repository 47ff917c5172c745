#pragma once

#include "dataset/demground.h"
#include "dataset/rasterpicture.h"
#include "dataset/vectorpicture.h"
#include "runner/shellhelpers.h"

#include <QDialog>
#include <QImage>
#include <QTimer>

#include <memory>

namespace Ui
{
class PreviewDialog;
}

/// A product, large: a raster in its colours or in grey, a vector file as lines. The part that is seen is read
/// at the resolution of the screen, so that zooming shows more.
class PreviewDialog : public QDialog
{
    Q_OBJECT

public:
    explicit PreviewDialog(const QString &file, QWidget *parent,
                           const ShellServices &services = desktopServices());
    ~PreviewDialog() override;

    /// Whether the file is something to look at.
    bool canShow() const { return m_raster.isOpen() || m_vector.isOpen(); }

public slots:
    void slot_zoomIn();
    void slot_zoomOut();
    void slot_showWhole();
    void slot_openWith();

protected:
    void resizeEvent(QResizeEvent *event) override;

private:
    void setView(const QRectF &view);
    void read();
    void readRaster();
    void beginVector();
    void drawOn();
    void showReadout(const QPointF &cell);
    QPointF toGround(const QPointF &cell) const;

    std::unique_ptr<Ui::PreviewDialog> m_form;
    QString m_file;
    ShellServices m_services;
    RasterPicture m_raster;
    DemGround m_ground; ///< of a raster of one band, whose values are told
    QImage m_drawn;     ///< what the vector file is drawn into; it outlives the drawing
    VectorPicture m_vector;
    QRectF m_extent; ///< of the vector file, on the ground
    QSize m_size;    ///< cells of the raster; a vector file has as many as a large screen
    QRectF m_view;
    QRectF m_drawnView;
    QTimer m_pause;
    QTimer m_drawing;
};
