#pragma once

#include "colortable/colortablefile.h"
#include "dataset/ExtremesScan.h"
#include "panels/optionsWidget.h"
#include "runner/QuvoProgressDialog.h"

#include <memory>

class WorkFolder;

namespace Ui
{
class colorReliefOptionsWidget;
}

/// Options of the colour relief process: the colour table, how it is applied to the DEM's elevations, and
/// alpha.
class colorReliefOptionsWidget : public optionsWidget
{
    Q_OBJECT

public:
    /// Lists the tables of the folder "libraries/colormap" beside the program. Files of its own go to the work
    /// folder, which outlives the panel.
    explicit colorReliefOptionsWidget(WorkFolder &workFolder, QWidget *parent = nullptr,
                                      Qt::WindowFlags flags = {});
    ~colorReliefOptionsWidget() override;

    bool capabilityFlag() const override { return true; }
    /// The table by value, under its name in the library or its path; the elevations to spread it over only
    /// where they were given.
    ProcessOptions processOptions() const override;
    void setProcessOptions(const ProcessOptions &options) override;
    QString getCommandArguments() override;
    std::optional<ToolInput> launchInput() override;
    /// Notes the DEM's extreme values in the copy, because the percentages of a table are those of the DEM.
    std::optional<ToolInput> previewInput(const QString &copy) override;
    bool isComplete() const override;
    void setDem(const DemInfo &dem) override;

    /// The tables of another folder take the place of those that are listed.
    void loadLibrary(const QString &folder);

    /// The file of the table that the tool gets: in the spread mode, unless the chosen table itself is asked
    /// for, one that is written for the DEM when it is asked for, into a folder of its own. Empty when there
    /// is no table, or after a box that says why there is no file.
    QString colorFile(bool forceAbsolute);

    /// As a run takes them: the table's file, and the elevations to spread it over where they are known.
    ColorReliefOptions options() const;

signals:
    void completeChanged();
    /// Every cell of the DEM was read.
    void extremesComputed(const Extremes &extremes);

public slots:
    void slot_addAColorFile();
    void slot_onUseColorsOnAbsolute();
    void slot_onOptionsChanged();
    void slot_computeExactStatistics();
    void slot_onCancelStatisticsCalcul();
    /// The file of the current table changed.
    void slot_onCurrentColorFileDataChanged();
    /// A table file joins the list and becomes the current one.
    void slot_onNewColorFileCreated(const QString &path);
    void slot_onCurrentColormapChanged(int row);
    /// The current table was changed and is kept in memory alone: it joins the list as a table of the program's
    /// own.
    void slot_onCurrentColorFileDataChanged(const QList<QuvoColorDef> &entries);

protected:
    void timerEvent(QTimerEvent *event) override;
    void changeEvent(QEvent *event) override;

private:
    void connectControls();
    void applyTexts();
    void showExtremes();
    void updateSpreadNote();
    void takeExactStatistics(const Extremes &extremes);
    int rowOf(const ColorReliefOptions &options);
    QString settingsName(const QString &file) const;
    Extremes spreadRange(Extremes extremes) const;
    void forgetRange();
    int addTable(const QString &file, const ColorTableReading &reading);
    void useTable(const QString &file, const ColorTableReading &reading);
    void refreshCurrentTable();
    QString spreadFile(const QList<QuvoColorDef> &entries);
    bool writeOwnFile(const QString &path, const QByteArray &text);

    std::unique_ptr<Ui::colorReliefOptionsWidget> m_form;
    WorkFolder &m_workFolder;
    DemInfo m_dem;
    ExtremesScan m_scan;
    QuvoProgressDialog m_progress;
    bool m_spread = false;       ///< the spread mode is on
    bool m_spreadWanted = false; ///< the user chose it
    QString m_libraryFolder;
    QStringList m_ownTables;         ///< files of the work folder that hold tables which came by value
    std::optional<double> m_minimum; ///< given elevations to spread the table over, in place of the DEM's
    std::optional<double> m_maximum;
    DemInfo m_rangeDem; ///< the last DEM; with another one the given elevations lapse
    bool m_cancelStatistics = false;
    int m_changeTimer = 0; ///< identifier of the pending change timer; 0: none runs
};
