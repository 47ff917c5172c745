#pragma once

#include "app/preview/map/mappicture.h"
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

/// Opens a product in a PreviewDialog, or in another program where this one cannot show its format.
void showProduct(const QString &file, QWidget *parent, const ShellServices &services = desktopServices());

/// Shows a product in a window of its own: a raster in its colours or in grey, a vector file as lines. The
/// visible part is read at the resolution of the screen, so that zooming shows more detail.
class PreviewDialog : public QDialog
{
    Q_OBJECT

public:
    /// `file`: path of the product.
    explicit PreviewDialog(const QString &file, QWidget *parent,
                           const ShellServices &services = desktopServices());
    ~PreviewDialog() override;

    /// Whether the file could be opened as a raster or a vector file. The window is empty otherwise.
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
    void addPicture(const QImage &picture, const QRectF &part);
    void readRaster();
    void beginVector();
    void drawSlice();
    void showReadout(const QPointF &cell);
    QPointF toGround(const QPointF &cell) const;

    std::unique_ptr<Ui::PreviewDialog> m_form;
    QString m_file;
    ShellServices m_services;
    RasterPicture m_raster;
    DemGround m_ground; ///< coordinates of the raster, and the values of its first band
    QImage m_drawn;     ///< the picture that m_vector draws into
    VectorPicture m_vector;
    MapPicture m_map;
    QRectF m_extent;    ///< extent of the vector file in its own coordinates
    QSize m_size;       ///< columns and rows of the raster; a vector file is divided into cells like a raster
    QRectF m_view;      ///< visible part, in cells
    QRectF m_drawnView; ///< part that m_drawn shows, in cells
    QTimer m_pause;     ///< waits for further changes of the view before the file is read
    QTimer m_drawing;   ///< draws the vector file in slices
};
