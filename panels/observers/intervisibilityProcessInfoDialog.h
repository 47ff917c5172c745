#pragma once

#include "panels/options/vectorobservers.h"

#include <QDialog>
#include <QTimer>

#include <memory>

namespace Ui
{
class intervisibilityProcessInfoDialog;
}

/// Asks how a vector source becomes observers: the distance between samples of its lines, and where heights
/// come from. Shows how many observers that makes, and how long they would take.
class intervisibilityProcessInfoDialog : public QDialog
{
    Q_OBJECT

public:
    /// The source outlives the dialog. width, height: of the DEM, in cells. minimumStep: in the DEM's unit.
    intervisibilityProcessInfoDialog(const VectorObservers &source, int width, int height, double minimumStep,
                                     QWidget *parent = nullptr);
    ~intervisibilityProcessInfoDialog() override;

    /// Between samples, in the DEM's unit.
    double step() const;

    HeightChoice heightChoice() const;

public slots:
    void slot_onChangePas();

private:
    void listHeightSources();
    void estimate();

    std::unique_ptr<Ui::intervisibilityProcessInfoDialog> m_form;
    const VectorObservers &m_source;
    int m_width;
    int m_height;
    double m_minimumStep;
    QTimer m_timer;
};
