#pragma once

#include "colortable/colortablefile.h"
#include "dataset/ExtremesScan.h"
#include "panels/colors/ColorTableList.h"
#include "panels/light/ColorShading.h"
#include "panels/optionsWidget.h"
#include "runner/QuvoProgressDialog.h"

#include <QBasicTimer>

#include <memory>

class WorkFolder;

namespace Ui
{
class colorReliefOptionsWidget;
}

/// Panel of the colour relief process: the colour table, how it is applied to the DEM's elevations, and alpha.
class colorReliefOptionsWidget : public optionsWidget
{
    Q_OBJECT

public:
    /// Lists the tables of the folder "libraries/colormap" beside the program. The panel writes its own files
    /// into the work folder, which outlives the panel.
    explicit colorReliefOptionsWidget(WorkFolder &workFolder, QWidget *parent = nullptr,
                                      Qt::WindowFlags flags = {});
    ~colorReliefOptionsWidget() override;

    bool capabilityFlag() const override { return true; }
    /// The record holds the table by value. Its name is that in the library, or else its path. The elevations
    /// to spread the table over are set only if they were given to setProcessOptions().
    ProcessOptions processOptions() const override;
    void setProcessOptions(const ProcessOptions &options) override;
    QString getCommandArguments() override;
    std::optional<ToolInput> launchInput() override;
    /// Also writes the DEM's extreme values into the statistics of the copy, because percentages of a table
    /// refer to the DEM's range.
    std::optional<ToolInput> previewInput(const QString &copy) override;
    bool isComplete() const override;
    QString missing() const override;
    void setDem(const DemInfo &dem) override;

    /// Replaces the listed tables by those of a folder and chooses the default table where it is among them.
    void loadLibrary(const QString &folder);

    /// Sets the folder of the user's own tables, which may not exist yet, and lists them behind those of the
    /// library.
    void setOwnTableFolder(const QString &folder);

    /// As ColorShading has them.
    void setPanelLight(const ShadedOptions &light);
    void setLightEditor(const LightEditor &editor);

    /// Makes a listed table the current one, if a table of that file is in the list. No signal follows.
    void chooseTable(const QString &file);

    /// Path of the table file for the tool. In the spread mode, and without `forceAbsolute`, each call writes a
    /// table for the DEM into a new folder. Otherwise it is the file of the chosen table. Empty when there is
    /// no table, or when no file can be written, which a message box reports.
    QString colorFile(bool forceAbsolute);

    /// The options as a run uses them: the path of the table's file, and the elevations to spread it over as
    /// far as they are known.
    ColorReliefOptions options() const;

signals:
    /// The options changed. The signal follows `changeDelay` after the last change of a burst.
    void completeChanged();
    /// The user chose a table of the library or a file that stays when the program ends.
    void tableChosen(const QString &file);
    /// Every cell of the DEM was read; `extremes` are its exact extreme values.
    void extremesComputed(const Extremes &extremes);

public slots:
    void slot_addAColorFile();
    void slot_onUseColorsOnAbsolute();
    void slot_onOptionsChanged();
    void slot_computeExactStatistics();
    void slot_onCancelStatisticsCalcul();
    /// Opens the editor on the current table.
    void slot_onClickEditCmapButton();
    /// Reads the file of the current table again.
    void slot_onCurrentColorFileDataChanged();
    /// Adds a table file to the list and makes it the current table.
    void slot_onNewColorFileCreated(const QString &path);
    void slot_onCurrentColormapChanged(int row);
    /// Writes the entries of an edited table into the work folder, and makes that file the current table.
    void slot_onCurrentColorFileDataChanged(const QList<QuvoColorDef> &entries);

protected:
    void timerEvent(QTimerEvent *event) override;
    void changeEvent(QEvent *event) override;

private:
    void connectControls();
    void showOptions(const ColorReliefOptions &options);
    void showMode();
    void applyTexts();
    void showExtremes();
    void updateSpreadNote();
    void endExactStatistics(const Extremes &extremes);
    /// The range to spread the table over: the given elevations, and `extremes` for those that were not given.
    Extremes spreadRange(Extremes extremes) const;
    void clearGivenRange();
    void useTable(const QString &file, const ColorTableReading &reading);
    /// What colorFile() returns, and the tool's input with that file, for the table as it was read last.
    QString currentToolFile(bool forceAbsolute);
    std::optional<ToolInput> toolInput();
    /// Whether the file is one of the work folder.
    bool isOwnFile(const QString &file) const;
    QString spreadFile(const QList<QuvoColorDef> &entries);

    std::unique_ptr<Ui::colorReliefOptionsWidget> m_form;
    WorkFolder &m_workFolder;
    QString m_tableFolder; ///< folder of the table that was last selected in a file dialog
    DemInfo m_dem;
    ExtremesScan m_scan;
    QuvoProgressDialog m_progress;
    bool m_spread = false;       ///< the spread mode is on
    bool m_spreadWanted = false; ///< the user chose the spread mode, which needs the DEM's elevations to be on
    std::unique_ptr<ColorTableList> m_tables;
    QString m_ownTableFolder;        ///< folder of the user's tables, which may not exist
    std::optional<double> m_minimum; ///< given elevation to spread the table from, in place of the DEM's lowest
    std::optional<double> m_maximum; ///< given elevation to spread the table to, in place of the DEM's highest
    DemInfo m_rangeDem;              ///< the last DEM with a path; another DEM clears the given elevations
    bool m_cancelStatistics = false;
    QBasicTimer m_changeTimer; ///< runs from a change until completeChanged()
};
