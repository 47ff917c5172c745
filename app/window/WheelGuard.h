#pragma once

#include <QObject>

class QWidget;

/// Keeps the wheel from changing controls (combo boxes, sliders, dials, spin boxes) that do not have the focus:
/// the area around them scrolls instead. A click or the Tab key gives them the focus.
class WheelGuard : public QObject
{
    Q_OBJECT

public:
    /// Guards `area`, which owns the guard, and all controls inside it that exist now.
    explicit WheelGuard(QWidget *area);

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;
};
