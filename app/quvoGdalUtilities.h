#pragma once

#include "app/settings.h"
#include "app/tools.h"

#include <QDialog>

#include <memory>

namespace Ui
{
class quvoGdalUtilitiesDialog;
}

/// The main dialog. It connects, asks and shows; what can be settled without a window stands in functions of
/// its own.
class quvoGdalUtilities : public QDialog
{
    Q_OBJECT

public:
    /// tools: absolute paths of the external tools.
    quvoGdalUtilities(const ToolPaths &tools, QWidget *parent, Qt::WindowFlags flags);
    ~quvoGdalUtilities() override;

    /// Makes the path the input DEM, or says that it is none; the current directory is kept no longer.
    void setInputDem(const QString &path);

    /// Whether the first dialog for choosing a DEM opens in the current directory.
    void setKeepStartingDir(bool keep);

public slots:
    /// Saves the geometry, however the dialog is closed.
    void done(int result) override;

protected:
    void changeEvent(QEvent *event) override;

private:
    std::unique_ptr<Ui::quvoGdalUtilitiesDialog> m_form;
    ToolPaths m_tools;
    LastGeometry m_lastGeometry;
    QString m_inputDem; ///< a valid DEM; empty for none
    bool m_keepStartingDir = false;
};
