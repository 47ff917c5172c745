#include "app/process/tools.h"
#include "app/startup/StopSignals.h"
#include "app/startup/console.h"
#include "app/startup/environment.h"
#include "app/startup/settings.h"
#include "app/startup/startupoptions.h"
#include "app/window/focuscue.h"
#include "app/window/mnemonics.h"
#include "app/window/quvoGdalUtilities.h"
#include "dataset/gdalmessages.h"
#include "messages/Prompt.h"
#include "messages/QuvoLanguageManager.h"
#include "messages/logging.h"

#include <QApplication>
#include <QIcon>
#include <QStyleFactory>
#include <QTimer>

#include <memory>

namespace
{

/// Title, system menu, and the buttons that minimise, maximise and close. The system menu does not imply a
/// close button any more, as it did in Qt 4.
constexpr Qt::WindowFlags mainWindowFlags = Qt::WindowTitleHint | Qt::WindowSystemMenuHint
    | Qt::WindowMinimizeButtonHint | Qt::WindowMaximizeButtonHint | Qt::WindowCloseButtonHint;

QStringList rawArguments(int argc, char **argv)
{
    QStringList arguments;
    for (int index = 0; index < argc; ++index)
        arguments += QString::fromLocal8Bit(argv[index]);
    return arguments;
}

/// Lets Qt 5 scale windows with the screen, which Qt 6 does by itself.
void useHighDpi()
{
#if QT_VERSION < QT_VERSION_CHECK(6, 0, 0)
    QApplication::setAttribute(Qt::AA_EnableHighDpiScaling);
    QApplication::setAttribute(Qt::AA_UseHighDpiPixmaps);
#endif
}

void applyStyle()
{
    QStyle *style = QStyleFactory::create(QStringLiteral("Plastique"));
    QApplication::setStyle(style ? style : QStyleFactory::create(QStringLiteral("Fusion")));
}

void applyLanguage(const Environment &environment)
{
    QuvoLanguageManager *languages = QuvoLanguageManager::getInstance();
    languages->defaultSetup(environment.messagesPath, environment.language, QString());
    if (languages->currentLanguageNeedsReversedLayout())
        QApplication::setLayoutDirection(Qt::RightToLeft);
    exportMessageVariables(environment);
}

Environment chosenEnvironment()
{
    Environment environment = readEnvironment(QApplication::applicationFilePath());
    environment.language = chosenLanguage(environment.language, environment.messagesPath);
    return environment;
}

/// Sets up the language for the message alone, since the program ends after it.
void showMissingTools(const ToolPaths &tools)
{
    applyLanguage(chosenEnvironment());
    const QString problems = startProblems(tools);
    printError(problems);
    Prompt::critical(nullptr,
                     labelText({"MESS_ERR_APP_NON_TROUV",
                                "Erreur : Une ou plusieurs application externe sont introuvables."})
                         + QStringLiteral("\n\n") + problems);
}

void prepareGdal(const Environment &environment)
{
    exportGdalVariables(environment.installDir);
    const QString drivers = driverPath(environment.installDir);
    if (!drivers.isEmpty())
        printOutput(QStringLiteral("Adding path (%1) to GDAL/OGR Driver path\n").arg(drivers));
    setUpGdal();
}

void applyStartupOptions(const StartupOptions &options, quvoGdalUtilities &dialog)
{
    dialog.takeUpLastSettings(options.startingDtm.isEmpty());
    if (!options.any)
        return;
    dialog.setKeepStartingDir(options.keepStartingDir);
    if (!options.startingDtm.isEmpty())
        dialog.setInputDem(options.startingDtm);
}

/// Stops the run when Qt ends the process with exit(), as it does when the display server ends. The dialog's
/// destructor does not run then, and would need the server.
struct RunGuard
{
    RunGuard() = default;
    Q_DISABLE_COPY_MOVE(RunGuard)
    ~RunGuard()
    {
        if (dialog)
            dialog->abandonRun();
    }

    quvoGdalUtilities *dialog = nullptr;
};

/// Ends the program as the window's Close button does, but without a question, when a signal asks for it or the
/// desktop session ends. Another window, such as a box with a question, must not keep the program alive then.
void endOnRequest(const StopSignals &stopSignals, QApplication &application, quvoGdalUtilities &dialog)
{
    const auto end = [&dialog] {
        dialog.closeAtOnce();
        QApplication::exit();
    };
    QObject::connect(&stopSignals, &StopSignals::stopRequested, &dialog, end);
    QObject::connect(&application, &QGuiApplication::commitDataRequest, &dialog, end);
}

} // namespace

int main(int argc, char *argv[])
{
    useUtf8Paths();
    const bool userStyleSheet = asksForStyleSheet(rawArguments(argc, argv));
    useHighDpi();
    QApplication application(argc, argv);
    Q_INIT_RESOURCE(quvo);
    QGuiApplication::setDesktopFileName(QStringLiteral("QuvoDemToolBox")); // Wayland finds the icon through it
    QApplication::setWindowIcon(QIcon(QStringLiteral(":/QuvoGdalUtilities/images/application.png")));
    if (!userStyleSheet)
        applyStyle();
    application.setStyleSheet(composeStyleSheet(application.styleSheet()));

    const ToolPaths tools = findTools(QApplication::applicationDirPath());
    if (!tools.isComplete()) {
        showMissingTools(tools);
        return 0; // kept so on purpose: a missing tool is not a failure of this program
    }
    const Environment environment = chosenEnvironment();
    exportInstallDir(environment.installDir);
    applyLanguage(environment);
    prepareGdal(environment);
    putMnemonicsEverywhere();
    showFocusAfterKeys();

    auto dialog = std::make_unique<quvoGdalUtilities>(tools, nullptr, mainWindowFlags);
    static RunGuard guard;
    guard.dialog = dialog.get();
    dialog->show();
    // Nothing is read before the window is shown.
    QTimer::singleShot(0, dialog.get(), [window = dialog.get()] {
        qCDebug(lcStart, "the first window is shown");
        applyStartupOptions(readStartupOptions(QApplication::arguments()), *window);
    });

    const StopSignals stopSignals;
    endOnRequest(stopSignals, application, *dialog);
    QObject::connect(&application, &QApplication::lastWindowClosed, &application, &QApplication::quit);
    const int exitCode = QApplication::exec();
    guard.dialog = nullptr;
    dialog.reset();
    return exitCode;
}
