#pragma once

#include "app/process/outputoptions.h"
#include "app/process/processes.h"

#include <QDialog>

#include <memory>

namespace Ui
{
class outputFileAdvancedOptionsDialog;
}

/// Edits how the product of a process is written: format, layer, compression, tiles, world file, overviews and
/// statistics; and what is done with the DEM before.
class outputFileAdvancedOptionsDialog : public QDialog
{
    Q_OBJECT

public:
    /// `metricCrs`: name of the CRS in metres that suits the DEM; empty: there is none.
    outputFileAdvancedOptionsDialog(Process process, const OutputOptions &options, const QString &metricCrs,
                                    QWidget *parent = nullptr);
    ~outputFileAdvancedOptionsDialog() override;

    /// The options that the dialog shows, including those that the chosen format does not have.
    OutputOptions options() const;

private:
    void listFormats(const OutputOptions &options);
    void showDemOptions(const OutputOptions &options, const QString &metricCrs);
    void makeScrollable();
    void showRasterOptions(const OutputOptions &options);
    void updateControls();
    void updateCompression(const QString &format);

    std::unique_ptr<Ui::outputFileAdvancedOptionsDialog> m_form;
    Process m_process;
    QString m_reproject; ///< OutputOptions::reproject while its box is checked
};
