#pragma once

#include <QSlider>

/// A slider whose handle goes to the place of a click, from where it may be dragged on. A click on the handle
/// itself moves nothing.
class ClickSlider : public QSlider
{
    Q_OBJECT

public:
    using QSlider::QSlider;

protected:
    void mousePressEvent(QMouseEvent *event) override;

private:
    QRect handle() const;
    int valueAt(const QPoint &place) const;
};
