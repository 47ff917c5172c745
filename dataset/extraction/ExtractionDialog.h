#pragma once

#include "dataset/demground.h"
#include "dataset/elevationgrid.h"
#include "dataset/extraction/cellrect.h"

#include <QDialog>
#include <QRect>
#include <QTimer>

#include <memory>
#include <optional>

namespace Ui
{
class ExtractionDialog;
}

/// Lets the user choose the part of a DEM that a run reads: dragged over a picture of it, typed in cells or in
/// coordinates, or taken from the extent of a vector file. The picture is read in slices while the dialog is
/// open.
class ExtractionDialog : public QDialog
{
    Q_OBJECT

public:
    /// `dem`: path as GDAL opens it; `band`: from 1. Begins with the rectangle `cells`, limited to the DEM, or
    /// with the whole DEM where there is none. Of a DEM that cannot be opened nothing can be chosen.
    ExtractionDialog(const QString &dem, int band, const std::optional<QRect> &cells, QWidget *parent);
    ~ExtractionDialog() override;

    /// The rectangle of cells, columns and rows counted from the upper left corner of the file; nothing for the
    /// whole DEM. Never empty.
    std::optional<QRect> cells() const;

public slots:
    void slot_showWhole();
    /// Takes the extent of a vector file that the user selects, with the margin. A file without an extent on
    /// the DEM changes nothing; a warning says why.
    void slot_takeVectorExtent();

protected:
    /// Return takes the value of a field; a QDialog would also close.
    void keyPressEvent(QKeyEvent *event) override;
    void changeEvent(QEvent *event) override;

private:
    void connectControls();
    void setRanges();
    void readSlice();
    void setCells(const QRect &cells);
    void takeTypedCells();
    void takeTypedCorners();
    void takeExtent(const QString &file);
    void showCells();
    void applyTexts();
    QString sizeText() const;

    std::unique_ptr<Ui::ExtractionDialog> m_form;
    DemGround m_ground;
    CellGrid m_grid;
    QRect m_cells;
    ElevationGridReader m_reader;
    QTimer m_reading;
    QString m_vectorFolder; ///< where the vector file was selected last
};
