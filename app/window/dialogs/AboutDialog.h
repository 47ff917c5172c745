#pragma once

#include "app/startup/environment.h"
#include "runner/shellhelpers.h"

#include <QDialog>

#include <memory>

namespace Ui
{
class AboutDialog;
}

/// Shows the program's version, its libraries with their versions and licences, and the folders in use.
class AboutDialog : public QDialog
{
    Q_OBJECT

public:
    explicit AboutDialog(QWidget *parent, const ShellServices &services = desktopServices());
    ~AboutDialog() override;

private:
    std::unique_ptr<Ui::AboutDialog> m_form;
};
