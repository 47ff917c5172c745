#include "panels/colorReliefOptionsWidget.h"

#include "colortable/editor/ColorTableEditor.h"
#include "colortable/editor/tablefiles.h"
#include "dataset/QuvoFilerDialog.h"
#include "dataset/rasterpicture.h"
#include "dataset/workfolder.h"
#include "messages/Prompt.h"
#include "messages/QuvoLanguageManager.h"
#include "messages/shownnumber.h"
#include "panels/options/maprampcolors.h"
#include "ui_colorReliefOptionsWidget.h"

#include <QDir>
#include <QEvent>
#include <QFileInfo>
#include <QTimerEvent>

namespace
{

const ColorReliefOptions defaults;

QString elevationText(const QLocale &locale, double elevation)
{
    const bool whole = elevation == static_cast<double>(static_cast<long long>(elevation));
    return shownNumber(elevation, 'f', whole ? 0 : 2, locale);
}

QString invalidTableText(const QString &problem)
{
    return labelText({"MESS_TC_INVALID", "La table couleur spécifiée est invalide."}) + QStringLiteral("\n\n")
        + problem;
}

} // namespace

colorReliefOptionsWidget::colorReliefOptionsWidget(WorkFolder &workFolder, QWidget *parent,
                                                   Qt::WindowFlags flags)
    : optionsWidget(parent, flags)
    , m_form(std::make_unique<Ui::colorReliefOptionsWidget>())
    , m_workFolder(workFolder)
{
    m_form->setupUi(this);
    m_tables = std::make_unique<ColorTableList>(*m_form->m_pCBColorTable, m_workFolder);
    loadLibrary(tableLibraryFolder());
    colorReliefOptionsWidget::setDem({});
    showOptions(defaults);
    applyTexts();
    connectControls();
}

colorReliefOptionsWidget::~colorReliefOptionsWidget() = default;

void colorReliefOptionsWidget::connectControls()
{
    // loadLibrary() connects the combo box's activated().
    connect(m_form->m_pCBColorTable, qOverload<int>(&QComboBox::currentIndexChanged), this,
            &colorReliefOptionsWidget::slot_onCurrentColormapChanged);
    connect(m_form->m_pPBAddAColorFile, &QPushButton::clicked, this,
            &colorReliefOptionsWidget::slot_addAColorFile);
    connect(m_form->m_pPBEditColorTable, &QPushButton::clicked, this,
            &colorReliefOptionsWidget::slot_onClickEditCmapButton);
    connect(m_form->m_pRBRelatifAltitude, &QRadioButton::toggled, this,
            &colorReliefOptionsWidget::slot_onUseColorsOnAbsolute);
    for (QRadioButton *mode : {m_form->m_pRBAbsoluteAltitude, m_form->m_pRBRelatifAltitude})
        connect(mode, &QRadioButton::clicked, this, &colorReliefOptionsWidget::clearGivenRange);
    connect(m_form->m_pChBAddAlphaChannel, &QCheckBox::toggled, this,
            &colorReliefOptionsWidget::slot_onOptionsChanged);
    connect(m_form->m_pColorShading, &ColorShading::changed, this,
            &colorReliefOptionsWidget::slot_onOptionsChanged);
    connect(m_form->m_pLComputeExactStatisticsLink, &QLabel::linkActivated, this,
            &colorReliefOptionsWidget::slot_computeExactStatistics);
    connect(&m_progress, &QuvoProgressDialog::cancelled, this,
            &colorReliefOptionsWidget::slot_onCancelStatisticsCalcul);
    connect(&m_scan, &ExtremesScan::progress, &m_progress, &QuvoProgressDialog::setProgress);
    connect(&m_scan, &ExtremesScan::finished, this, &colorReliefOptionsWidget::endExactStatistics);
}

QString colorReliefOptionsWidget::getCommandArguments()
{
    return colorReliefFragment(options());
}

std::optional<ToolInput> colorReliefOptionsWidget::launchInput()
{
    const QString problem = m_tables->refreshCurrent(m_spread);
    if (!problem.isEmpty()) {
        Prompt::warning(this, invalidTableText(problem));
        return std::nullopt;
    }
    return toolInput();
}

std::optional<ToolInput> colorReliefOptionsWidget::toolInput()
{
    const QString file = currentToolFile(false);
    if (file.isEmpty())
        return std::nullopt;
    return withShade(
        {.fragment = getCommandArguments(), .colorTableFile = file, .readsTemporaryFile = isOwnFile(file)},
        options());
}

std::optional<ToolInput> colorReliefOptionsWidget::previewInput(const QString &copy)
{
    const auto input = m_tables->refreshCurrent(m_spread).isEmpty() ? toolInput() : std::nullopt;
    if (input && m_dem.extremes.known)
        noteExtremes(copy, m_dem.band, m_dem.extremes.minimum, m_dem.extremes.maximum);
    return input;
}

bool colorReliefOptionsWidget::isComplete() const
{
    return m_form->m_pCBColorTable->count() > 0;
}

QString colorReliefOptionsWidget::missing() const
{
    return isComplete() ? QString() : tr("Ajoutez une table de couleurs.", "MESS_MANQUE_TABLE");
}

ColorReliefOptions colorReliefOptionsWidget::options() const
{
    ColorReliefOptions options;
    options.table = m_form->m_pCBColorTable->currentTable().file;
    options.spread = m_spread;
    const Extremes range = spreadRange(m_dem.extremes);
    if (m_spread && range.known) {
        options.minimum = range.minimum;
        options.maximum = range.maximum;
    }
    options.alpha = m_form->m_pChBAddAlphaChannel->isChecked();
    m_form->m_pColorShading->addTo(options);
    return options;
}

ProcessOptions colorReliefOptionsWidget::processOptions() const
{
    ColorReliefOptions settings = options();
    settings.table = m_tables->settingsName(settings.table);
    settings.colors = m_form->m_pCBColorTable->currentTable().entries;
    settings.spread = m_spreadWanted;
    settings.minimum = m_minimum;
    settings.maximum = m_maximum;
    return settings;
}

void colorReliefOptionsWidget::setProcessOptions(const ProcessOptions &processOptions)
{
    const auto *options = std::get_if<ColorReliefOptions>(&processOptions);
    if (!options)
        return;
    showOptions(*options);
    slot_onOptionsChanged();
}

void colorReliefOptionsWidget::showOptions(const ColorReliefOptions &options)
{
    int row = m_tables->rowOf(options);
    if (row < 0)
        row = m_tables->add(options);
    if (row >= 0)
        m_form->m_pCBColorTable->setCurrentIndex(row);
    m_form->m_pChBAddAlphaChannel->setChecked(options.alpha);
    m_form->m_pColorShading->showOptions(options);
    m_spreadWanted = options.spread;
    m_minimum = options.minimum;
    m_maximum = options.maximum;
    showMode();
    updateSpreadNote();
}

/// Checks the button of the mode that the user chose. The spread mode comes back with the DEM's elevations:
/// while the path of a DEM is being typed, there is no DEM.
void colorReliefOptionsWidget::showMode()
{
    const bool wanted = m_spreadWanted;
    m_spread = wanted && m_form->m_pRBRelatifAltitude->isEnabled();
    (m_spread ? m_form->m_pRBRelatifAltitude : m_form->m_pRBAbsoluteAltitude)->setChecked(true);
    m_spreadWanted = wanted; // the slot of the button took it for the user's choice
}

Extremes colorReliefOptionsWidget::spreadRange(Extremes extremes) const
{
    extremes.minimum = m_minimum.value_or(extremes.minimum);
    extremes.maximum = m_maximum.value_or(extremes.maximum);
    extremes.known = extremes.known || (m_minimum && m_maximum);
    return extremes;
}

void colorReliefOptionsWidget::clearGivenRange()
{
    if (!m_minimum && !m_maximum)
        return;
    m_minimum.reset();
    m_maximum.reset();
    updateSpreadNote();
    slot_onOptionsChanged();
}

void colorReliefOptionsWidget::setDem(const DemInfo &dem)
{
    if (m_scan.isRunning() && (dem.path != m_dem.path || dem.band != m_dem.band)) {
        m_scan.stop();
        m_progress.hide();
    }
    m_dem = dem;
    if (!dem.path.isEmpty()) {
        if (!m_rangeDem.path.isEmpty() && (dem.path != m_rangeDem.path || dem.band != m_rangeDem.band))
            clearGivenRange();
        m_rangeDem = dem;
    }
    m_form->m_pRBRelatifAltitude->setEnabled(dem.extremes.known || dem.searching);
    showMode();
    showExtremes();
    updateSpreadNote();
    if (m_spread)
        slot_onOptionsChanged(); // the product follows the DEM's elevations
}

void colorReliefOptionsWidget::setOwnTableFolder(const QString &folder)
{
    m_ownTableFolder = folder;
    loadLibrary(m_tables->libraryFolder());
}

void colorReliefOptionsWidget::setPanelLight(const ShadedOptions &light)
{
    m_form->m_pColorShading->setPanelLight(light);
}

void colorReliefOptionsWidget::setLightEditor(const LightEditor &editor)
{
    m_form->m_pColorShading->setLightEditor(editor);
}

void colorReliefOptionsWidget::loadLibrary(const QString &folder)
{
    ColorRampComboBox *combo = m_form->m_pCBColorTable;
    disconnect(combo, qOverload<int>(&QComboBox::activated), this,
               &colorReliefOptionsWidget::slot_onOptionsChanged);
    m_tables->load(folder, m_ownTableFolder);
    connect(combo, qOverload<int>(&QComboBox::activated), this,
            &colorReliefOptionsWidget::slot_onOptionsChanged);
}

void colorReliefOptionsWidget::slot_addAColorFile()
{
    // The program's own library is in the list already.
    const QString start = m_tableFolder.isEmpty() ? QFileInfo(m_dem.path).absolutePath() : m_tableFolder;
    const QString file = QuvoFilerDialog::getSelection(this, QuvoFilerDialog::OpenFile,
                                                       tr("Choisir un fichier table couleurs", "MESS_CHOIX_TC"),
                                                       start, readableTablesFilter());
    if (file.isEmpty())
        return;
    m_tableFolder = QFileInfo(file).absolutePath();
    const ColorTableReading reading = readColorTable(file);
    const QString problem = tableProblem(file, reading);
    if (!problem.isEmpty()) {
        Prompt::warning(this, invalidTableText(problem));
        return;
    }
    if (!mayLoadTable(this, reading))
        return;
    useTable(file, reading);
    if (!reading.notes.isEmpty())
        Prompt::notice(m_form->m_pPBAddAColorFile, reading.notes.join(QLatin1Char('\n')));
}

void colorReliefOptionsWidget::chooseTable(const QString &file)
{
    ColorRampComboBox *combo = m_form->m_pCBColorTable;
    for (int row = 0; row < combo->count(); ++row) {
        if (combo->table(row).file == file)
            combo->setCurrentIndex(row);
    }
}

bool colorReliefOptionsWidget::isOwnFile(const QString &file) const
{
    return file.startsWith(m_workFolder.path() + QLatin1Char('/'));
}

void colorReliefOptionsWidget::slot_onClickEditCmapButton()
{
    const ColorRampComboBox::Table table = m_form->m_pCBColorTable->currentTable();
    ColorTableEditor editor({.file = table.file,
                             .isTemporary = isOwnFile(table.file),
                             .entries = table.entries,
                             .libraryFolder = m_tables->libraryFolder(),
                             .ownFolder = m_ownTableFolder,
                             .dem = m_dem.path,
                             .band = m_dem.band,
                             .minimum = m_dem.extremes.minimum,
                             .maximum = m_dem.extremes.maximum,
                             .hasExtremes = m_dem.extremes.known},
                            this);
    connect(&editor, &ColorTableEditor::newColorFileCreated, this,
            &colorReliefOptionsWidget::slot_onNewColorFileCreated);
    connect(&editor, qOverload<>(&ColorTableEditor::currentColorFileDataChanged), this,
            qOverload<>(&colorReliefOptionsWidget::slot_onCurrentColorFileDataChanged));
    connect(
        &editor, qOverload<const QList<QuvoColorDef> &>(&ColorTableEditor::currentColorFileDataChanged), this,
        qOverload<const QList<QuvoColorDef> &>(&colorReliefOptionsWidget::slot_onCurrentColorFileDataChanged));
    connect(&editor, &ColorTableEditor::colorFileRenamed, this, [this](const QString &from, const QString &to) {
        if (m_form->m_pCBColorTable->currentTable().file == from)
            slot_onNewColorFileCreated(to);
    });
    editor.exec();
    m_tables->refreshOwn(m_ownTableFolder);
}

void colorReliefOptionsWidget::slot_onNewColorFileCreated(const QString &path)
{
    useTable(path, readColorTable(path));
}

void colorReliefOptionsWidget::useTable(const QString &file, const ColorTableReading &reading)
{
    const int row = m_tables->add(file, reading);
    if (row < 0)
        return;
    m_form->m_pCBColorTable->setCurrentIndex(row);
    updateSpreadNote(); // a new table in the current row emits no signal
    slot_onOptionsChanged();
}

void colorReliefOptionsWidget::slot_onCurrentColorFileDataChanged()
{
    slot_onNewColorFileCreated(m_form->m_pCBColorTable->currentTable().file);
}

void colorReliefOptionsWidget::slot_onCurrentColorFileDataChanged(const QList<QuvoColorDef> &entries)
{
    const QString file = freeTableName(m_workFolder.path(), QStringLiteral("custom"));
    if (writeOwnTable(this, file, exactTableText(entries)))
        slot_onNewColorFileCreated(file);
}

void colorReliefOptionsWidget::slot_onCurrentColormapChanged(int row)
{
    updateSpreadNote();
    const QString file = m_form->m_pCBColorTable->table(row).file;
    if (row >= 0 && isVisible() && !isOwnFile(file))
        emit tableChosen(file);
}

void colorReliefOptionsWidget::slot_onUseColorsOnAbsolute()
{
    m_spread = m_form->m_pRBRelatifAltitude->isChecked();
    m_spreadWanted = m_spread;
    updateSpreadNote();
    slot_onOptionsChanged();
}

void colorReliefOptionsWidget::slot_onOptionsChanged()
{
    reportChange();
    m_changeTimer.start(changeDelay, this); // a pending timer begins again
}

void colorReliefOptionsWidget::timerEvent(QTimerEvent *event)
{
    if (event->timerId() == m_changeTimer.timerId()) {
        m_changeTimer.stop(); // before the signal, whose receiver may change an option
        emit completeChanged();
    }
    optionsWidget::timerEvent(event);
}

void colorReliefOptionsWidget::slot_computeExactStatistics()
{
    m_cancelStatistics = false;
    m_progress.setTitle(tr("Calcul du minimum et du maximum du MNT.", "MESS_CALC_MNT_MINMAX"));
    m_progress.reset();
    m_progress.show();
    m_scan.start(m_dem.path, m_dem.band, ExtremesReader::Exact);
}

void colorReliefOptionsWidget::slot_onCancelStatisticsCalcul()
{
    m_cancelStatistics = true;
    m_scan.stop();
}

void colorReliefOptionsWidget::endExactStatistics(const Extremes &extremes)
{
    m_progress.hide();
    if (m_cancelStatistics)
        return;
    if (extremes.known)
        emit extremesComputed(extremes);
    else if (extremes.unreadable)
        Prompt::warning(
            this, tr("Les altitudes du MNT ne peuvent pas être lues entièrement.", "MESS_STAT_ILLISIBLE"));
    else
        Prompt::warning(this, tr("Aucune cellule du MNT ne porte d'altitude.", "MESS_STAT_VIDE"));
}

QString colorReliefOptionsWidget::colorFile(bool forceAbsolute)
{
    return m_tables->refreshCurrent(m_spread).isEmpty() ? currentToolFile(forceAbsolute) : QString();
}

QString colorReliefOptionsWidget::currentToolFile(bool forceAbsolute)
{
    const ColorRampComboBox::Table table = m_form->m_pCBColorTable->currentTable();
    return forceAbsolute || !m_spread ? table.toolFile : spreadFile(table.entries);
}

QString colorReliefOptionsWidget::spreadFile(const QList<QuvoColorDef> &entries)
{
    const Extremes extremes =
        spreadRange(m_dem.searching ? estimatedExtremes(m_dem.path, m_dem.band) : m_dem.extremes);
    if (!extremes.known) {
        Prompt::warning(this, tr("Aucune cellule du MNT ne porte d'altitude.", "MESS_STAT_VIDE"));
        return {};
    }
    const QString file = freeTableName(m_workFolder.newFolder(), QStringLiteral("quvoColorTable"));
    const SpreadTable spread = spreadTable(entries, extremes.minimum, extremes.maximum);
    return writeOwnTable(this, file, spread.text) ? file : QString();
}

void colorReliefOptionsWidget::showExtremes()
{
    const Extremes &extremes = m_dem.extremes;
    const auto row = [&](const QString &name, double value) {
        return QStringLiteral("<tr><td>%1</td><td width=\"16\"></td><td align=\"right\">%2</td></tr>")
            .arg(name.toHtmlEscaped(), extremes.known ? elevationText(locale(), value) : QStringLiteral("–"));
    };
    m_form->m_pLStatisticsInfo->setText(
        tr("Valeurs extrêmes du mnt", "MESS_VAL_EXT_MNT").toHtmlEscaped() + QStringLiteral("<table>")
        + row(tr("Minimum", "MESS_MINIMUM"), extremes.minimum)
        + row(tr("Maximum", "MESS_MAXIMUM"), extremes.maximum) + QStringLiteral("</table>"));
    const bool better = !m_dem.path.isEmpty() && !extremes.exact;
    m_form->m_pLComputeExactStatisticsLink->setVisible(better);
    m_form->m_pStatisticsExplLabel->setVisible(better);
}

void colorReliefOptionsWidget::updateSpreadNote()
{
    const Extremes range = spreadRange(m_dem.extremes);
    int merged = 0;
    if (m_spread && range.known)
        merged =
            spreadTable(m_form->m_pCBColorTable->currentTable().entries, range.minimum, range.maximum).merged;
    QStringList notes;
    if (m_spread && range.known && (m_minimum || m_maximum))
        notes += tr("Étalée de %1 à %2, selon les réglages ouverts.", "MESS_TC_ETALEE")
                     .arg(elevationText(locale(), range.minimum), elevationText(locale(), range.maximum));
    if (merged > 0)
        notes += tr("Les altitudes sont arrondies à l’entier : sur ce MNT, certaines couleurs coïncident (%1).",
                    "MESS_TC_ENSEMBLE")
                     .arg(merged);
    m_form->m_pSpreadNote->setVisible(!notes.isEmpty());
    m_form->m_pSpreadNote->setText(notes.join(QLatin1Char('\n')));
}

void colorReliefOptionsWidget::changeEvent(QEvent *event)
{
    if (event->type() == QEvent::LanguageChange) {
        m_form->retranslateUi(this);
        applyTexts();
    }
    optionsWidget::changeEvent(event);
}

void colorReliefOptionsWidget::applyTexts()
{
    m_form->m_pLComputeExactStatisticsLink->setText(
        QStringLiteral("<a href=\"exact\">%1</a>")
            .arg(tr("Calculer précisément les statistiques", "MESS_STAT_PREC_CALC").toHtmlEscaped()));
    showExtremes();
    updateSpreadNote();
}
