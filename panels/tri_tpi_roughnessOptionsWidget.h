#pragma once

#include "panels/optionsWidget.h"

#include <memory>

namespace Ui
{
class tri_tpi_roughnessOptionsWidget;
}

/// Panel of the terrain indices: choice of the index, and edges.
class tri_tpi_roughnessOptionsWidget : public optionsWidget
{
    Q_OBJECT

public:
    explicit tri_tpi_roughnessOptionsWidget(QWidget *parent = nullptr, Qt::WindowFlags flags = {});
    ~tri_tpi_roughnessOptionsWidget() override;

    bool capabilityFlag() const override { return false; }
    ProcessOptions processOptions() const override { return options(); }
    void setProcessOptions(const ProcessOptions &options) override;
    QString getCommandArguments() override;
    bool isComplete() const override { return true; }

    TerrainIndexOptions options() const;

    /// The chosen index: 0 TRI, 1 TPI, 2 roughness (terrainIndexWord()).
    int processType() const;

signals:
    void completeChanged();

public slots:
    void slot_onOptionsChanged();

protected:
    void changeEvent(QEvent *event) override;

private:
    void showOptions(const TerrainIndexOptions &options);
    void updateFormula();
    void applyTexts();

    std::unique_ptr<Ui::tri_tpi_roughnessOptionsWidget> m_form;
};
