#include "app/window/focuscue.h"

#include <QDialog>
#include <QPushButton>
#include <QTest>

class FocusCueTest : public QObject
{
    Q_OBJECT

private slots:
    void windowsThatKeysOpen();
};

void FocusCueTest::windowsThatKeysOpen()
{
    showFocusAfterKeys();
    QDialog first;
    QPushButton open(&first);
    QDialog second(&first);
    QPushButton inside(&second);
    QObject::connect(&open, &QPushButton::clicked, &second, &QDialog::show);
    first.show();
    QVERIFY(QTest::qWaitForWindowActive(&first));
    QVERIFY(!first.testAttribute(Qt::WA_KeyboardFocusChange)); // nothing was pressed yet
    QTest::mouseClick(&open, Qt::LeftButton);
    QVERIFY(QTest::qWaitForWindowActive(&second));
    QTRY_VERIFY(inside.hasFocus());
    QVERIFY(!second.testAttribute(Qt::WA_KeyboardFocusChange));
    QTest::keyClick(&inside, Qt::Key_Escape);
    first.activateWindow();
    QVERIFY(QTest::qWaitForWindowActive(&first));
    QTRY_VERIFY(open.hasFocus());
    QVERIFY(first.testAttribute(Qt::WA_KeyboardFocusChange)); // the focus came back by a key
    QTest::keyClick(&open, Qt::Key_Space);
    QVERIFY(QTest::qWaitForWindowActive(&second));
    QTRY_VERIFY(inside.hasFocus());
    QVERIFY(second.testAttribute(Qt::WA_KeyboardFocusChange));
    second.hide();
    QDialog third(&first);
    QPushButton last(&third);
    open.disconnect();
    QObject::connect(&open, &QPushButton::clicked, &third, &QDialog::show);
    QTest::mouseClick(&open, Qt::LeftButton);
    QVERIFY(QTest::qWaitForWindowActive(&third));
    QTRY_VERIFY(last.hasFocus());
    QVERIFY(!third.testAttribute(Qt::WA_KeyboardFocusChange)); // the mouse came after the keys
}

QTEST_MAIN(FocusCueTest)
#include "focuscue_test.moc"
