#include "app/window/input/InputDem.h"

#include "app/startup/settings.h"
#include "app/window/input/inputrules.h"
#include "dataset/QuvoFilerDialog.h"
#include "dataset/pathencoding.h"
#include "dataset/views/mosaic.h"
#include "messages/Prompt.h"
#include "messages/label.h"

#include <QComboBox>
#include <QDateTime>
#include <QDir>
#include <QFileInfo>
#include <QKeyEvent>
#include <QLineEdit>
#include <QSignalBlocker>

namespace
{

constexpr int typingPause = 300; // ms

QString filterPattern()
{
#ifdef Q_OS_WIN
    return QStringLiteral("*.*");
#else
    return QStringLiteral("*");
#endif
}

/// Identifies the file's content by its size and the time of its last change. Equal for all virtual paths.
QString fileState(const QString &path)
{
    const QFileInfo file(path);
    return QStringLiteral("%1 %2").arg(QString::number(file.size()),
                                       QString::number(file.lastModified().toMSecsSinceEpoch()));
}

} // namespace

InputDem::InputDem(QComboBox *paths, QComboBox *bands, QWidget *dialog)
    : m_paths(paths)
    , m_bands(bands)
    , m_dialog(dialog)
{
    m_paths->setCompleter(nullptr);
    m_paths->addItems(readRecentFiles());
    m_paths->setCurrentIndex(-1);
    m_bands->setEnabled(false);
    m_typingTimer.setSingleShot(true);
    m_typingTimer.setInterval(typingPause);

    connect(m_paths, qOverload<int>(&QComboBox::activated), this, &InputDem::openListed);
    connect(m_paths->lineEdit(), &QLineEdit::textEdited, this, &InputDem::onTyped);
    m_paths->installEventFilter(this);
    m_paths->lineEdit()->installEventFilter(this);
    connect(&m_typingTimer, &QTimer::timeout, this, &InputDem::tryTyped);
    connect(this, &InputDem::changed, this, &InputDem::updateDem);
    connect(m_bands, qOverload<int>(&QComboBox::currentIndexChanged), this, &InputDem::updateDem);
    connect(&m_scan, &ExtremesScan::finished, this, &InputDem::onScanned);
}

QString InputDem::path() const
{
    return m_paths->currentText() == m_shown ? m_path : QString();
}

QStringList InputDem::tiles() const
{
    return path().isEmpty() ? QStringList() : m_tiles;
}

QString InputDem::namingInput() const
{
    return tiles().isEmpty() ? path() : mosaicName(m_tiles);
}

int InputDem::band() const
{
    return qMax(0, m_bands->currentIndex()) + 1;
}

void InputDem::updateDem()
{
    m_scan.stop();
    m_dem = {path(), band(), {}, !path().isEmpty(), fileState(path())};
    emit demChanged(m_dem);
    if (m_dem.searching)
        m_scan.start(m_dem.path, m_dem.band, ExtremesReader::Estimate);
}

/// After an estimate, reads every cell where that takes about a second.
void InputDem::onScanned(const Extremes &extremes)
{
    constexpr double quicklyRead = 25e6; // cells
    setExtremes(extremes);
    if (!extremes.exact && !extremes.unreadable && m_cellCount <= quicklyRead)
        m_scan.start(m_dem.path, m_dem.band, ExtremesReader::Exact);
}

void InputDem::setExtremes(const Extremes &extremes)
{
    m_scan.stop();
    m_dem.extremes = extremes;
    m_dem.searching = false;
    emit demChanged(m_dem);
}

bool InputDem::eventFilter(QObject *watched, QEvent *event)
{
    if (event->type() == QEvent::Wheel && watched == m_paths)
        return true;
    if (event->type() == QEvent::KeyPress) {
        const auto key = static_cast<QKeyEvent *>(event);
        if (key->key() == Qt::Key_Return || key->key() == Qt::Key_Enter) {
            const bool launches = key->modifiers().testFlag(Qt::ControlModifier); // handled by the dialog
            if (!launches || path().isEmpty())
                openTyped();
            return !launches;
        }
    }
    return QObject::eventFilter(watched, event);
}

bool InputDem::choose(const QString &path)
{
    if (open(path, MoveToFront))
        return true;
    if (!path.isEmpty()) {
        showOpenedPath();
        warn(path);
    }
    return false;
}

bool InputDem::chooseMosaic(const QString &path, const QStringList &tiles)
{
    m_typingTimer.stop();
    const RasterInfo info = readRasterInfo(path);
    if (info.problem.isEmpty()) {
        accept(path, info, tiles, MoveToFront);
        return true;
    }
    m_problem = info.problem;
    showOpenedPath();
    warn(mosaicTitle(tiles));
    return false;
}

/// Opens the typed path. Where that fails the text stays, so that the user can mend it, and there is no DEM.
void InputDem::openTyped()
{
    const QString typed = m_paths->currentText();
    if (typed.isEmpty() || !tiles().isEmpty() || open(typed, MoveToFront))
        return;
    emit changed(path());
    warn(typed);
}

void InputDem::openListed(int row)
{
    const QString listed = m_paths->itemText(row);
    if (open(listed, KeepOrder))
        return;
    showOpenedPath();
    warn(listed);
}

/// Shows the path of the open DEM again.
void InputDem::showOpenedPath()
{
    {
        const QSignalBlocker blocker(m_paths);
        m_paths->setCurrentIndex(m_paths->findText(m_shown));
        m_paths->setEditText(m_shown);
    }
    emit changed(path());
}

/// Says why the file was not opened.
void InputDem::warn(const QString &file)
{
    Prompt::warning(
        m_dialog,
        QStringLiteral("%1\n\n%2\n\n%3")
            .arg(labelText({"MESS_INV_INPUT_FILE", "Le fichier d'entrée n'est pas valide"}), file, m_problem));
}

void InputDem::reopen()
{
    if (!path().isEmpty() && m_tiles.isEmpty())
        choose(path());
}

void InputDem::select()
{
    const StartDirectory choices{m_lastChosenFolder, m_keepStartingDir, QDir::currentPath(),
                                 tiles().isEmpty() ? m_paths->currentText() : m_tiles.first(),
                                 m_paths->itemText(1)};
    const QString path = QuvoFilerDialog::getSelection(
        m_dialog, QuvoFilerDialog::OpenFile,
        labelText({"MESS_CHX_MNT", "Choisir un Modèle Numérique de Terrain..."}), startDirectory(choices),
        QStringLiteral("%1 (%2)").arg(labelText({"MESS_MNT_EXP", "Modèle Numérique de Terrain"}),
                                      filterPattern()));
    if (path.isEmpty())
        return;
    m_lastChosenFolder = QFileInfo(path).absolutePath();
    choose(path);
}

bool InputDem::open(const QString &typed, Listing listing)
{
    m_typingTimer.stop();
    if (typed.isEmpty())
        return false;
    const QString name = rasterName(dataSetName(typed, QDir::currentPath()));
    const RasterInfo info = readRasterInfo(name);
    if (info.problem.isEmpty()) {
        accept(name, info, {}, listing);
        return true;
    }
    m_problem = info.problem;
    return false;
}

void InputDem::onTyped()
{
    emit changed(path());
    m_typingTimer.start();
}

/// Opens the typed path if it is a local file that holds a DEM. Shows no warning, since the user may still be
/// typing.
void InputDem::tryTyped()
{
    const QString typed = m_paths->currentText();
    if (typed == m_shown || isVirtualPath(typed) || !QFileInfo(typed).isFile())
        return;
    const QString name = QFileInfo(typed).absoluteFilePath();
    const RasterInfo info = readRasterInfo(name);
    if (info.problem.isEmpty())
        accept(name, info, {}, MoveToFront);
}

void InputDem::accept(const QString &accepted, const RasterInfo &info, const QStringList &tiles,
                      Listing listing)
{
    const bool same = accepted == m_path;
    m_path = accepted;
    m_tiles = tiles;
    m_shown = tiles.isEmpty() ? m_path : mosaicTitle(tiles);
    m_files = info.files;
    m_cellCount = static_cast<double>(info.width) * info.height;
    if (m_tiles.isEmpty()) // the mosaic lives as long as this program
        writeRecentFiles(withRecent(readRecentFiles(), m_path));
    showPath(listing);
    if (!same || m_bands->count() != info.bandCount) {
        m_bands->clear();
        for (int band = 1; band <= info.bandCount; ++band)
            m_bands->addItem(QString::number(band));
        m_bands->setEnabled(info.bandCount > 1);
    }
    emit changed(path());
}

/// Shows the path in the list and, unless the user chose it from the list, moves it to the front. Otherwise
/// arrow keys could not step through the list, because each step would reorder it.
void InputDem::showPath(Listing listing)
{
    const QSignalBlocker blocker(m_paths);
    const int fromEnd = static_cast<int>(m_paths->currentText().size()) - m_paths->lineEdit()->cursorPosition();
    if (listing == MoveToFront || m_paths->findText(m_shown) < 0) {
        m_paths->clear();
        m_paths->addItems(readRecentFiles());
    }
    m_paths->setCurrentIndex(m_paths->findText(m_shown));
    m_paths->setEditText(m_shown);
    m_paths->lineEdit()->setCursorPosition(qMax(0, static_cast<int>(m_shown.size()) - fromEnd));
    m_paths->setToolTip(m_tiles.isEmpty() ? QDir::toNativeSeparators(m_path) : tileLines(m_tiles));
}
