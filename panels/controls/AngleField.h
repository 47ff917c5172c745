#pragma once

#include "messages/NumberBox.h"

/// A field for an angle in degrees, from 0 to 360, with as few decimals as it needs. Its steps go on from 360
/// to 0.
class AngleField : public NumberBox
{
    Q_OBJECT

public:
    explicit AngleField(QWidget *parent = nullptr);

    /// Shows an angle without the signal of a change. An angle with more decimals than the field has is shown
    /// rounded. The text stays where it means that angle already, so that the user can go on typing.
    void showAngle(double angle);

    QString textFromValue(double value) const override;
    void stepBy(int steps) override;

protected:
    StepEnabled stepEnabled() const override { return StepUpEnabled | StepDownEnabled; }

private:
    double rounded(double angle) const;
};
