#pragma once

#include <qwt_compass.h>

/// A compass whose needle goes to the place of a click, from where it may be dragged on. The reading is in
/// degrees, from 0 up to but not including 360; clicks, drags, keys and the wheel set whole degrees.
///
/// The arrow keys turn the needle by the single steps of the compass, the page keys and the wheel with Ctrl or
/// Shift by its page steps; Home sets the first degree, End the last.
class CompassDial : public QwtCompass
{
public:
    using QwtCompass::QwtCompass;

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

protected:
    void mousePressEvent(QMouseEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;
    void wheelEvent(QWheelEvent *event) override;
    double scrolledTo(const QPoint &place) const override;
    /// A ring in the colour of selections. The frame of the style would be drawn after a key only.
    void drawFocusIndicator(QPainter *painter) const override;

private:
    void turn(int degrees);

    int m_wheelTurn = 0; ///< turn of the wheel that made no step yet, in eighths of a degree of the wheel
};
