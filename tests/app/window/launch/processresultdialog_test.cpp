#include "app/preview/MapView.h"
#include "tests/support/maindialog.h"

#include <QClipboard>
#include <QIcon>
#include <QLabel>
#include <QRegularExpression>

class ProcessResultDialogTest : public MainDialogFixture
{
    Q_OBJECT

private slots:
    void initTestCase() { setUpProgram(); }
    void init() { setUpTest(64); }
    void ends();
    void reasonOfTheTool();
    void buttons();
};

void ProcessResultDialogTest::ends()
{
    QuvoScriptRunner runner(nullptr);
    const ProductRun run(runner);
    const struct
    {
        ProcessResult result;
        const char *title, *picture, *text;
    } rows[] = {
        {finishedResult(run), "Opération terminée", "ok2.png",
         "Le traitement s'est déroulé avec succès et le résultat est disponible."},
        {abortedResult(run), "Fin du traitement", "cancel2.png", "Le traitement a été annulé."},
        {failedResult(run), "Fin du traitement", "cancel2.png",
         "Une erreur est survenue lors de la création de l'image de sortie."},
    };
    for (const auto &[result, title, picture, text] : rows) {
        const processResultDialog dialog(result, nullptr);
        QCOMPARE(dialog.windowTitle(), QString(title));
        QCOMPARE(dialog.findChild<QLabel *>("m_pLText")->text(), QString(text));
        const QImage expected =
            QIcon(QStringLiteral(":/QuvoGdalUtilities/images/") + picture).pixmap(48).toImage();
        QVERIFY(!expected.isNull());
        QCOMPARE(dialog.findChild<QLabel *>("m_pLPicture")->pixmap(Qt::ReturnByValue).toImage(), expected);
    }
}

void ProcessResultDialogTest::reasonOfTheTool()
{
    for (const auto &[text, reason] :
         {std::pair("", ""), std::pair("\n Usage: tool\nmore\n", "Usage: tool"),
          std::pair("Warning 1: odd\nERROR 6: Cannot 'é'\nERROR 1: later\n", "Cannot 'é'")})
        QCOMPARE(toolReason(text), QString(reason));
    QCOMPARE(toolReason(QString(1000, 'x')), QString(300, 'x') + "…");
}

void ProcessResultDialogTest::buttons()
{
    const QString product = path("dem.tif");
    QStringList requests;
    ShellServices services;
    services.open = [&](const QUrl &url) { return requests += "open " + url.toLocalFile(), false; };
    services.showInFileManager = [&](const QUrl &url) { return requests += "show " + url.toLocalFile(), true; };
    ProcessResult result;
    result.file = product;
    result.shellCommand = QStringLiteral("'tool' a");
    processResultDialog dialog(result, nullptr, services);
    QTest::ignoreMessage(QtWarningMsg, QRegularExpression("the desktop did not take"));
    dialog.findChild<QPushButton *>("m_pPBShowResult")->click();
    QTRY_VERIFY(!dialog.findChild<MapView *>("m_pLPreview")->map().ground.isEmpty());
    dialog.findChild<QPushButton *>("m_pPBOpenWith")->click();
    dialog.findChild<QPushButton *>("m_pPBOpenFolder")->click();
    dialog.findChild<QPushButton *>("m_pPBCopyCommand")->click();
    QCOMPARE(requests, (QStringList{"open " + product, "show " + product}));
    QVERIFY(Prompt::takeShown().constFirst().contains(product)); // no program could open it
    QCOMPARE(QApplication::clipboard()->text(), result.shellCommand);
}

QTEST_MAIN(ProcessResultDialogTest)
#include "processresultdialog_test.moc"
