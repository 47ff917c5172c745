#pragma once

#include "app/process/outputoptions.h"
#include "app/process/processes.h"

#include <QDialog>

#include <memory>

namespace Ui
{
class outputFileAdvancedOptionsDialog;
}

/// Format, layer, tiles, world file and overviews of a process's product.
class outputFileAdvancedOptionsDialog : public QDialog
{
    Q_OBJECT

public:
    outputFileAdvancedOptionsDialog(Process process, const OutputOptions &options, QWidget *parent = nullptr);
    ~outputFileAdvancedOptionsDialog() override;

    OutputOptions options() const;

private:
    void listFormats(const OutputOptions &options);
    void updateControls();

    std::unique_ptr<Ui::outputFileAdvancedOptionsDialog> m_form;
    Process m_process;
};
