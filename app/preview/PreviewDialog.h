#pragma once

#include "app/preview/ProductReading.h"
#include "app/preview/map/mapfile.h"
#include "runner/shellhelpers.h"

#include <QDialog>
#include <QTimer>

#include <memory>
#include <optional>

namespace Ui
{
class PreviewDialog;
}

/// Opens a product in a PreviewDialog, or in another program where this one cannot show its format.
void showProduct(const QString &file, const std::optional<ProductSource> &source, QWidget *parent,
                 const ShellServices &services = desktopServices());

/// Shows a finished product in a window of its own, as the map of the main dialog does: over the relief of its
/// DEM, with its legend. The visible part is read at the resolution of the screen, so that zooming shows more
/// detail.
class PreviewDialog : public QDialog
{
    Q_OBJECT

public:
    /// `file`: path of the product. `source`: empty where nothing is known of it.
    PreviewDialog(const QString &file, const std::optional<ProductSource> &source, QWidget *parent,
                  const ShellServices &services = desktopServices());
    ~PreviewDialog() override;

    /// Whether the file could be opened as a raster or a vector file. The window is empty otherwise.
    bool canShow() const { return m_reading.isOpen(); }

public slots:
    void slot_openWith();
    void slot_copyPicture();
    void slot_savePicture();

protected:
    void resizeEvent(QResizeEvent *event) override;

private:
    void connectBar();
    void setView(const QRectF &view);
    void beginReading();
    void readSlice();
    void showMap();
    void showReadout(const QPointF &cell);
    MapPage page();

    std::unique_ptr<Ui::PreviewDialog> m_form;
    QString m_file;
    ShellServices m_services;
    ProductReading m_reading;
    MapPicture m_map;
    QRectF m_view;   ///< visible part, in cells
    QTimer m_pause;  ///< waits for further changes of the view before the file is read
    QTimer m_slices; ///< reads the file in slices
};
