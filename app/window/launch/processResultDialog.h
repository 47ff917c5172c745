#pragma once

#include "app/window/launch/runresults.h"
#include "runner/shellhelpers.h"

#include <QDialog>

#include <memory>

namespace Ui
{
class processResultDialog;
}

/// The result window: shows how a run ended and, on request, the product, its folder and the details.
class processResultDialog : public QDialog
{
    Q_OBJECT

public:
    processResultDialog(const ProcessResult &result, QWidget *parent,
                        const ShellServices &services = desktopServices());
    ~processResultDialog() override;

public slots:
    void slot_showResult();
    void slot_openFolder();
    void slot_showDetails(bool shown);
    void slot_copyCommand();

private:
    std::unique_ptr<Ui::processResultDialog> m_form;
    ProcessResult m_result;
    ShellServices m_services;
};
