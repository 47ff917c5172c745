#include "dataset/chooser/ImageChooser.h"

#include "dataset/QuvoFilerDialog.h"
#include "dataset/chooser/ItemLister.h"
#include "dataset/chooser/SourceView.h"
#include "dataset/chooser/TileForm.h"
#include "dataset/chooser/filefilters.h"
#include "dataset/chooser/ownraster.h"
#include "dataset/hgt.h"
#include "dataset/pathencoding.h"
#include "dataset/workfolder.h"
#include "messages/Prompt.h"
#include "messages/label.h"

#include <QApplication>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QGuiApplication>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QScreen>
#include <QSignalBlocker>
#include <QSplitter>
#include <QTreeWidget>
#include <QVBoxLayout>

#include <utility>

namespace
{

constexpr int sliceLength = 30; // ms

/// The cursor of a wait while an object lives.
struct WaitCursor
{
    WaitCursor() { QApplication::setOverrideCursor(Qt::WaitCursor); }
    ~WaitCursor() { QApplication::restoreOverrideCursor(); }
    Q_DISABLE_COPY_MOVE(WaitCursor)
};

SourceInfo readPatiently(const QString &name, SourceWanted wanted)
{
    const WaitCursor cursor;
    return readSourceInfo(name, wanted);
}

QString itemName(const QTreeWidgetItem *item)
{
    return item ? item->data(0, Qt::UserRole).toString() : QString();
}

void addItem(QTreeWidget *list, const SourceItem &source)
{
    auto item = new QTreeWidgetItem(list, {source.title});
    item->setData(0, Qt::UserRole, source.name);
    item->setToolTip(0, source.name);
}

QPushButton *button(const char *name, const QString &text, QWidget *parent)
{
    auto made = new QPushButton(text, parent);
    made->setObjectName(QLatin1String(name));
    made->setAutoDefault(false); // Return means something else in each field
    return made;
}

/// A usual size, as far as the screen has room.
QSize firstSize()
{
    constexpr QSize usual(920, 540);
    constexpr QSize frame(20, 50);
    const QScreen *screen = QGuiApplication::primaryScreen();
    return screen ? usual.boundedTo(screen->availableSize() - frame) : usual;
}

} // namespace

ImageChooser::ImageChooser(SourceWanted wanted, WorkFolder &workFolder, QWidget *parent)
    : QDialog(parent)
    , m_wanted(wanted)
    , m_workFolder(workFolder)
{
    setWindowFlag(Qt::WindowContextHelpButtonHint, false);
    setWindowTitle(wanted == SourceWanted::Rasters
                       ? labelText({"MESS_SRC_TITRE", "Choisir une source de données"})
                       : labelText({"MESS_SRC_TITRE_VECT", "Choisir une couche vecteur"}));
    auto layout = new QVBoxLayout(this);
    layout->addLayout(sourceRow());
    auto middle = new QSplitter(Qt::Horizontal, this);
    m_pItems = new QTreeWidget(middle);
    m_pItems->setObjectName(QStringLiteral("m_pItems"));
    m_pItems->setAccessibleName(labelText({"MESS_SRC_CONTENU", "Contenu"}));
    m_pItems->setHeaderLabel(labelText({"MESS_SRC_CONTENU", "Contenu"}));
    m_pItems->setRootIsDecorated(false);
    m_pItems->setUniformRowHeights(true);
    m_pItems->setTextElideMode(Qt::ElideMiddle); // names often differ at their ends
    m_pItems->hide();
    m_pView = new SourceView(middle);
    middle->setChildrenCollapsible(false);
    middle->setStretchFactor(1, 1);
    middle->setSizes({200, 700}); // proportions
    layout->addWidget(middle, 1);
    m_pLProblem = new QLabel(this);
    m_pLProblem->setObjectName(QStringLiteral("m_pLProblem"));
    m_pLProblem->setTextFormat(Qt::PlainText);
    m_pLProblem->setWordWrap(true);
    m_pLProblem->setTextInteractionFlags(Qt::TextSelectableByMouse);
    layout->addWidget(m_pLProblem);
    layout->addLayout(buttonRow());
    resize(firstSize());
    connectControls();
    showSource({});
}

ImageChooser::~ImageChooser() = default;

QHBoxLayout *ImageChooser::sourceRow()
{
    m_pLESource = new QLineEdit(this);
    m_pLESource->setObjectName(QStringLiteral("m_pLESource"));
    m_pLESource->setPlaceholderText(labelText(
        {"MESS_SRC_EXEMPLES", "Fichier, archive, dossier ou nom de GDAL (/vsizip/…, NETCDF:…, PG:…)"}));
    m_pLESource->setAccessibleName(labelText({"MESS_SRC_SOURCE", "Source"}));
    m_pPBOpen = button("m_pPBOpen", labelText({"MESS_SRC_EXAMINER", "Examiner"}), this);
    m_pPBFile = button("m_pPBFile", labelText({"MESS_SRC_FICHIER", "Fichier..."}), this);
    m_pPBFolder = button("m_pPBFolder", labelText({"MESS_SRC_DOSSIER", "Dossier..."}), this);
    auto row = new QHBoxLayout;
    row->addWidget(m_pLESource, 1);
    for (QPushButton *one : {m_pPBOpen, m_pPBFile, m_pPBFolder})
        row->addWidget(one);
    return row;
}

QHBoxLayout *ImageChooser::buttonRow()
{
    m_pPBReadTile =
        button("m_pPBReadTile", labelText({"MESS_HGT_OUVRIR", "Indiquer sa taille et sa place..."}), this);
    m_pPBConvert = button("m_pPBConvert", labelText({"MESS_ENT_REECRIRE", "Réécrire l'en-tête..."}), this);
    m_pPBChoose = button("m_pPBChoose", labelText({"MESS_SRC_CHOISIR", "Choisir"}), this);
    m_pPBCancel = button("m_pPBCancel", labelText({"MESS_ANNULER", "Annuler"}), this);
    auto row = new QHBoxLayout;
    row->addWidget(m_pPBReadTile);
    row->addWidget(m_pPBConvert);
    row->addStretch();
    row->addWidget(m_pPBChoose);
    row->addWidget(m_pPBCancel);
    return row;
}

void ImageChooser::connectControls()
{
    connect(&m_listTimer, &QTimer::timeout, this, &ImageChooser::listMore);
    connect(m_pLESource, &QLineEdit::textEdited, this, &ImageChooser::updateButtons);
    connect(m_pPBOpen, &QPushButton::clicked, this, &ImageChooser::openTyped);
    connect(m_pPBFile, &QPushButton::clicked, this, [this] { select(false); });
    connect(m_pPBFolder, &QPushButton::clicked, this, [this] { select(true); });
    connect(m_pItems, &QTreeWidget::currentItemChanged, this, &ImageChooser::showItem);
    connect(m_pItems, &QTreeWidget::itemActivated, this, &ImageChooser::activateItem);
    connect(m_pView, &SourceView::partChanged, this, &ImageChooser::updateButtons);
    connect(m_pView, &SourceView::activated, m_pPBChoose, &QPushButton::click);
    connect(m_pPBReadTile, &QPushButton::clicked, this, &ImageChooser::readTile);
    connect(m_pPBConvert, &QPushButton::clicked, this, &ImageChooser::convertHeader);
    connect(m_pPBChoose, &QPushButton::clicked, this, &QDialog::accept);
    connect(m_pPBCancel, &QPushButton::clicked, this, &QDialog::reject);
}

QString ImageChooser::name() const
{
    return m_pView->info().name;
}

int ImageChooser::band() const
{
    return m_pView->part() + 1;
}

QString ImageChooser::layer() const
{
    return m_pView->info().layers.value(m_pView->part()).name;
}

bool ImageChooser::isComplete() const
{
    return m_pView->part() >= 0 && m_pLESource->text() == m_source.name;
}

bool ImageChooser::isBusy() const
{
    return m_listTimer.isActive() || m_pView->isBusy();
}

void ImageChooser::setSource(const QString &name)
{
    m_pLESource->setText(name);
    openTyped();
}

void ImageChooser::openTyped()
{
    const QString typed = m_pLESource->text().trimmed();
    if (typed.isEmpty())
        return;
    m_source = readPatiently(dataSetName(typed, QDir::currentPath()), m_wanted);
    m_pLESource->setText(m_source.name);
    showSource(m_source);
    listItems();
}

void ImageChooser::select(bool folder)
{
    const auto formats = m_wanted == SourceWanted::Rasters ? rasterFileFormats() : vectorFileFormats();
    const QString shown = m_pLESource->text();
    const QString chosen = QuvoFilerDialog::getSelection(
        this, folder ? QuvoFilerDialog::OpenFolder : QuvoFilerDialog::OpenFile,
        folder ? labelText({"MESS_SRC_CHX_DOSSIER", "Choisir un dossier"})
               : labelText({"MESS_SRC_CHX_FICHIER", "Choisir un fichier"}),
        QFileInfo::exists(shown) ? shown : QString(), folder ? QString() : fileFilter(formats));
    if (!chosen.isEmpty())
        setSource(chosen);
}

/// Lists what the source contains: its subdatasets at once, the files of a folder or an archive in slices.
void ImageChooser::listItems()
{
    m_listTimer.stop();
    m_lister.reset();
    {
        const QSignalBlocker blocker(m_pItems);
        m_pItems->clear();
        for (const SourceItem &item : std::as_const(m_source.items))
            addItem(m_pItems, item);
    }
    m_pItems->setVisible(!m_source.items.isEmpty() || !m_source.listing.isEmpty());
    if (!m_source.listing.isEmpty()) {
        m_lister = std::make_unique<ItemLister>(m_source.listing, m_wanted);
        m_listTimer.start(0);
    } else if (m_source.kind == SourceKind::Container) {
        m_pItems->setCurrentItem(m_pItems->topLevelItem(0));
    }
}

void ImageChooser::listMore()
{
    const bool hasMore = m_lister->advance(sliceLength);
    for (auto at = m_pItems->topLevelItemCount(); at < m_lister->items().size(); ++at)
        addItem(m_pItems, m_lister->items().at(at));
    if (hasMore)
        return;
    m_listTimer.stop();
    m_pItems->sortItems(0, Qt::AscendingOrder);
    if (m_pItems->topLevelItemCount() == 0)
        m_pLProblem->setText(labelText({"MESS_SRC_VIDE",
                                        "Rien dans cette source ne peut servir ici : GDAL n'y reconnaît aucun "
                                        "fichier du genre voulu."}));
    else if (!m_pItems->currentItem())
        m_pItems->setCurrentItem(m_pItems->topLevelItem(0));
    updateButtons();
}

void ImageChooser::showItem()
{
    const QString name = itemName(m_pItems->currentItem());
    if (!name.isEmpty())
        showSource(readPatiently(name, m_wanted));
}

/// Chooses the item, or opens it where it contains further ones.
void ImageChooser::activateItem()
{
    if (isComplete())
        accept();
    else if (m_pView->info().kind == SourceKind::Container)
        setSource(name());
}

void ImageChooser::showSource(const SourceInfo &info)
{
    m_pView->showSource(info);
    m_pLProblem->setText(info.problem);
    m_pPBReadTile->setVisible(info.mayBeTile);
    m_pPBConvert->setVisible(info.header && isOlderHeader(*info.header));
    updateButtons();
}

void ImageChooser::updateButtons()
{
    m_pLProblem->setHidden(m_pLProblem->text().isEmpty());
    m_pPBChoose->setEnabled(isComplete());
    m_pPBOpen->setEnabled(!m_pLESource->text().trimmed().isEmpty());
}

void ImageChooser::keyPressEvent(QKeyEvent *event)
{
    const bool isReturn = event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter;
    if (!isReturn) {
        QDialog::keyPressEvent(event);
        return;
    }
    if (const auto button = qobject_cast<QPushButton *>(focusWidget()))
        button->click();
    else if (focusWidget() == m_pLESource && isComplete())
        accept();
    else if (focusWidget() == m_pLESource)
        openTyped();
}

/// Asks for size and place of a file without a header, and opens a virtual raster that states them.
void ImageChooser::readTile()
{
    const QFileInfo file(name());
    TileForm form(file.fileName(), file.size(), this);
    if (form.exec() != QDialog::Accepted)
        return;
    QFile raster(m_workFolder.newFolder() + QLatin1Char('/') + file.completeBaseName()
                 + QStringLiteral(".vrt"));
    const QByteArray text = tileVrt(form.tile(), file.absoluteFilePath());
    const bool written = raster.open(QIODevice::WriteOnly) && raster.write(text) == text.size();
    raster.close();
    if (written)
        setSource(raster.fileName());
    else
        Prompt::warning(this,
                        labelText({"MESS_HGT_ECRIRE", "« %1 » n'a pas pu être écrit."}).arg(raster.fileName()));
}

void ImageChooser::convertHeader()
{
    const QString path = name();
    if (!Prompt::question(this,
                          labelText({"MESS_ENT_QUESTION",
                                     "L'en-tête de « %1 » va être réécrit dans sa forme actuelle. Les cellules "
                                     "restent telles quelles. Continuer ?"})
                              .arg(QDir::toNativeSeparators(path))))
        return;
    const QString text = convertOwnHeader(path);
    if (!text.isEmpty())
        Prompt::warning(this, text);
    showSource(readPatiently(path, m_wanted));
}
