#include "app/window/RecentRunsDialog.h"

#include "app/preview/PreviewDialog.h"
#include "app/window/launch/runresults.h"
#include "dataset/views/mosaic.h"
#include "messages/Prompt.h"

#include <QDir>
#include <QEvent>
#include <QFile>
#include <QFileInfo>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QPushButton>
#include <QTableWidget>

namespace
{

QTableWidgetItem *cell(const QString &text, const QString &toolTip = {})
{
    auto item = new QTableWidgetItem(text);
    item->setFlags(Qt::ItemIsEnabled | Qt::ItemIsSelectable);
    item->setToolTip(toolTip);
    return item;
}

QString fileName(const QString &path)
{
    return path.section(QLatin1Char('/'), -1);
}

} // namespace

QString startText(const RecentRun &run)
{
    return run.started.toLocalTime().toString(QStringLiteral("yyyy-MM-dd hh:mm"));
}

QString processTitle(const QString &word)
{
    const NamedProcess *process = findProcess(word);
    if (!process)
        return word;
    const QString title = labelText(processRow(process->process).title);
    return process->process == Process::TriTpiRoughness ? QStringLiteral("%1 (%2)").arg(title, word) : title;
}

RecentRunsDialog::RecentRunsDialog(const QString &file, QWidget *parent)
    : QDialog(parent)
    , m_file(file)
    , m_runs(readRecentRuns(file))
    , m_pTable(new QTableWidget(this))
    , m_pPBChoose(new QPushButton(this))
    , m_pPBShowResult(new QPushButton(this))
    , m_pPBClear(new QPushButton(this))
    , m_pPBClose(new QPushButton(this))
{
    setWindowFlag(Qt::WindowContextHelpButtonHint, false);
    m_pTable->setColumnCount(6);
    m_pTable->setSelectionBehavior(QAbstractItemView::SelectRows);
    m_pTable->setSelectionMode(QAbstractItemView::SingleSelection);
    m_pTable->setWordWrap(false);
    m_pTable->horizontalHeader()->setDefaultAlignment(Qt::AlignLeft | Qt::AlignVCenter);
    m_pTable->setTabKeyNavigation(false); // Tab moves the focus to the buttons
    m_pTable->verticalHeader()->hide();
    m_pTable->setTextElideMode(Qt::ElideMiddle); // names often differ at their ends
    m_pTable->horizontalHeader()->setSectionResizeMode(QHeaderView::ResizeToContents);
    for (const int names : {4, 5})
        m_pTable->horizontalHeader()->setSectionResizeMode(names, QHeaderView::Stretch);
    m_pPBShowResult->setObjectName(QStringLiteral("m_pPBShowResult"));
    m_pPBShowResult->setAutoDefault(false);
    m_pPBClear->setAutoDefault(false);
    m_pPBClose->setAutoDefault(false);
    auto buttons = new QHBoxLayout;
    buttons->addWidget(m_pPBClear);
    buttons->addStretch();
    buttons->addWidget(m_pPBShowResult);
    buttons->addWidget(m_pPBChoose);
    buttons->addWidget(m_pPBClose);
    auto layout = new QVBoxLayout(this);
    layout->addWidget(m_pTable);
    layout->addLayout(buttons);
    applyTexts();
    m_pTable->setAccessibleName(windowTitle());
    m_pTable->selectRow(0);
    resize(fontMetrics().averageCharWidth() * 130, fontMetrics().height() * 25);

    connect(m_pTable, &QTableWidget::cellDoubleClicked, this, &RecentRunsDialog::choose);
    connect(m_pPBChoose, &QPushButton::clicked, this, [this] { choose(m_pTable->currentRow()); });
    connect(m_pPBShowResult, &QPushButton::clicked, this, &RecentRunsDialog::showResult);
    connect(m_pTable, &QTableWidget::itemSelectionChanged, this, &RecentRunsDialog::updateButtons);
    updateButtons();
    connect(m_pPBClear, &QPushButton::clicked, this, &RecentRunsDialog::clear);
    connect(m_pPBClose, &QPushButton::clicked, this, &QDialog::reject);
}

void RecentRunsDialog::applyTexts()
{
    setWindowTitle(tr("Derniers traitements", "MESS_HIST_TITRE"));
    QStringList titles{tr("Date", "MESS_HIST_DATE"),    tr("Traitement", "MESS_HIST_TRAIT"),
                       tr("Résultat", "MESS_HIST_RES"), tr("Durée", "MESS_HIST_DUREE"),
                       tr("MNT", "MESS_HIST_MNT"),      tr("Fichier créé", "MESS_HIST_FICHIER")};
    for (QString &title : titles)
        title += QStringLiteral("  "); // distance from the next title
    m_pTable->setHorizontalHeaderLabels(titles);
    m_pTable->setRowCount(static_cast<int>(m_runs.size()));
    for (int row = 0; row < m_pTable->rowCount(); ++row) {
        const RecentRun &run = m_runs.at(row);
        int column = 0;
        for (QTableWidgetItem *item :
             {cell(startText(run)), cell(processTitle(run.recipe.process)), cell(runEndText(run.end)),
              cell(durationText(run.seconds)),
              cell(fileName(namingInput(run.recipe)),
                   run.recipe.tiles.isEmpty() ? QDir::toNativeSeparators(run.recipe.input)
                                              : tileLines(run.recipe.tiles)),
              cell(fileName(run.recipe.output), QDir::toNativeSeparators(run.recipe.output))})
            m_pTable->setItem(row, column++, item);
        m_pTable->item(row, 3)->setTextAlignment(Qt::AlignRight | Qt::AlignVCenter);
    }
    m_pPBChoose->setText(tr("Reprendre ces réglages", "MESS_HIST_REPRENDRE"));
    m_pPBClear->setText(tr("Effacer la liste", "MESS_HIST_EFFACER"));
    m_pPBClose->setText(tr("Fermer", "MESS_FERMER"));
    m_pPBShowResult->setText(tr("Afficher le résultat", "MESS_AFFICHER_RES"));
    updateButtons();
}

void RecentRunsDialog::updateButtons()
{
    const int row = m_pTable->currentRow();
    const bool isRun = row >= 0 && row < m_runs.size();
    m_pPBShowResult->setEnabled(isRun && m_runs.at(row).end == RunEnd::Done
                                && QFileInfo::exists(m_runs.at(row).recipe.output));
    m_pPBChoose->setEnabled(isRun);
    m_pPBClear->setEnabled(!m_runs.isEmpty());
}

void RecentRunsDialog::showResult()
{
    const Recipe &recipe = m_runs.at(m_pTable->currentRow()).recipe;
    showProduct(recipe.output, productSource(recipe), this);
}

void RecentRunsDialog::choose(int row)
{
    if (row < 0 || row >= m_runs.size())
        return;
    const Recipe recipe = m_runs.at(row).recipe;
    accept();
    emit chosen(recipe);
}

void RecentRunsDialog::clear()
{
    if (!Prompt::question(this,
                          tr("Voulez-vous effacer la liste des derniers traitements ?", "MESS_HIST_EFF_Q")))
        return;
    QFile::remove(m_file);
    m_runs.clear();
    applyTexts();
}

void RecentRunsDialog::changeEvent(QEvent *event)
{
    if (event->type() == QEvent::LanguageChange)
        applyTexts();
    QDialog::changeEvent(event);
}
