#pragma once

#include "colortable/editor/colorplaces.h"

#include <QImage>
#include <QWidget>

/// Picks a colour from a ring of hues around a triangle of saturation and value. Keys: left and right change
/// the saturation, up and down the value, page up and page down the hue. Alpha is not changed.
class ColorTriangle : public QWidget
{
    Q_OBJECT

public:
    explicit ColorTriangle(QWidget *parent = nullptr);

    /// Shows a colour; no signal follows.
    void setColor(const QColor &color);

    QSize sizeHint() const override { return {150, 150}; }
    QSize minimumSizeHint() const override { return {120, 120}; }

signals:
    /// The user picks another colour. `series`: the same number for all steps of one movement of the mouse, and
    /// for all keys in a row that change a colour on.
    void picked(const QColor &color, int series);

protected:
    void paintEvent(QPaintEvent *event) override;
    void mousePressEvent(QMouseEvent *event) override;
    void mouseMoveEvent(QMouseEvent *event) override;
    void mouseReleaseEvent(QMouseEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;

private:
    enum class Grip
    {
        None,
        Ring,
        Triangle
    };

    ColorPlaces places() const;
    void pick(const QPointF &place);
    void change(const HueColor &color);
    QImage triangleImage(const ColorPlaces &places) const;

    HueColor m_color;
    QColor m_shown; ///< as it was set or picked, with its alpha
    Grip m_grip = Grip::None;
    int m_series = 0;
    bool m_byKeys = false; ///< the shown colour was picked with a key, and the next key continues the series
};
