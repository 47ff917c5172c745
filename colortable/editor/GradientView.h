#pragma once

#include "colortable/colorvision.h"
#include "colortable/editor/editedtable.h"
#include "colortable/editor/gradientscale.h"

#include <QWidget>

/// The ramp of a table under the histogram of the DEM's elevations, its colours as cursors that can be moved,
/// the share of the cells in each segment, and a curve of the ramp's lightness.
///
/// Mouse: a cursor is dragged along the ramp, and removed when it is dragged far away from it; a double click
/// adds one. Keys: left and right move the selected cursor (Shift: ten steps), up and down select another one,
/// Delete removes it, Insert adds one in the middle of the segment above it. The view changes nothing itself:
/// it emits what the user wants.
class GradientView : public QWidget
{
    Q_OBJECT

public:
    explicit GradientView(QWidget *parent = nullptr);

    void setTable(const EditedTable &table, int selected);

    /// sample: elevations of the DEM's cells in rising order, in the table's unit.
    void setSample(const QVector<double> &sample);
    const QVector<double> &sample() const { return m_sample; }
    void setVision(ColorVision vision);

    /// Shows the range of the DEM's elevations alone, or all of the table.
    void setZoomed(bool zoomed);

    /// Place of a cursor's handle, for the tests and for the tool tip.
    QPoint handlePlace(int at) const;

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

signals:
    void selected(int at);
    /// `series`: the same number for all steps of one drag, another one for each key.
    void moved(int at, double value, int series);
    void added(double value);
    void removed(int at);

protected:
    bool event(QEvent *event) override;
    void paintEvent(QPaintEvent *event) override;
    void mousePressEvent(QMouseEvent *event) override;
    void mouseMoveEvent(QMouseEvent *event) override;
    void mouseReleaseEvent(QMouseEvent *event) override;
    void mouseDoubleClickEvent(QMouseEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;

private:
    /// The parts of the view, from its top.
    struct Areas
    {
        QRect histogram;
        QRect ramp;
        QRect handles;
        QRect shares;
        QRect axis;
        QRect lightness;
    };

    Areas areas() const;
    void updateScale();
    int cursorAt(const QPoint &place) const;
    void paintHistogram(QPainter &painter, const QRect &area) const;
    void paintRamp(QPainter &painter, const QRect &area) const;
    void paintHandles(QPainter &painter, const QRect &area) const;
    void paintShares(QPainter &painter, const QRect &area) const;
    void paintAxis(QPainter &painter, const QRect &area) const;
    void paintLightness(QPainter &painter, const QRect &area) const;
    QString valueText(double value) const;
    void describeSelection();

    EditedTable m_table;
    int m_selected = -1;
    QVector<double> m_sample;
    QVector<double> m_shares;
    QVector<double> m_turns;
    ColorVision m_vision = ColorVision::Normal;
    GradientScale m_scale;
    bool m_zoomed = false; ///< the scale ends with the DEM's elevations
    bool m_dragging = false;
    bool m_draggedAway = false; ///< the release would remove the cursor
    double m_grip = 0.0;        ///< pixels from the cursor to the place where the mouse took it
    int m_series = 0;           ///< number of the last drag or key
};
