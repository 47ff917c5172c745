#pragma once

#include "app/series/DemSeries.h"

#include <QObject>

#include <functional>
#include <optional>

/// Several DEMs that the user opens at once: asks whether they are one DEM, and makes the mosaic or runs the
/// current process on each.
class SeveralDems : public QObject
{
    Q_OBJECT

public:
    /// What is needed of the main dialog.
    struct Window
    {
        QWidget *widget;                              ///< parent of boxes and dialogs
        std::function<void(const QString &)> showDem; ///< opens one DEM, or warns
        /// Opens the mosaic at a path, of these tiles.
        std::function<void(const QString &, const QStringList &)> showMosaic;
        /// Returns the settings that the dialog shows; nothing after a box that says why no run could begin.
        std::function<std::optional<Recipe>()> recipe;
        std::function<QString()> folder; ///< returns the folder where file dialogs start
    };

    /// Runner and work folder outlive this object.
    SeveralDems(QuvoScriptRunner &runner, const ToolPaths &tools, WorkFolder &workFolder, Window window);

    /// Opens DEMs and folders of DEMs. Of a folder those count that are not named as a product of another one.
    /// One DEM is opened at once; for several the user is asked. seriesBegins() may follow.
    void open(const QStringList &paths);

    DemSeries &series() { return m_series; }

public slots:
    /// Lets the user choose files, or a folder, and opens them.
    void slot_selectTiles();
    void slot_selectFolder();

signals:
    /// A series of runs begins, or has ended.
    void seriesBegins();
    void seriesEnded();

private:
    void openMosaic(const QStringList &dems);
    void runEach(const QStringList &dems);
    void showSummary();

    WorkFolder &m_workFolder;
    Window m_window;
    DemSeries m_series;
};
