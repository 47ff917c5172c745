#include "dataset/QuvoFilerDialog.h"

#include <QApplication>
#include <QFileDialog>
#include <QFileInfo>
#include <QHeaderView>
#include <QTemporaryDir>
#include <QTest>
#include <QTimer>
#include <QTreeView>

#include <functional>

class FilerDialogTest : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void remembersSizeAndFolder();
    void columnsCanBeRead();
    void foldersAndFiles();

private:
    /// Shows a dialog, calls `act` with it and returns the selection.
    QString shown(QuvoFilerDialog::Kind kind, const QString &start,
                  const std::function<void(QFileDialog &)> &act)
    {
        QTimer::singleShot(50, [act] {
            auto dialog = qobject_cast<QFileDialog *>(QApplication::activeModalWidget());
            QVERIFY(dialog);
            act(*dialog);
            if (dialog->isVisible())
                dialog->reject();
        });
        return QuvoFilerDialog::getSelection(nullptr, kind, "title", start, "All (*)");
    }

    QTemporaryDir m_folder;
};

namespace
{

void accept(QFileDialog &dialog)
{
    QMetaObject::invokeMethod(&dialog, "accept");
}

} // namespace

void FilerDialogTest::initTestCase()
{
    QApplication::setAttribute(Qt::AA_DontUseNativeDialogs);
    QFile file(m_folder.filePath("dem.tif"));
    QVERIFY(file.open(QIODevice::WriteOnly));
}

void FilerDialogTest::columnsCanBeRead()
{
    QuvoFilerDialog::setState({});
    shown(QuvoFilerDialog::OpenFile, m_folder.path(), [](QFileDialog &dialog) {
        const auto files = dialog.findChild<QTreeView *>("treeView");
        const QFontMetrics metrics = files->fontMetrics();
        QVERIFY(files->columnWidth(0) >= metrics.horizontalAdvance("srtm_38_03_with_a_longer_name.tif"));
        QVERIFY(files->columnWidth(3) >= metrics.horizontalAdvance("30/12/2000 20:00"));
        QVERIFY(files->viewport()->width() >= files->header()->length() - 40);
    });
}

void FilerDialogTest::remembersSizeAndFolder()
{
    QuvoFilerDialog::setState("no state");
    const QString file = m_folder.filePath("dem.tif");
    QCOMPARE(shown(QuvoFilerDialog::OpenFile, file,
                   [&](QFileDialog &dialog) {
                       dialog.resize(801, 603);
                       accept(dialog);
                   }),
             file);
    const QByteArray stored = QuvoFilerDialog::state();
    QuvoFilerDialog::setState({}); // as at the next start
    QuvoFilerDialog::setState(stored);
    QCOMPARE(shown(QuvoFilerDialog::OpenFile, {},
                   [&](QFileDialog &dialog) {
                       QCOMPARE(dialog.size(), QSize(801, 603));
                       QCOMPARE(dialog.directory().path(), m_folder.path());
                   }),
             QString());
    // A start wins over the folder that is remembered.
    shown(QuvoFilerDialog::OpenFile, QDir::rootPath(),
          [](QFileDialog &dialog) { QCOMPARE(dialog.directory().path(), QDir::rootPath()); });
}

void FilerDialogTest::foldersAndFiles()
{
    QCOMPARE(shown(QuvoFilerDialog::OpenFolder, m_folder.path(), [&](QFileDialog &dialog) { accept(dialog); }),
             m_folder.path());
    // A file that exists may be chosen for saving without a question, and one that does not may not be opened.
    const QString file = m_folder.filePath("dem.tif");
    QCOMPARE(shown(QuvoFilerDialog::SaveFile, file, [&](QFileDialog &dialog) { accept(dialog); }), file);
    shown(QuvoFilerDialog::OpenFile, file, [&](QFileDialog &dialog) {
        QCOMPARE(dialog.selectedFiles(), QStringList{file});
        QCOMPARE(dialog.fileMode(), QFileDialog::ExistingFile);
    });
}

QTEST_MAIN(FilerDialogTest)
#include "filerdialog_test.moc"
