#pragma once

#include <QObject>

class QWidget;

/// Keeps the wheel from changing combo boxes, sliders, dials and spin boxes that do not have the focus: the
/// area around them scrolls instead. A click or the Tab key gives them the focus.
class WheelGuard : public QObject
{
    Q_OBJECT

public:
    /// Guards all such widgets inside `area` that exist now. The area owns the guard.
    explicit WheelGuard(QWidget *area);

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;
};
