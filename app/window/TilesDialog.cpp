#include "app/window/TilesDialog.h"

#include "app/run/copiedcommand.h"
#include "dataset/QuvoFilerDialog.h"
#include "messages/Prompt.h"
#include "messages/QuvoLanguageManager.h"
#include "messages/label.h"
#include "runner/quoting.h"

#include <QApplication>
#include <QClipboard>
#include <QComboBox>
#include <QDir>
#include <QEvent>
#include <QFileInfo>
#include <QFontDatabase>
#include <QFormLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QSaveFile>
#include <QSignalBlocker>
#include <QSpinBox>
#include <QThread>
#include <QVBoxLayout>

namespace
{

constexpr int taskLines = 3;   // entry of the list of ways after those of TileWay
constexpr int mostTasks = 200; // so that their commands can be read; each makes a share of the tiles

} // namespace

TilesDialog::TilesDialog(const Recipe &recipe, const QString &programs, QWidget *parent)
    : QDialog(parent)
    , m_recipe(recipe)
    , m_programs(programs)
    , m_runner(nullptr)
    , m_pIntroduction(new QLabel(this))
    , m_pFolderLabel(new QLabel(this))
    , m_pLEFolder(new QLineEdit(this))
    , m_pPBFolder(new QPushButton(this))
    , m_pSideLabel(new QLabel(this))
    , m_pSBSide(new QSpinBox(this))
    , m_pPBPlan(new QPushButton(this))
    , m_pNote(new QLabel(this))
    , m_pWayLabel(new QLabel(this))
    , m_pCBWay(new QComboBox(this))
    , m_pCommand(new QPlainTextEdit(this))
    , m_pPBCopy(new QPushButton(this))
    , m_pPBClose(new QPushButton(this))
{
    setWindowFlag(Qt::WindowContextHelpButtonHint, false);
    m_pLEFolder->setObjectName(QStringLiteral("m_pLEFolder"));
    m_pSBSide->setObjectName(QStringLiteral("m_pSBSide"));
    m_pPBPlan->setObjectName(QStringLiteral("m_pPBPlan"));
    m_pCBWay->setObjectName(QStringLiteral("m_pCBWay"));
    m_pCommand->setObjectName(QStringLiteral("m_pCommand"));
    m_pNote->setObjectName(QStringLiteral("m_pNote"));
    constexpr int leastSide = 256;
    constexpr int greatestSide = 65536;
    constexpr int usualSide = 4096;
    m_pSBSide->setRange(leastSide, greatestSide);
    m_pSBSide->setSingleStep(leastSide);
    m_pSBSide->setValue(usualSide);
    const QFileInfo dem(namingInput(m_recipe));
    m_pLEFolder->setText(
        QStringLiteral("%1/%2_%3_tiles").arg(dem.path(), dem.completeBaseName(), m_recipe.process));
    for (int way = 0; way <= taskLines; ++way)
        m_pCBWay->addItem(QString());
    m_pCommand->setReadOnly(true);
    m_pCommand->setTabChangesFocus(true);
    m_pCommand->setFont(QFontDatabase::systemFont(QFontDatabase::FixedFont));
    arrange();
    applyTexts();
    connect(m_pPBFolder, &QPushButton::clicked, this, &TilesDialog::chooseFolder);
    connect(m_pLEFolder, &QLineEdit::textChanged, this, &TilesDialog::forgetPlan);
    connect(m_pSBSide, qOverload<int>(&QSpinBox::valueChanged), this, &TilesDialog::forgetPlan);
    connect(m_pPBPlan, &QPushButton::clicked, this, &TilesDialog::plan);
    connect(m_pCBWay, qOverload<int>(&QComboBox::currentIndexChanged), this, &TilesDialog::showCommand);
    connect(m_pPBCopy, &QPushButton::clicked, this, [this] {
        QApplication::clipboard()->setText(m_pCommand->toPlainText());
        Prompt::notice(m_pPBCopy, commandCopiedText());
    });
    connect(m_pPBClose, &QPushButton::clicked, this, &QDialog::close);
    connect(&m_runner, &QuvoUtilityRunner::normalTermination, this, &TilesDialog::onPlanned);
    connect(&m_runner, &QuvoUtilityRunner::error, this, &TilesDialog::onFailed);
    updateControls();
}

TilesDialog::~TilesDialog()
{
    m_runner.disconnect(this);
}

void TilesDialog::arrange()
{
    m_pIntroduction->setWordWrap(true);
    m_pNote->setWordWrap(true);
    m_pNote->setTextFormat(Qt::PlainText);
    m_pFolderLabel->setBuddy(m_pLEFolder);
    m_pSideLabel->setBuddy(m_pSBSide);
    m_pWayLabel->setBuddy(m_pCBWay);
    for (QPushButton *button : {m_pPBFolder, m_pPBCopy, m_pPBClose})
        button->setAutoDefault(false);
    auto folder = new QHBoxLayout;
    folder->addWidget(m_pLEFolder);
    folder->addWidget(m_pPBFolder);
    auto side = new QHBoxLayout;
    side->addWidget(m_pSBSide);
    side->addStretch();
    side->addWidget(m_pPBPlan);
    auto fields = new QFormLayout;
    fields->addRow(m_pFolderLabel, folder);
    fields->addRow(m_pSideLabel, side);
    auto ways = new QFormLayout;
    ways->addRow(m_pWayLabel, m_pCBWay);
    auto buttons = new QHBoxLayout;
    buttons->addWidget(m_pPBCopy);
    buttons->addStretch();
    buttons->addWidget(m_pPBClose);
    auto all = new QVBoxLayout(this);
    constexpr int space = 12;
    all->setSpacing(space);
    all->addWidget(m_pIntroduction);
    all->addLayout(fields);
    all->addWidget(m_pNote);
    all->addLayout(ways);
    all->addWidget(m_pCommand);
    all->addLayout(buttons);
    const QFontMetrics metrics = fontMetrics();
    constexpr int letters = 80;
    constexpr int lines = 24;
    resize(metrics.averageCharWidth() * letters, metrics.lineSpacing() * lines);
}

void TilesDialog::applyTexts()
{
    setWindowTitle(tr("Traitement en tuiles", "MESS_PLANT_TITRE"));
    m_pIntroduction->setText(tr(
        "Un grand MNT se traite en tuiles, sur plusieurs cœurs ou sur plusieurs machines. Le plan dit de quoi "
        "chaque tuile est faite ; une commande la calcule.",
        "MESS_PLANT_INTRO"));
    m_pFolderLabel->setText(tr("Dossier des tuiles :", "MESS_PLANT_DOSSIER"));
    m_pPBFolder->setText(tr("Choisir…", "MESS_PLANT_CHOISIR"));
    m_pSideLabel->setText(tr("Côté d'une tuile :", "MESS_PLANT_COTE"));
    m_pSBSide->setSuffix(QLatin1Char(' ') + tr("cellules", "MESS_PLANT_CELLULES"));
    m_pPBPlan->setText(tr("Enregistrer le plan", "MESS_PLANT_ENREG"));
    m_pWayLabel->setText(tr("Calculer les tuiles :", "MESS_PLANT_MANIERE"));
    m_pCBWay->setItemText(static_cast<int>(TileWay::OneProcess),
                          tr("sur cette machine, l'une après l'autre", "MESS_PLANT_ICI"));
    m_pCBWay->setItemText(static_cast<int>(TileWay::Snakemake),
                          tr("sur plusieurs cœurs, avec Snakemake", "MESS_PLANT_SNAKE"));
    m_pCBWay->setItemText(static_cast<int>(TileWay::SlurmArray),
                          tr("sur une grappe Slurm", "MESS_PLANT_SLURM"));
    m_pCBWay->setItemText(taskLines, tr("autrement : une ligne par tâche", "MESS_PLANT_LIGNES"));
    m_pPBCopy->setText(tr("Copier la commande", "MESS_REGL_COPIER"));
    m_pPBClose->setText(tr("Fermer", "MESS_FERMER"));
}

void TilesDialog::changeEvent(QEvent *event)
{
    if (event->type() == QEvent::LanguageChange)
        applyTexts();
    QDialog::changeEvent(event);
}

QStringList TilesDialog::dems() const
{
    return m_recipe.tiles.isEmpty() ? QStringList{m_recipe.input} : m_recipe.tiles;
}

TilePlace TilesDialog::place() const
{
    return {QDir::cleanPath(QDir::current().absoluteFilePath(m_pLEFolder->text())), m_programs,
            QThread::idealThreadCount()};
}

void TilesDialog::chooseFolder()
{
    const QString folder = QuvoFilerDialog::getSelection(
        this, QuvoFilerDialog::OpenFolder, tr("Choisir le dossier des tuiles", "MESS_PLANT_CHX_DOSS"),
        QFileInfo(m_pLEFolder->text()).path(), QString());
    if (!folder.isEmpty())
        m_pLEFolder->setText(folder);
}

void TilesDialog::updateControls()
{
    for (QWidget *widget : QList<QWidget *>{m_pLEFolder, m_pPBFolder, m_pSBSide})
        widget->setEnabled(!m_isRunning);
    m_pPBPlan->setEnabled(!m_isRunning && !m_pLEFolder->text().isEmpty());
    for (QWidget *widget : QList<QWidget *>{m_pWayLabel, m_pCBWay, m_pCommand, m_pPBCopy})
        widget->setEnabled(m_hasPlan);
    showCommand();
}

void TilesDialog::forgetPlan()
{
    m_hasPlan = false;
    m_pNote->clear();
    updateControls();
}

bool TilesDialog::writeFile(const QString &path, const QByteArray &text)
{
    QSaveFile file(path);
    const bool isWritten = file.open(QIODevice::WriteOnly) && file.write(text) == text.size() && file.commit();
    if (!isWritten)
        Prompt::critical(this,
                         dico_label("MESS_ERR_ECR_FICH", path.toLocal8Bit().constData())
                             + QStringLiteral("\n\n") + file.errorString());
    return isWritten;
}

void TilesDialog::plan()
{
    forgetPlan();
    const TilePlace where = place();
    if (!QDir().mkpath(where.folder)) {
        Prompt::critical(
            this,
            labelText({"MESS_DOSSIER_IMPOSS", "Le dossier « %1 » ne peut pas être créé."}).arg(where.folder));
        return;
    }
    if (!writeFile(tileRecipeFile(where.folder), writeRecipe(m_recipe))
        || !writeFile(snakemakeFile(where.folder), snakemakeValues(where, dems(), m_pSBSide->value())))
        return;
    QString command = quotedArgument(m_programs + QStringLiteral("/QuvoDemBatch"));
    for (const QString &argument : planArguments(where.folder, dems(), m_pSBSide->value(), mostTasks))
        command += QLatin1Char(' ') + quotedArgument(argument);
    m_pNote->setText(tr("Le plan est en cours de calcul…", "MESS_PLANT_EN_COURS"));
    m_isRunning = true;
    updateControls();
    m_runner.runCommand(command);
}

void TilesDialog::onPlanned()
{
    m_isRunning = false;
    m_hasPlan = true;
    m_tasks = QString::fromLocal8Bit(m_runner.outputTail().toLatin1()).trimmed(); // the runner reads bytes
    m_pNote->setText(m_runner.lastStandardError().trimmed());
    updateControls();
}

void TilesDialog::onFailed(const QString &text)
{
    m_isRunning = false;
    m_pNote->clear();
    updateControls();
    Prompt::warning(this,
                    tr("Le plan n'a pas pu être fait.", "MESS_PLANT_ECHEC") + QStringLiteral("\n\n")
                        + text.trimmed());
}

void TilesDialog::showCommand()
{
    const int way = m_pCBWay->currentIndex();
    if (!m_hasPlan)
        m_pCommand->clear();
    else
        m_pCommand->setPlainText(way == taskLines ? m_tasks : tileCommand(static_cast<TileWay>(way), place()));
}
