#include "app/series/SeveralDems.h"

#include "app/process/productname.h"
#include "app/series/SeriesResultDialog.h"
#include "dataset/QuvoFilerDialog.h"
#include "dataset/chooser/filefilters.h"
#include "dataset/rasterinfo.h"
#include "dataset/views/mosaic.h"
#include "messages/Prompt.h"
#include "messages/label.h"
#include "runner/desktopnotice.h"

#include <QApplication>
#include <QDir>
#include <QFileInfo>
#include <QWindow>

#include <algorithm>
#include <utility>

namespace
{

/// Shows the pointer of a program at work while an object lives.
class BusyPointer
{
public:
    BusyPointer() { QApplication::setOverrideCursor(Qt::WaitCursor); }
    ~BusyPointer() { QApplication::restoreOverrideCursor(); }
    BusyPointer(const BusyPointer &) = delete;
    BusyPointer &operator=(const BusyPointer &) = delete;
};

/// The DEMs that the paths name, sorted, each once. A folder that GDAL opens is a DEM itself.
QStringList demsOf(const QStringList &paths)
{
    const BusyPointer busy;
    QStringList dems;
    for (const QString &path : paths) {
        if (QFileInfo(path).isDir() && !readRasterInfo(path).problem.isEmpty())
            dems += withoutProducts(rastersInFolder(path));
        else
            dems += QFileInfo(path).absoluteFilePath();
    }
    dems.sort();
    dems.removeDuplicates();
    return dems;
}

} // namespace

SeveralDems::SeveralDems(QuvoScriptRunner &runner, const ToolPaths &tools, WorkFolder &workFolder,
                         Window window)
    : m_workFolder(workFolder)
    , m_window(std::move(window))
    , m_series(runner, tools, workFolder)
{
    connect(&m_series, &DemSeries::finished, this, &SeveralDems::showSummary);
}

void SeveralDems::open(const QStringList &paths)
{
    if (m_series.isRunning())
        return;
    const QStringList dems = demsOf(paths);
    if (dems.isEmpty()) {
        Prompt::warning(m_window.widget,
                        labelText({"MESS_DOSSIER_SANS_MNT", "Ce dossier ne contient aucun MNT."}));
        return;
    }
    if (dems.size() == 1) {
        m_window.showDem(dems.first());
        return;
    }
    const QString question =
        labelText({"MESS_MNT_PLUSIEURS",
                   "%1 MNT sont choisis. Forment-ils un seul MNT, dont ils sont les tuiles, ou faut-il "
                   "lancer le traitement affiché sur chacun, l'un après l'autre ?"})
            .arg(dems.size());
    const int answer = Prompt::choice(
        m_window.widget, question,
        {labelText({"MESS_MNT_MOSAIQUE", "Un seul MNT"}), labelText({"MESS_MNT_CHACUN", "Chacun séparément"})});
    if (answer == 0)
        openMosaic(dems);
    else if (answer == 1)
        runEach(dems);
}

void SeveralDems::slot_selectTiles()
{
    const QStringList files =
        QuvoFilerDialog::getFiles(m_window.widget, labelText({"MESS_CHX_TUILES", "Choisir plusieurs MNT"}),
                                  m_window.folder(), fileFilter(rasterFileFormats()));
    if (!files.isEmpty())
        open(files);
}

void SeveralDems::slot_selectFolder()
{
    const QString folder = QuvoFilerDialog::getSelection(
        m_window.widget, QuvoFilerDialog::OpenFolder,
        labelText({"MESS_CHX_DOSSIER_MNT", "Choisir un dossier de MNT"}), m_window.folder(), QString());
    if (!folder.isEmpty())
        open({folder});
}

void SeveralDems::openMosaic(const QStringList &dems)
{
    const Mosaic mosaic = [&] {
        const BusyPointer busy;
        return makeMosaic(dems, m_workFolder);
    }();
    for (const QString &text : mosaic.warnings + QStringList{mosaic.problem}) {
        if (!text.isEmpty())
            Prompt::warning(m_window.widget, text);
    }
    if (mosaic.problem.isEmpty())
        m_window.showMosaic(mosaic.path, dems);
}

void SeveralDems::runEach(const QStringList &dems)
{
    const auto recipe = m_window.recipe();
    if (!recipe)
        return;
    const QVector<SeriesRow> rows = seriesRows(*recipe, dems);
    const int existing = existingProducts(rows);
    const bool overwrite = existing > 0
        && Prompt::question(m_window.widget,
                            labelText(
                                {"MESS_SERIE_REMPLACER",
                                 "%1 des %2 produits existent déjà. Voulez-vous les remplacer ? Sinon, ils "
                                 "restent tels quels."})
                                .arg(QString::number(existing), QString::number(rows.size())));
    emit seriesBegins();
    m_series.start(*recipe, rows, overwrite);
}

void SeveralDems::showSummary()
{
    emit seriesEnded();
    auto dialog = new SeriesResultDialog(m_series.rows(), m_window.widget);
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    dialog->open();
    announceEnd(m_window.widget->windowHandle(), dialog->windowTitle(), seriesText(m_series.rows()));
}
