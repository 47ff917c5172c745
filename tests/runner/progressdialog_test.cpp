#include "runner/ProgressWidget.h"
#include "runner/QuvoProgressDialog.h"

#include <QLabel>
#include <QProgressBar>
#include <QPushButton>
#include <QSignalSpy>
#include <QTest>

class ProgressDialogTest : public QObject
{
    Q_OBJECT

private slots:
    void zeroAndRepeatsChangeNothing();
    void sizeFitsTheText();
    void stopButtonEscapeAndClosingCancel();
    void blocksTheActiveWindow();
    void wheelTurnsWhileShown();
};

void ProgressDialogTest::zeroAndRepeatsChangeNothing()
{
    QuvoProgressDialog dialog;
    const auto elapsed = dialog.findChild<QLabel *>("m_pLElapsedTimeValue");
    const auto left = dialog.findChild<QLabel *>("m_pLLeftTimeValue");
    dialog.show();
    dialog.setProgress(0);
    QCOMPARE(elapsed->text(), QStringLiteral("0 second(s)"));
    QCOMPARE(left->text(), QStringLiteral("0 second(s)"));
    QTest::qWait(1100);
    dialog.setProgress(50);
    QCOMPARE(elapsed->text(), QStringLiteral("1 second(s)"));
    QCOMPARE(left->text(), QStringLiteral("1 second(s)"));
    QTest::qWait(1100);
    dialog.setProgress(50);
    QCOMPARE(elapsed->text(), QStringLiteral("1 second(s)"));
    dialog.setProgress(100);
    QCOMPARE(left->text(), QString());
    dialog.show();
    QCOMPARE(elapsed->text(), QStringLiteral("0 second(s)"));
    QVERIFY(dialog.findChild<QProgressBar *>("m_pProgressBar")->value() <= 0);
}

void ProgressDialogTest::sizeFitsTheText()
{
    QuvoProgressDialog dialog;
    dialog.setPixmap(QPixmap(48, 48));
    dialog.show();
    const QSize small = dialog.size();
    QVERIFY(small.width() > 200 && small.height() > 60);
    QCOMPARE(dialog.minimumSize(), dialog.maximumSize());

    dialog.setTitle(QStringLiteral("a title that is far too long for one line ").repeated(6));
    QVERIFY(dialog.height() > small.height());
    QCOMPARE(dialog.width(), small.width());
    const auto title = dialog.findChild<QLabel *>("m_pTitleLabel");
    QVERIFY(title->height() >= title->heightForWidth(title->width()));
    const auto time = dialog.findChild<QLabel *>("m_pLLeftTimeValue");
    QVERIFY(time->width()
            >= time->fontMetrics().horizontalAdvance("20 hour(s), 50 minute(s) and 50 second(s)"));
}

void ProgressDialogTest::stopButtonEscapeAndClosingCancel()
{
    QuvoProgressDialog dialog;
    const QSignalSpy cancelled(&dialog, &QuvoProgressDialog::cancelled);
    const auto stop = dialog.findChild<QPushButton *>("m_pPBStop");
    dialog.show();
    QTest::mouseClick(stop, Qt::LeftButton);
    QVERIFY(!dialog.isVisible());
    dialog.show();
    QTest::keyClick(&dialog, Qt::Key_Escape);
    dialog.show();
    dialog.close();
    QCOMPARE(cancelled.count(), 3);

    // A slot shows the window for the next list: the rejection of the old list must not hide it.
    const auto shownAgain =
        connect(&dialog, &QuvoProgressDialog::cancelled, &dialog, &QuvoProgressDialog::show);
    dialog.show();
    QTest::keyClick(&dialog, Qt::Key_Escape);
    QVERIFY(dialog.isVisible());
    disconnect(shownAgain);

    dialog.setStopButtonVisible(false);
    dialog.show();
    QVERIFY(!stop->isVisible());
    dialog.hide();
    QCOMPARE(cancelled.count(), 4);
}

void ProgressDialogTest::blocksTheActiveWindow()
{
    QPushButton owner(QStringLiteral("owner"));
    owner.show();
    owner.activateWindow();
    QVERIFY(QTest::qWaitForWindowActive(&owner));
    const QSignalSpy clicked(&owner, &QPushButton::clicked);

    QuvoProgressDialog dialog;
    dialog.show();
    QTest::mouseClick(owner.windowHandle(), Qt::LeftButton, Qt::NoModifier, owner.rect().center());
    QCOMPARE(clicked.count(), 0);
    dialog.hide();
    QTest::mouseClick(owner.windowHandle(), Qt::LeftButton, Qt::NoModifier, owner.rect().center());
    QCOMPARE(clicked.count(), 1);
}

void ProgressDialogTest::wheelTurnsWhileShown()
{
    ProgressWidget wheel;
    wheel.resize(wheel.sizeHint());
    wheel.show();
    const QImage first = wheel.grab().toImage();
    QTRY_VERIFY(wheel.grab().toImage() != first);
}

QTEST_MAIN(ProgressDialogTest)
#include "progressdialog_test.moc"
