#pragma once

#include "app/process/demremarks.h"
#include "dataset/deminfo.h"

#include <QObject>
#include <QTimer>

#include <memory>

class ElevationGridReader;
class QLabel;
class QToolButton;
class optionsWidget;

/// The quiet line under the input: what the DEM is, what that means for the current process, and what is done
/// about it. A button shows all remarks. It also says on the panel what a chosen ratio of units means.
class DemLook : public QObject
{
    Q_OBJECT

public:
    /// The widgets belong to the main dialog and outlive this object.
    DemLook(QLabel &line, QToolButton &details);
    ~DemLook() override;

    /// The DEM or band changed, or its extreme values became known. Its cells without data are counted on a
    /// part of its rows, in slices of the event loop.
    void setDem(const DemInfo &dem);

    /// The process, its options or the output options changed. `panel` is the current one; null: there is none.
    void update(const ProcessingRequest &request, optionsWidget *panel);

    /// What is known of the grid of the DEM.
    const DemFacts &facts() const { return m_findings.facts; }

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    void countVoids();
    void show();
    void elide();
    void showDetails();

    QLabel &m_line;
    QToolButton &m_details;
    DemInfo m_dem;
    DemFindings m_findings;
    ProcessingRequest m_request;
    QString m_text; ///< the whole line
    std::unique_ptr<ElevationGridReader> m_reader;
    QTimer m_reading;
};
