#pragma once

#include "panels/optionsWidget.h"

#include <memory>

class QEditableComboBox;

namespace Ui
{
class slopeOptionsWidget;
}

/// Panel of the slope process: unit of the slopes, units of the DEM, method, edges and classes.
class slopeOptionsWidget : public optionsWidget
{
    Q_OBJECT

public:
    explicit slopeOptionsWidget(QWidget *parent = nullptr, Qt::WindowFlags flags = {});
    ~slopeOptionsWidget() override;

    bool capabilityFlag() const override { return true; }
    ProcessOptions processOptions() const override { return options(); }
    void setProcessOptions(const ProcessOptions &options) override;
    QString getCommandArguments() override;
    std::optional<ToolInput> launchInput() override;
    /// A preview writes no files besides its product.
    std::optional<ToolInput> previewInput(const QString &copy) override;
    bool isComplete() const override;
    QString missing() const override;
    void setScaleHint(const QString &hint) override;

    SlopeOptions options() const;

signals:
    void completeChanged();

public slots:
    void slot_onScaleValueChanged();
    void slot_resetScaleValue();
    void slot_onOptionsChanged();

protected:
    void changeEvent(QEvent *event) override;

private:
    void connectControls();
    void showOptions(const SlopeOptions &options);
    void applyTexts();
    void updateScaleNote();
    void listClasses(const QString &chosen);
    void onClassesActivated(int row);

    std::unique_ptr<Ui::slopeOptionsWidget> m_form;
    QEditableComboBox *m_pScaleCombo = nullptr;
    QString m_scaleHint;
    QString m_classes; ///< SlopeOptions::classes as the list shows it
};
