#pragma once

#include "app/series/SeveralDems.h"

#include <QObject>

#include <functional>

class InputDem;
class QComboBox;
class QDialog;
class QToolButton;

/// The ways to a DEM besides the text field: the menu of the input button, the chooser of data sources, several
/// DEMs at once, and files that are dropped on the window.
class DemSources : public QObject
{
    Q_OBJECT

public:
    /// The main dialog's widgets, and what is needed of it. All outlive this object.
    struct Window
    {
        QDialog *dialog;
        QToolButton *button; ///< opens a file dialog by itself; gets the menu
        QComboBox *bands;
        InputDem *input;
        std::function<void()> selectFile;             ///< opens the file that the user selects in a file dialog
        std::function<void(const QString &)> showDem; ///< opens one DEM, or warns
        std::function<std::optional<Recipe>()> recipe; ///< as in SeveralDems::Window
    };

    DemSources(QuvoScriptRunner &runner, const ToolPaths &tools, WorkFolder &workFolder, Window window);

    /// The runs on one DEM after another.
    DemSeries &series() { return m_several.series(); }

    /// Opens DEMs and folders of DEMs.
    void open(const QStringList &paths) { m_several.open(paths); }

signals:
    /// Files or folders were dropped on the window.
    void dropped(const QStringList &paths);

    /// A series of runs begins, or has ended.
    void seriesBegins();
    void seriesEnded();

private:
    void chooseSource();

    Window m_window;
    WorkFolder &m_workFolder;
    SeveralDems m_several;
};
