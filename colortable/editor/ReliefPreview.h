#pragma once

#include "colortable/QuvoColorDef.h"
#include "colortable/colorvision.h"
#include "dataset/elevationgrid.h"

#include <QImage>
#include <QWidget>

/// The colour relief of a grid of elevations.
struct ReliefRequest
{
    QList<QuvoColorDef> entries; ///< as the tool gets them
    double minimum = 0.0;        ///< extreme elevations of the DEM, to which percentages refer
    double maximum = 0.0;
    ColorVision vision = ColorVision::Normal;
    bool shaded = false; ///< over a shading of the ground, which serves the eye alone
};

/// The picture of the grid, one pixel a cell; without shading and for normal vision, the colours are the DEM
/// tool's.
QImage reliefImage(const ElevationGrid &grid, const ReliefRequest &request);

/// Shows that picture as large as the widget allows.
class ReliefPreview : public QWidget
{
    Q_OBJECT

public:
    using QWidget::QWidget;

    /// The grid may still lack rows, which are transparent until they were read.
    void setGrid(const ElevationGrid &grid);
    void show(const ReliefRequest &request);

    /// What stands in the place of the picture while there is none.
    void setHint(const QString &hint);

    QSize sizeHint() const override { return {300, 300}; }
    QSize minimumSizeHint() const override { return {160, 140}; }

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    ElevationGrid m_grid;
    ReliefRequest m_request;
    QImage m_image;
    QString m_hint;
};
