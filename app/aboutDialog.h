#pragma once

#include "app/environment.h"
#include "runner/shellhelpers.h"

#include <QDialog>

#include <memory>

namespace Ui
{
class aboutDialog;
}

/// Version, libraries with their versions and licences, and the folders in use.
class aboutDialog : public QDialog
{
    Q_OBJECT

public:
    explicit aboutDialog(QWidget *parent, const ShellServices &services = desktopServices());
    ~aboutDialog() override;

private:
    std::unique_ptr<Ui::aboutDialog> m_form;
};
