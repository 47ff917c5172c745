#pragma once

#include "panels/options/vectorobservers.h"

#include <QDialog>
#include <QTimer>

#include <memory>

namespace Ui
{
class intervisibilityProcessInfoDialog;
}

/// Dialog that asks how to make observers of a vector source: the distance between the samples of its lines,
/// where it has lines, and where the heights come from. Shows the CRS of the source where it is not that of the
/// DEM, the number of observers and the estimated computing time.
class intervisibilityProcessInfoDialog : public QDialog
{
    Q_OBJECT

public:
    /// `source` outlives the dialog. `width` and `height` are those of the DEM in cells; `minimumStep` is the
    /// smallest step allowed, in the DEM's unit.
    intervisibilityProcessInfoDialog(const VectorObservers &source, int width, int height, double minimumStep,
                                     QWidget *parent = nullptr);
    ~intervisibilityProcessInfoDialog() override;

    /// Distance between the samples of a line, in the DEM's unit.
    double step() const;

    HeightChoice heightChoice() const;

public slots:
    /// Disables OK and starts the timer after which the estimate follows.
    void slot_onChangePas();

private:
    void listHeightSources();
    void estimate();

    std::unique_ptr<Ui::intervisibilityProcessInfoDialog> m_form;
    const VectorObservers &m_source;
    int m_width;
    int m_height;
    double m_minimumStep;
    QTimer m_timer; ///< runs until the user has not typed for a while; then comes the estimate
};
