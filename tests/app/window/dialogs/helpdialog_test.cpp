#include "app/window/dialogs/HelpDialog.h"

#include "messages/QuvoLanguageManager.h"

#include <QAbstractButton>
#include <QApplication>
#include <QDir>
#include <QFile>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QTemporaryDir>
#include <QTest>
#include <QTextBrowser>

class HelpDialogTest : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void init();
    void pagesAndHistory();
    void missingPage();
    void findsInAllPages();
    void widthAndLanguage();

private:
    void write(const QString &page, const QByteArray &text);

    QTemporaryDir m_guide;
};

void HelpDialogTest::initTestCase()
{
    Q_INIT_RESOURCE(quvo);
    for (const char *language : {"/en", "/fr"})
        QVERIFY(QDir().mkpath(m_guide.path() + language));
    write("en/index", "# Contents\n\n- [Slope](slope.md)\n- [Aspect](aspect.md), [again](slope.md)\n");
    write("en/slope", "# Slope\n\nSteep `-p`. See [aspect](aspect.md).\n\n    gdal_dem.exe\n");
    write("en/aspect", "# Aspect\n\nSteep, too; the north.\n");
    write("fr/index", "# Sommaire\n\n- [Pentes](slope.md)\n");
    write("fr/slope", "# Pentes\n\nRaide.\n");
}

void HelpDialogTest::write(const QString &page, const QByteArray &text)
{
    QFile file(m_guide.filePath(page + ".md"));
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write(text);
}

void HelpDialogTest::init()
{
    QuvoLanguageManager::getInstance()->defaultSetup(QStringLiteral(QUVO_TREE "/MESSAGES"), "ENGLISH", {});
}

void HelpDialogTest::pagesAndHistory()
{
    HelpDialog dialog(m_guide.path(), nullptr);
    const auto list = dialog.findChild<QListWidget *>();
    const auto back = dialog.findChild<QAbstractButton *>("guide_back");
    QCOMPARE(dialog.page(), QStringLiteral("index"));
    QCOMPARE(list->count(), 3); // the index, and each page once
    QCOMPARE(list->item(2)->text(), QStringLiteral("Aspect"));
    QVERIFY(!back->isEnabled());

    list->setCurrentRow(2);
    QCOMPARE(dialog.page(), QStringLiteral("aspect"));
    dialog.showPage("slope");
    QCOMPARE(list->currentRow(), 1);
    back->click();
    QCOMPARE(dialog.page(), QStringLiteral("aspect"));
    QCOMPARE(list->currentRow(), 2);
    dialog.findChild<QAbstractButton *>("guide_forward")->click();
    QCOMPARE(dialog.page(), QStringLiteral("slope"));
    dialog.findChild<QAbstractButton *>("guide_home")->click();
    QCOMPARE(dialog.page(), QStringLiteral("index"));
}

void HelpDialogTest::missingPage()
{
    HelpDialog dialog(m_guide.path(), nullptr);
    dialog.showPage("roughness");
    const QString shown = dialog.findChild<QTextBrowser *>()->toPlainText();
    QVERIFY2(shown.contains("\"roughness\"") && shown.contains(m_guide.path() + "/en"), qPrintable(shown));
    QCOMPARE(dialog.findChild<QListWidget *>()->currentRow(), -1);
}

void HelpDialogTest::findsInAllPages()
{
    HelpDialog dialog(m_guide.path(), nullptr);
    dialog.show();
    const auto field = dialog.findChild<QLineEdit *>();
    const auto guide = dialog.findChild<QTextBrowser *>();
    dialog.activateWindow();
    QVERIFY(QTest::qWaitForWindowActive(&dialog));
    const auto notFound = [&] { return dialog.findChild<QLabel *>()->isVisible(); };
    QTest::keyClick(&dialog, Qt::Key_F, Qt::ControlModifier);
    QTRY_COMPARE(dialog.focusWidget(), field);
    QTest::keyClicks(field, "steep");
    QTest::keyClick(field, Qt::Key_Return);
    QCOMPARE(dialog.page(), QStringLiteral("slope"));
    QCOMPARE(guide->textCursor().selectedText(), QStringLiteral("Steep"));
    QTest::keyClick(field, Qt::Key_F3);
    QCOMPARE(dialog.page(), QStringLiteral("aspect"));
    QTest::keyClick(field, Qt::Key_F3, Qt::ShiftModifier);
    QCOMPARE(dialog.page(), QStringLiteral("slope"));
    field->setText("north"); // the only place, from any page and from the place itself
    for (int time = 0; time < 2; ++time) {
        QTest::keyClick(field, Qt::Key_Return);
        QCOMPARE(dialog.page(), QStringLiteral("aspect"));
        QVERIFY(!notFound());
    }
    field->setText("glacier");
    QTest::keyClick(field, Qt::Key_Return);
    QVERIFY(notFound());
    field->clear();
    QVERIFY(!notFound());
}

void HelpDialogTest::widthAndLanguage()
{
    HelpDialog dialog(m_guide.path(), nullptr);
    dialog.show();
    const auto list = dialog.findChild<QListWidget *>();
    const int character = dialog.fontMetrics().averageCharWidth();
    dialog.resize(120 * character, dialog.height());
    QTRY_VERIFY(list->isVisible());
    dialog.resize(60 * character, dialog.height());
    QTRY_VERIFY(!list->isVisible());

    dialog.showPage("slope");
    QuvoLanguageManager::getInstance()->changeLanguage("FRENCH");
    QTRY_COMPARE(dialog.windowTitle(), QStringLiteral("Aide"));
    QVERIFY(dialog.findChild<QTextBrowser *>()->toPlainText().contains("Raide"));
    QCOMPARE(list->count(), 2);
    QVERIFY(!dialog.findChild<QAbstractButton *>("guide_back")->isEnabled());
}

QTEST_MAIN(HelpDialogTest)
#include "helpdialog_test.moc"
