#pragma once

#include "panels/optionsWidget.h"

#include <memory>

class QEditableComboBox;

namespace Ui
{
class contourOptionsWidget;
}

/// Panel of the contour process: interval and fixed levels, attribute, 3D, values to ignore, and what makes
/// the contours fit for a map. Notes beside and
/// under the fields show how many levels the options make, and which text the tool would not understand.
class contourOptionsWidget : public optionsWidget
{
    Q_OBJECT

public:
    explicit contourOptionsWidget(QWidget *parent = nullptr, Qt::WindowFlags flags = {});
    ~contourOptionsWidget() override;

    bool capabilityFlag() const override { return false; }
    ProcessOptions processOptions() const override { return options(); }
    void setProcessOptions(const ProcessOptions &options) override;
    QString getCommandArguments() override;
    std::optional<ToolInput> launchInput() override;
    std::optional<ToolInput> previewInput(const QString &copy) override;
    bool isComplete() const override;
    QString missing() const override;
    void setOutputFormat(const QString &driver) override;
    void setDem(const DemInfo &dem) override;
    QStringList launchWarnings() const override;

    /// A typed text that is not a number is read as 0.
    ContourOptions options() const;

signals:
    void completeChanged();

public slots:
    void slot_onOptionsChanged();

protected:
    void changeEvent(QEvent *event) override;

private:
    void makeNoDataCombo();
    void connectControls();
    void showOptions(const ContourOptions &options);
    void updateNotes();
    Extremes demExtremes() const;
    /// The note beside the interval: what the options make of the DEM, or an interval that would suit it.
    QString forecast(const ContourOptions &options) const;

    std::unique_ptr<Ui::contourOptionsWidget> m_form;
    QEditableComboBox *m_pNoDataCombo = nullptr;
    DemInfo m_dem;
    QString m_outputFormat = QStringLiteral("ESRI Shapefile"); ///< GDAL's short driver name
};
