#pragma once

#include "panels/options/vectorobservers.h"

#include <QDialog>
#include <QTimer>

#include <memory>

namespace Ui
{
class intervisibilityProcessInfoDialog;
}

class ComputingEstimate;

/// Dialog that asks how to make observers of a vector source: the distance between the samples of its lines,
/// where it has lines, and where the heights come from. Shows the CRS of the source where it is not that of the
/// DEM, the number of observers, the estimated computing time and, as soon as it is known, the time on this
/// machine.
class intervisibilityProcessInfoDialog : public QDialog
{
    Q_OBJECT

public:
    /// `source` outlives the dialog. `width` and `height` are those of the DEM in cells; `minimumStep` is the
    /// smallest step allowed, in the DEM's unit.
    intervisibilityProcessInfoDialog(const VectorObservers &source, int width, int height, double minimumStep,
                                     QWidget *parent = nullptr);
    ~intervisibilityProcessInfoDialog() override;

    /// Also says what `estimate` measures. It outlives the dialog; `values` are those of observers for which
    /// the source has none.
    void setEstimate(ComputingEstimate &estimate, const ObserverPoint &values);

    /// Distance between the samples of a line, in the DEM's unit.
    double step() const;

    HeightChoice heightChoice() const;

public slots:
    /// Disables OK and starts the timer after which the estimate follows.
    void slot_onChangePas();

private:
    void listHeightSources();
    void estimate();
    void measure(double count);

    std::unique_ptr<Ui::intervisibilityProcessInfoDialog> m_form;
    const VectorObservers &m_source;
    int m_width;
    int m_height;
    double m_minimumStep;
    ComputingEstimate *m_estimate = nullptr;
    ObserverPoint m_values; ///< see setEstimate()
    QTimer m_timer;         ///< runs until the user has not typed for a while; then comes the estimate
};
