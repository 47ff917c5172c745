#include "app/window/quvoGdalUtilities.h"

#include "app/preview/PreviewControl.h"
#include "app/process/productname.h"
#include "app/recipe/openedrecipe.h"
#include "app/run/copiedcommand.h"
#include "app/run/outputname.h"
#include "app/window/AboutDialog.h"
#include "app/window/FileDrop.h"
#include "app/window/InputDem.h"
#include "app/window/OutputField.h"
#include "app/window/PanelArea.h"
#include "app/window/SettingsMenu.h"
#include "app/window/WindowShape.h"
#include "app/window/dialogrules.h"
#include "app/window/launchquestions.h"
#include "app/window/outputFileAdvancedOptionsDialog.h"
#include "app/window/runresults.h"
#include "dataset/QuvoFilerDialog.h"
#include "dataset/formatfilters.h"
#include "messages/Prompt.h"
#include "panels/aspectOptionsWidget.h"
#include "panels/colorReliefOptionsWidget.h"
#include "panels/contourOptionsWidget.h"
#include "panels/intervisibilityOptionsWidget.h"
#include "panels/shadedOptionsWidget.h"
#include "panels/slopeOptionsWidget.h"
#include "panels/tri_tpi_roughnessOptionsWidget.h"
#include "ui_quvoGdalUtilitiesDialog.h"

#include <QDir>
#include <QFileInfo>
#include <QIcon>
#include <QTimer>

#include <type_traits>

namespace
{

const QString imageFolder = QStringLiteral(":/QuvoGdalUtilities/images/");

} // namespace

quvoGdalUtilities::quvoGdalUtilities(const ToolPaths &tools, QWidget *parent, Qt::WindowFlags flags)
    : QDialog(parent, flags)
    , m_form(std::make_unique<Ui::quvoGdalUtilitiesDialog>())
    , m_tools(tools)
    , m_scriptRunner(nullptr)
    , m_run(m_scriptRunner)
    , m_previews(m_scriptRunner, tools, m_workFolder,
                 [this](const QString &copy) { return previewRequest(copy); })
{
    m_form->setupUi(this);
    m_input = std::make_unique<InputDem>(m_form->m_pCBInputListFile, m_form->m_pCBBand, this);
    m_output = std::make_unique<OutputField>(m_form->m_pLEOutputFile);
    m_shape = std::make_unique<WindowShape>(*this, *m_form->m_pTabWidget, *m_form->m_pSplitter,
                                            *m_form->m_pGrpBPreviews, *m_form->m_pPBShowPreview);
    m_settings = std::make_unique<SettingsMenu>(
        *m_form->m_pTBSettings, m_run,
        SettingsMenu::Window{.widget = this,
                             .recipe = [this] { return recipe(); },
                             .setRecipe = [this](const Recipe &recipe) { setRecipe(recipe); },
                             .mayLaunch = [this] { return mayLaunch(); },
                             .commandToCopy = [this] { return commandToCopy(); }});

    addPanels();

    // A drop on a text field would put an address into the middle of a path; the window takes the file.
    for (QWidget *field : QList<QWidget *>{m_form->m_pCBInputListFile, m_form->m_pCBInputListFile->lineEdit(),
                                           m_form->m_pLEOutputFile})
        field->setAcceptDrops(false);
    m_shape->restore();
    applyTexts();
    connectControls();
    connectPreviews();
    slot_activeLaunchButton();
}

quvoGdalUtilities::~quvoGdalUtilities() = default;

template <class Panel> void quvoGdalUtilities::addPanel(Process process, QWidget *tab)
{
    Panel *panel = nullptr;
    if constexpr (std::is_constructible_v<Panel, WorkFolder &>)
        panel = new Panel(m_workFolder); // it writes files that its tool reads
    else
        panel = new Panel;
    const auto at = static_cast<std::size_t>(process);
    m_tabIndexes[at] = m_form->m_pTabWidget->indexOf(tab);
    m_panels[at] = panel;
    tab->layout()->addWidget(new PanelArea(panel, tab));
    connect(panel, &Panel::completeChanged, this, &quvoGdalUtilities::slot_activeLaunchButton);
    connect(panel, &Panel::completeChanged, this, &quvoGdalUtilities::slot_onWidgetOptionsCompleteChanged);
    connect(panel, &Panel::completeChanged, this, &quvoGdalUtilities::slot_updateOutputFilePreview);
    connect(m_input.get(), &InputDem::demChanged, panel, &Panel::setDem);
    if constexpr (requires { &Panel::extremesComputed; })
        connect(panel, &Panel::extremesComputed, m_input.get(), &InputDem::setExtremes);
    if constexpr (std::is_same_v<Panel, intervisibilityOptionsWidget>)
        m_intervisibility = panel;
}

/// The tab and the panel of a process.
struct quvoGdalUtilities::PanelRow
{
    Process process;
    QWidget *Ui::quvoGdalUtilitiesDialog::*tab;
    void (quvoGdalUtilities::*add)(Process process, QWidget *tab);
};

void quvoGdalUtilities::addPanels()
{
    using Form = Ui::quvoGdalUtilitiesDialog;
    using Dialog = quvoGdalUtilities;
    static constexpr PanelRow rows[] = {
        {Process::ShadedRelief, &Form::shadedTab, &Dialog::addPanel<shadedOptionsWidget>},
        {Process::Slope, &Form::slopeTab, &Dialog::addPanel<slopeOptionsWidget>},
        {Process::Aspect, &Form::aspectTab, &Dialog::addPanel<aspectOptionsWidget>},
        {Process::Intervisibility, &Form::intervisibilityTab, &Dialog::addPanel<intervisibilityOptionsWidget>},
        {Process::ColorRelief, &Form::colorReliefTab, &Dialog::addPanel<colorReliefOptionsWidget>},
        {Process::Contour, &Form::contourTab, &Dialog::addPanel<contourOptionsWidget>},
        {Process::TriTpiRoughness, &Form::tri_tpi_roughnessTab,
         &Dialog::addPanel<tri_tpi_roughnessOptionsWidget>},
    };
    static_assert(hasRowOfEachProcess(rows), "Every process needs a panel, in the order of the enumeration.");
    for (const PanelRow &row : rows)
        (this->*row.add)(row.process, (*m_form).*row.tab);
}

void quvoGdalUtilities::connectControls()
{
    connect(&m_run, &ProductRun::finished, this, &quvoGdalUtilities::slot_processFinished);
    connect(&m_run, &ProductRun::aborted, this, &quvoGdalUtilities::slot_processAborted);
    connect(&m_run, &ProductRun::failed, this, &quvoGdalUtilities::slot_processFailed);
    connect(m_form->m_pAboutLabel, &QLabel::linkActivated, this, &quvoGdalUtilities::slot_showAboutAppDialog);
    connect(m_form->m_pPBSelectInputDEM, &QPushButton::clicked, this, &quvoGdalUtilities::slot_selectInputDem);
    connect(m_form->m_pTabWidget, &QTabWidget::currentChanged, this,
            &quvoGdalUtilities::slot_onCurrentTabChanged);
    connect(m_input.get(), &InputDem::changed, this, &quvoGdalUtilities::slot_onInputDemChanged);
    connect(m_form->m_pLEOutputFile, &QLineEdit::textChanged, this,
            &quvoGdalUtilities::slot_onOutputFileChanged);
    connect(m_form->m_pPBSelectOutputFile, &QPushButton::clicked, this,
            &quvoGdalUtilities::slot_selectOutputFile);
    connect(m_form->m_pPBOutputFileAdvancedOptions, &QPushButton::clicked, this,
            &quvoGdalUtilities::slot_showOutputFileAdvancedOptions);
    connect(m_form->m_pPBLaunchProcess, &QPushButton::clicked, this, &quvoGdalUtilities::slot_launchProcess);
    connect(m_form->m_pPBClose, &QPushButton::clicked, this, &quvoGdalUtilities::close);
    connect(new FileDrop(this), &FileDrop::dropped, this, [this](const QString &file) {
        if (SettingsMenu::isSettingsFile(file))
            m_settings->openFile(file);
        else
            setInputDem(file);
    });
}

void quvoGdalUtilities::connectPreviews()
{
    PreviewPane *pane = m_form->m_pGrpBPreviews;
    m_previewControl = std::make_unique<PreviewControl>(*pane, m_previews, *m_intervisibility);
    connect(&m_previews, &Previews::reduced, this, &quvoGdalUtilities::slot_showInputFilePreview);
    connect(&m_previews, &Previews::reducingProgress, this, &quvoGdalUtilities::slot_updateReducingProgress);
    connect(&m_previews, &Previews::reductionFailed, this, &quvoGdalUtilities::slot_reduceProcessFailed);
    connect(&m_previews, &Previews::computed, this, &quvoGdalUtilities::slot_showOutputFilePreview);
    connect(&m_previews, &Previews::computingProgress, this,
            &quvoGdalUtilities::slot_updatePreviewComputingProgress);
    connect(&m_previews, &Previews::computationFailed, this, &quvoGdalUtilities::slot_previewProcessFailed);
    connect(m_form->m_pTabWidget, &QTabWidget::currentChanged, this,
            &quvoGdalUtilities::slot_updateOutputFilePreview);
    connect(m_form->m_pPBShowPreview, &QPushButton::clicked, this, &quvoGdalUtilities::slot_dialogExtension);
    connect(pane->inputLabel(), &PreviewLabel::clicked, this, &quvoGdalUtilities::slot_onPreviewLabelClicked);
    connect(m_intervisibility, &intervisibilityOptionsWidget::currentObserverPointChanged, this,
            &quvoGdalUtilities::slot_updateMarkerPosition);
    connect(m_input.get(), &InputDem::demChanged, m_previewControl.get(), &PreviewControl::takeDem);
    slot_updateOutputFilePreview();
    m_previews.setShown(!pane->isHidden());
}

QSize quvoGdalUtilities::sizeHint() const
{
    return QDialog::sizeHint().expandedTo({m_shape->widthHint(), 0});
}

void quvoGdalUtilities::setInputDem(const QString &path)
{
    setKeepStartingDir(false);
    m_input->choose(path);
}

void quvoGdalUtilities::setKeepStartingDir(bool keep)
{
    m_input->setKeepStartingDir(keep);
}

std::optional<Process> quvoGdalUtilities::currentProcess() const
{
    for (std::size_t at = 0; at < m_tabIndexes.size(); ++at) {
        if (m_tabIndexes[at] == m_form->m_pTabWidget->currentIndex())
            return static_cast<Process>(at);
    }
    return std::nullopt;
}

optionsWidget *quvoGdalUtilities::currentPanel() const
{
    const auto process = currentProcess();
    return process ? m_panels[static_cast<std::size_t>(*process)] : nullptr;
}

void quvoGdalUtilities::slot_activeLaunchButton()
{
    optionsWidget *panel = currentPanel();
    m_form->m_pPBLaunchProcess->setEnabled(
        canLaunch(!m_input->path().isEmpty(), m_output->name(), panel && panel->isComplete()));
}

void quvoGdalUtilities::slot_onWidgetOptionsCompleteChanged()
{
    slot_activeLaunchButton();
}

void quvoGdalUtilities::slot_onCurrentTabChanged(int)
{
    slot_onInputDemChanged(m_input->path());
    applyTexts();
}

void quvoGdalUtilities::slot_onInputDemChanged(const QString &path)
{
    if (const auto process = currentProcess()) {
        const ProcessRow &row = processRow(*process);
        m_output->propose(path, QString::fromLatin1(row.suffix),
                          formatExtensions(outputFormat(currentRequest())));
    }
    slot_activeLaunchButton();
}

void quvoGdalUtilities::slot_onOutputFileChanged()
{
    slot_activeLaunchButton();
}

void quvoGdalUtilities::slot_selectInputDem()
{
    m_input->select();
}

void quvoGdalUtilities::slot_selectOutputFile()
{
    const QString pattern = QStringLiteral("*.") + formatExtensions(outputFormat(currentRequest())).value(0);
    const QString title = tr("Choisir un fichier de sortie", "MESS_CHOISIR_SORTIE");
    const QString path = QuvoFilerDialog::getSelection(this, QuvoFilerDialog::SaveFile, title, m_output->name(),
                                                       QStringLiteral("%1 (%2)").arg(title, pattern));
    if (path.isEmpty())
        return;
    const OutputName output =
        checkOutputName(path, formatExtensions(outputFormat(currentRequest())), m_input->files());
    if (output.problem.isEmpty())
        m_output->choose(path);
    else
        warnOfOutput(path, output.problem, this);
}

ProcessingRequest quvoGdalUtilities::currentRequest() const
{
    ProcessingRequest request;
    request.process = currentProcess();
    if (const optionsWidget *panel = currentPanel())
        request.mode = processWord(panel->processOptions());
    request.input = m_input->path();
    request.output = besideInput(m_output->name(), request.input);
    request.band = m_input->band();
    if (request.process) {
        const ProductKind product = processRow(*request.process).product;
        OutputOptions options = product == ProductKind::Vector ? m_vectorOptions : m_rasterOptions;
        if (!outputFormats(*request.process).contains(options.format))
            options.format.clear(); // the tool of this process does not write it
        request.outputOptions = supportedOptions(options, product);
    }
    return request;
}

OutputOptions &quvoGdalUtilities::currentOutputOptions()
{
    const auto process = currentProcess();
    return process && processRow(*process).product == ProductKind::Vector ? m_vectorOptions : m_rasterOptions;
}

Recipe quvoGdalUtilities::recipe() const
{
    return recipeOf(currentRequest(), currentPanel()->processOptions());
}

void quvoGdalUtilities::setRecipe(const Recipe &recipe)
{
    const auto at = static_cast<std::size_t>(processOf(recipe.options));
    if (!recipe.input.isEmpty())
        setInputDem(recipe.input);
    m_form->m_pCBBand->setCurrentIndex(recipe.band - 1);
    m_form->m_pTabWidget->setCurrentIndex(m_tabIndexes[at]);
    currentOutputOptions() = recipe.outputOptions;
    m_panels[at]->setProcessOptions(recipe.options);
    if (recipe.output.isEmpty())
        slot_onInputDemChanged(m_input->path());
    else
        m_output->restore(recipe.output, m_input->path(),
                          QString::fromLatin1(processRow(*currentProcess()).suffix));
    slot_activeLaunchButton();
}

QString quvoGdalUtilities::commandToCopy()
{
    const auto plan = currentPlan();
    return plan ? copiedCommand(*plan, recipe(), m_tools) : QString();
}

void quvoGdalUtilities::slot_showOutputFileAdvancedOptions()
{
    const auto process = currentProcess();
    if (!process)
        return;
    outputFileAdvancedOptionsDialog dialog(*process, currentOutputOptions(), this);
    if (dialog.exec() != QDialog::Accepted)
        return;
    const QStringList extensionsBefore = formatExtensions(outputFormat(currentRequest()));
    currentOutputOptions() = dialog.options();
    m_output->changeExtension(extensionsBefore, formatExtensions(outputFormat(currentRequest())));
    slot_activeLaunchButton();
}

bool quvoGdalUtilities::mayLaunch()
{
    slot_activeLaunchButton(); // options that have just been typed count
    return !m_run.isRunning() && m_form->m_pPBLaunchProcess->isEnabled();
}

std::optional<RunPlan> quvoGdalUtilities::currentPlan()
{
    if (!mayLaunch())
        return std::nullopt;
    const auto toolInput = currentPanel()->launchInput();
    if (!toolInput)
        return std::nullopt;
    ProcessingRequest request = currentRequest();
    request.toolInput = *toolInput;
    const RunPlan plan = planRun(request, m_tools);
    if (plan.problemKind == ProblemKind::None)
        return plan;
    warnOfProblem(plan, this);
    return std::nullopt;
}

void quvoGdalUtilities::slot_launchProcess()
{
    if (!mayLaunch())
        return;
    m_previews.hold();
    if (!launch())
        m_previews.release();
}

bool quvoGdalUtilities::launch()
{
    auto planned = currentPlan();
    if (!planned)
        return false;
    RunPlan &plan = *planned;
    plan.warnings += currentPanel()->launchWarnings();
    auto lock = std::make_unique<OutputLock>(plan.request.output);
    if (!lock->problem().isEmpty()) {
        Prompt::warning(this, lock->problem());
        return false;
    }
    if (!mayOverwrite(plan, this) || !mayGoOn(plan, this))
        return false;
    const Recipe settings = recipeOf(plan.request, currentPanel()->processOptions());
    m_settings->noteRun(settings);
    m_launchedCommand = copiedCommand(plan, settings, m_tools);
    m_run.start(plan, std::move(lock), true,
                imageFolder + QStringLiteral("icones/")
                    + QString::fromLatin1(processRow(*plan.request.process).icon));
    return true;
}

void quvoGdalUtilities::slot_processFinished()
{
    showResult(finishedResult(m_run));
}

void quvoGdalUtilities::slot_processAborted()
{
    // Told from inside the progress window's own closing: the result waits until that is over.
    QTimer::singleShot(0, this, [this] { showResult(abortedResult(m_run)); });
}

void quvoGdalUtilities::slot_processFailed(const QString &)
{
    showResult(failedResult(m_run));
}

void quvoGdalUtilities::showResult(ProcessResult result)
{
    result.shellCommand = m_launchedCommand;
    auto dialog = new processResultDialog(result, this);
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    dialog->open();
    m_previews.release();
}

std::optional<ProcessingRequest> quvoGdalUtilities::previewRequest(const QString &copy)
{
    const auto toolInput = currentPanel()->previewInput(copy);
    if (!toolInput)
        return std::nullopt;
    ProcessingRequest request = currentRequest();
    request.toolInput = *toolInput;
    return request;
}

void quvoGdalUtilities::slot_updateOutputFilePreview()
{
    const auto process = currentProcess();
    m_previewControl->showPanel(currentPanel(),
                                m_form->m_pTabWidget->tabText(m_form->m_pTabWidget->currentIndex()),
                                process && processRow(*process).product == ProductKind::Vector);
}

void quvoGdalUtilities::slot_showInputFilePreview()
{
    m_previewControl->showInput();
}

void quvoGdalUtilities::slot_updateReducingProgress(int percent)
{
    m_form->m_pGrpBPreviews->setReducing(percent);
}

void quvoGdalUtilities::slot_reduceProcessFailed(const QString &toolText)
{
    slot_previewProcessFailed(toolText);
}

void quvoGdalUtilities::slot_showOutputFilePreview()
{
    m_previewControl->showOutput();
}

void quvoGdalUtilities::slot_updatePreviewComputingProgress(int percent)
{
    m_form->m_pGrpBPreviews->setComputing(percent);
}

void quvoGdalUtilities::slot_previewProcessFailed(const QString &toolText)
{
    m_shape->removePreviews();
    const QString text =
        tr("Une erreur est survenue lors de la création d'une vue réduite du MNT.\nLe mécanisme "
           "de preview doit être désactivé.",
           "MESS_ERR_APERCU_DES");
    Prompt::warning(this, QStringLiteral("%1\n\n%2").arg(text, toolText.trimmed()).trimmed());
}

void quvoGdalUtilities::slot_dialogExtension()
{
    m_previews.setShown(m_shape->togglePreviews());
}

void quvoGdalUtilities::slot_updateMarkerPosition()
{
    m_previewControl->showObservers();
}

void quvoGdalUtilities::slot_onPreviewLabelClicked(int x, int y, QSize shown)
{
    m_previewControl->placeObserver(x, y, shown);
}

void quvoGdalUtilities::slot_showAboutAppDialog()
{
    auto dialog = new AboutDialog(this);
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    dialog->open();
}

void quvoGdalUtilities::done(int result)
{
    if (m_run.isRunning()
        && !Prompt::question(
            this, tr("Un traitement est en cours. Voulez-vous l'arrêter et quitter ?", "MESS_QUITTER_TRAIT")))
        return;
    if (m_run.isRunning()) { // it may have ended while the question was up
        disconnect(&m_run, nullptr, this, nullptr);
        m_run.stop();
    }
    m_shape->save();
    QDialog::done(result);
}

void quvoGdalUtilities::changeEvent(QEvent *event)
{
    if (event->type() == QEvent::LanguageChange) {
        m_form->retranslateUi(this);
        applyTexts();
        m_shape->fitTabs();
        slot_updateOutputFilePreview();
    }
    QDialog::changeEvent(event);
}

void quvoGdalUtilities::applyTexts()
{
    m_form->m_pAboutLabel->setText(
        QStringLiteral("<a href=\"about\">%1</a>").arg(tr("a propos...", "MESS_ABOUT...").toHtmlEscaped()));
    const auto process = currentProcess();
    const bool vector = process && processRow(*process).product == ProductKind::Vector;
    m_form->m_pLOutputFile->setText(vector ? tr("Fichier vecteur à créer :", "MESS_FIC_VECT_A_CREER")
                                           : tr("Fichier à créer :", "MESS_FIC_A_CREER"));
}
