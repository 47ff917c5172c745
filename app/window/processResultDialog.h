#pragma once

#include "runner/shellhelpers.h"

#include <QDialog>

#include <memory>
#include <optional>

namespace Ui
{
class processResultDialog;
}

/// What the end of a run has to tell.
struct ProcessResult
{
    QString title;
    QString picture; ///< path of the picture, a resource
    QString text;
    QString file;                ///< the product; empty when there is none
    QString command;             ///< the tool's whole command line
    QString shellCommand;        ///< what does the same in a shell
    std::optional<int> exitCode; ///< of the tool; none when it was stopped or never started
    QString toolText;            ///< what the tool wrote on its standard error
};

/// Tells how a run ended; shows the product, its folder and the details on request.
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

/// The details as the dialog shows them: command, exit code and the tool's text.
QString resultDetails(const ProcessResult &result);
