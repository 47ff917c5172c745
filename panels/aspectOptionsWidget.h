#pragma once

#include "panels/optionsWidget.h"

#include <memory>

namespace Ui
{
class aspectOptionsWidget;
}

/// Panel of the aspect process: kind of angles, code of flat cells, method, edges and directions.
class aspectOptionsWidget : public optionsWidget
{
    Q_OBJECT

public:
    explicit aspectOptionsWidget(QWidget *parent = nullptr, Qt::WindowFlags flags = {});
    ~aspectOptionsWidget() override;

    bool capabilityFlag() const override { return true; }
    ProcessOptions processOptions() const override { return options(); }
    void setProcessOptions(const ProcessOptions &options) override;
    QString getCommandArguments() override;
    std::optional<ToolInput> launchInput() override;
    /// A preview writes no files besides its product.
    std::optional<ToolInput> previewInput(const QString &copy) override;
    bool isComplete() const override { return true; }

    AspectOptions options() const;

signals:
    void completeChanged();

public slots:
    void slot_onOptionsChanged();
    void slot_onAzimuthButtonClicked();
    void slot_onTrigoButtonClicked();
    /// These two choose the kind of angles; completeChanged() follows where the other kind was chosen before.
    void slot_checkAzimuth();
    void slot_checkTrigonometric();

protected:
    void changeEvent(QEvent *event) override;

private:
    void connectControls();
    void showOptions(const AspectOptions &options);
    void applyTexts();
    void listDirections(int chosen);

    std::unique_ptr<Ui::aspectOptionsWidget> m_form;
};
