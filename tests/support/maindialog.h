#pragma once

#include "app/startup/settings.h"
#include "app/window/launch/processResultDialog.h"
#include "app/window/quvoGdalUtilities.h"
#include "dataset/QuvoFilerDialog.h"
#include "dataset/gdalmessages.h"
#include "messages/FittingArea.h"
#include "messages/Prompt.h"
#include "messages/QuvoLanguageManager.h"
#include "tests/support/rasters.h"

#include <QApplication>
#include <QDir>
#include <QDropEvent>
#include <QFile>
#include <QMimeData>
#include <QObject>
#include <QPushButton>
#include <QSettings>
#include <QTabWidget>
#include <QTemporaryDir>
#include <QTest>
#include <QUrl>

#include <memory>

// For tests that link app_window.

/// Base of tests of the main dialog: settings that are not the user's own, and a folder with "dem.tif" for each
/// test. The folder's name holds characters that have a meaning for shells and command lines.
class MainDialogFixture : public QObject
{
protected:
    /// Called once, before the first test.
    void setUpProgram()
    {
        qputenv("XDG_CONFIG_HOME", m_home.path().toUtf8());
        Q_INIT_RESOURCE(quvo);
        setUpGdal();
    }

    /// Called before each test: makes the folder with a DEM of `side` × `side` cells, and resets the settings,
    /// the tools, the language (French) and the answers to boxes.
    void setUpTest(int side)
    {
        m_folder =
            std::make_unique<QTemporaryDir>(QDir::tempPath() + QStringLiteral("/l'été $HOME \"中\\!\" XXXXXX"));
        m_tools = findTools(QStringLiteral(QUVO_TREE));
        QuvoLanguageManager::getInstance()->defaultSetup(QStringLiteral(QUVO_TREE "/MESSAGES"), "FRENCH", {});
        QSettings("KARVEX", "Riglios").clear();
        QFile::remove(recentRunsFile());
        QVERIFY(writeHill(path("dem.tif"), side));
        Prompt::answerBeforehand({});
        QuvoFilerDialog::answerBeforehand({});
    }

    QString path(const QString &name) const { return m_folder->filePath(name); }

    std::unique_ptr<QTemporaryDir> m_folder;
    QTemporaryDir m_home;
    ToolPaths m_tools; ///< a test may replace one
};

/// How many tabs of the main dialog have their panel.
inline std::size_t panelCount(const quvoGdalUtilities &window)
{
    const auto tabs = window.findChild<QTabWidget *>(QStringLiteral("m_pTabWidget"));
    return static_cast<std::size_t>(tabs->findChildren<FittingArea *>().size());
}

/// The main dialog, shown, with access to its controls.
struct ShownDialog
{
    explicit ShownDialog(const ToolPaths &tools)
        : window(tools, nullptr, {})
    {
        window.show();
        if (!QTest::qWaitFor([this] { return panelCount(window) == processCount; }))
            qFatal("the main dialog lacks panels");
    }
    template <class Widget> Widget *find(const char *name) { return window.findChild<Widget *>(name); }
    QPushButton *launchButton() { return find<QPushButton>("m_pPBLaunchProcess"); }
    processResultDialog *result() { return window.findChild<processResultDialog *>(); }

    /// Drops a file on the window. Returns whether the window accepts it.
    bool drop(const QString &file) { return drop(QStringList{file}); }

    bool drop(const QStringList &files)
    {
        QMimeData data;
        QList<QUrl> addresses;
        for (const QString &file : files)
            addresses += QUrl::fromLocalFile(file);
        data.setUrls(addresses);
        QDragEnterEvent enter(QPoint(5, 5), Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
        QApplication::sendEvent(&window, &enter);
        QDropEvent event(QPoint(5, 5), Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
        QApplication::sendEvent(&window, &event);
        return enter.isAccepted();
    }

    quvoGdalUtilities window;
};

/// The button of the progress window; null while the window is hidden.
inline QPushButton *stopButton()
{
    for (QWidget *window : QApplication::topLevelWidgets()) {
        if (window->isVisible() && window->findChild<QPushButton *>("m_pPBStop"))
            return window->findChild<QPushButton *>("m_pPBStop");
    }
    return nullptr;
}
