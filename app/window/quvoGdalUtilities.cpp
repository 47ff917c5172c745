#include "app/window/quvoGdalUtilities.h"

#include "app/preview/MapView.h"
#include "app/preview/PreviewControl.h"
#include "app/process/productname.h"
#include "app/recipe/openedrecipe.h"
#include "app/startup/settings.h"
#include "app/window/KeptSettings.h"
#include "app/window/OutputField.h"
#include "app/window/ProcessTabs.h"
#include "app/window/SettingsMenu.h"
#include "app/window/WheelGuard.h"
#include "app/window/WindowShape.h"
#include "app/window/dialogrules.h"
#include "app/window/dialogs/AboutDialog.h"
#include "app/window/input/DemLook.h"
#include "app/window/input/DemPart.h"
#include "app/window/input/DemSources.h"
#include "app/window/input/InputDem.h"
#include "app/window/launch/Launch.h"
#include "app/window/shortcuts.h"
#include "dataset/QuvoFilerDialog.h"
#include "dataset/views/metriccrs.h"
#include "messages/Prompt.h"
#include "panels/controls/focusorder.h"
#include "panels/intervisibilityOptionsWidget.h"
#include "ui_quvoGdalUtilitiesDialog.h"

#include <QFileInfo>
#include <QKeyEvent>
#include <QMenu>
#include <QTimer>

namespace
{

/// Takes the focus from a widget in which text is typed. `focused` may be null.
void leaveField(QWidget *focused)
{
    if (focused && focused->testAttribute(Qt::WA_InputMethodEnabled))
        focused->clearFocus();
}

} // namespace

quvoGdalUtilities::quvoGdalUtilities(const ToolPaths &tools, QWidget *parent, Qt::WindowFlags flags)
    : QDialog(parent, flags)
    , m_form(std::make_unique<Ui::quvoGdalUtilitiesDialog>())
    , m_tools(tools)
    , m_scriptRunner(nullptr)
    , m_previews(m_scriptRunner, tools, m_workFolder,
                 [this](const QString &copy) { return previewRequest(copy); })
{
    m_form->setupUi(this);
    m_tabs = std::make_unique<ProcessTabs>(*m_form, m_workFolder);
    m_input = std::make_unique<InputDem>(m_form->m_pCBInputListFile, m_form->m_pCBBand, this);
    m_look = std::make_unique<DemLook>(*m_form->m_pLDemLook, *m_form->m_pTBDemLook);
    m_part = std::make_unique<DemPart>(*m_form->m_pTBDemPart);
    m_output = std::make_unique<OutputField>(m_form->m_pLEOutputFile);
    m_shape = std::make_unique<WindowShape>(*this, *m_form->m_pTabWidget, *m_form->m_pSplitter,
                                            *m_form->m_pGrpBPreviews, *m_form->m_pPBShowPreview);
    m_launch = std::make_unique<Launch>(m_scriptRunner, tools,
                                        Launch::Window{.widget = this,
                                                       .mayLaunch = [this] { return mayLaunch(); },
                                                       .request = [this] { return currentRequest(); },
                                                       .panel = [this] { return m_tabs->currentPanel(); }});
    m_settings = std::make_unique<SettingsMenu>(
        *m_form->m_pTBSettings, m_launch->run(),
        SettingsMenu::Window{.widget = this,
                             .workFolder = m_workFolder,
                             .recipe = [this] { return recipe(); },
                             .setRecipe = [this](const Recipe &recipe) { setRecipe(recipe); },
                             .mayLaunch = [this] { return mayLaunch(); },
                             .commandToCopy = [this] { return commandToCopy(); },
                             .helpPage = [this] { return helpPage(m_tabs->currentProcess()); }});

    m_kept = std::make_unique<KeptSettings>(
        *m_tabs,
        KeptSettings::Window{.widget = this,
                             .workFolder = m_workFolder,
                             .recipe =
                                 [this](Process process) {
                                     ProcessingRequest request = requestOf(process);
                                     request.output.clear();
                                     return recipeOf(request, m_tabs->panel(process).processOptions());
                                 },
                             .setRecipe = [this](const Recipe &recipe) { setRecipe(recipe); }});
    m_settings->addActions(m_kept->actions());

    // A file that is dropped on a text field would insert its URL into the path; the window opens it instead.
    for (QWidget *field : QList<QWidget *>{m_form->m_pCBInputListFile, m_form->m_pCBInputListFile->lineEdit(),
                                           m_form->m_pLEOutputFile})
        field->setAcceptDrops(false);
    new WheelGuard(m_form->m_pTabWidget);
    new WheelGuard(m_form->m_pCBBand);
    connect(m_tabs.get(), &ProcessTabs::panelMade, this, &quvoGdalUtilities::connectPanel);
    m_previewControl =
        std::make_unique<PreviewControl>(*m_form->m_pGrpBPreviews, m_previews, m_tools, m_workFolder);
    m_tabs->currentPanel(); // its width is the first one of the panels' area
    makeSources();
    addKeys();
    m_shape->restore();
    QuvoFilerDialog::setState(readFilerState());
    applyTexts();
    connectControls();
    connectPreviews();
    slot_activeLaunchButton();
}

quvoGdalUtilities::~quvoGdalUtilities() = default;

void quvoGdalUtilities::connectControls()
{
    connect(m_tabs.get(), &ProcessTabs::optionsChanged, this,
            &quvoGdalUtilities::slot_onWidgetOptionsCompleteChanged);
    connect(m_tabs.get(), &ProcessTabs::optionsChanged, this, &quvoGdalUtilities::slot_updateOutputFilePreview);
    connect(m_tabs.get(), &ProcessTabs::extremesComputed, m_input.get(), &InputDem::setExtremes);
    connect(m_input.get(), &InputDem::demChanged, m_tabs.get(), &ProcessTabs::setDem);
    connect(m_input.get(), &InputDem::demChanged, m_look.get(), &DemLook::setDem);
    connect(m_input.get(), &InputDem::demChanged, m_part.get(), &DemPart::setDem);
    connect(m_part.get(), &DemPart::changed, this, &quvoGdalUtilities::updateLook);
    connect(m_input.get(), &InputDem::demChanged, this, &quvoGdalUtilities::updateLook);
    connect(m_tabs.get(), &ProcessTabs::optionsChanged, this, &quvoGdalUtilities::updateLook);
    connect(&m_launch->run(), &ProductRun::finished, this, &quvoGdalUtilities::slot_processFinished);
    connect(&m_launch->run(), &ProductRun::aborted, this, &quvoGdalUtilities::slot_processAborted);
    connect(&m_launch->run(), &ProductRun::failed, this, &quvoGdalUtilities::slot_processFailed);
    connect(m_form->m_pTBSettings->menu(), &QMenu::aboutToShow, m_kept.get(), &KeptSettings::updateActions);
    connect(m_launch.get(), &Launch::began, this,
            [this](const Recipe &settings) { m_settings->beginRun(settings); });
    connect(m_launch.get(), &Launch::ended, this, [this] { m_previews.release(); });
    connect(m_form->m_pAboutLabel, &QLabel::linkActivated, this, &quvoGdalUtilities::slot_showAboutAppDialog);
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
}

/// A panel was made: gives its controls and its width their place in the window.
void quvoGdalUtilities::connectPanel(optionsWidget &panel)
{
    orderFocus(*this,
               {m_form->m_pCBInputListFile, m_form->m_pPBSelectInputDEM, m_form->m_pCBBand,
                m_form->m_pTBDemPart, m_form->m_pTBDemLook, m_form->m_pTabWidget, m_form->m_pGrpBPreviews,
                m_form->m_pLEOutputFile, m_form->m_pPBSelectOutputFile, m_form->m_pPBOutputFileAdvancedOptions,
                m_form->m_pPBShowPreview, m_form->m_pAboutLabel, m_form->m_pTBSettings,
                m_form->m_pPBLaunchProcess, m_form->m_pPBClose});
    new WheelGuard(&panel);
    m_shape->arrange();
    auto *observers = qobject_cast<intervisibilityOptionsWidget *>(&panel);
    if (!observers)
        return;
    m_previewControl->setObservers(*observers);
    connect(observers, &intervisibilityOptionsWidget::currentObserverPointChanged, this,
            &quvoGdalUtilities::slot_updateMarkerPosition);
}

void quvoGdalUtilities::addKeys()
{
    addTabKeys(*this, *m_form->m_pTabWidget);
    addShortcut(*this, QKeySequence::Open, [this] { slot_selectInputDem(); });
    addShortcut(*this, QKeySequence::Refresh, [this] {
        m_input->reopen();
        m_previewControl->renew();
    });
}

void quvoGdalUtilities::makeSources()
{
    m_sources = std::make_unique<DemSources>(
        m_scriptRunner, m_tools, m_workFolder,
        DemSources::Window{.dialog = this,
                           .button = m_form->m_pPBSelectInputDEM,
                           .bands = m_form->m_pCBBand,
                           .input = m_input.get(),
                           .selectFile = [this] { slot_selectInputDem(); },
                           .showDem = [this](const QString &path) { setInputDem(path); },
                           .recipe = [this] { return isRunning() ? std::nullopt : m_launch->recipeToRun(); }});
    connect(m_sources.get(), &DemSources::dropped, this, &quvoGdalUtilities::openDropped);
    connect(m_sources.get(), &DemSources::seriesBegins, this, [this] { m_previews.hold(); });
    connect(m_sources.get(), &DemSources::seriesEnded, this, [this] { m_previews.release(); });
}

void quvoGdalUtilities::openDropped(const QStringList &paths)
{
    if (paths.size() == 1 && SettingsMenu::isSettingsFile(paths.first()))
        m_settings->openFile(paths.first());
    else
        m_sources->open(paths);
}

void quvoGdalUtilities::connectPreviews()
{
    PreviewPane *pane = m_form->m_pGrpBPreviews;
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
    connect(pane->view(), &MapView::clicked, this, &quvoGdalUtilities::slot_onPreviewLabelClicked);
    connect(m_input.get(), &InputDem::demChanged, m_previewControl.get(), &PreviewControl::setDem);
    pane->setNameProposal([this] {
        const QFileInfo product(currentRequest().output);
        return product.path() + QLatin1Char('/') + product.completeBaseName();
    });
    connect(m_shape.get(), &WindowShape::mapShown, &m_previews, &Previews::setShown);
    slot_updateOutputFilePreview();
    m_previews.setShown(!pane->isHidden());
}

void quvoGdalUtilities::setInputDem(const QString &path)
{
    setKeepStartingDir(false);
    m_input->choose(path);
}

void quvoGdalUtilities::takeUpLastSettings(bool withInput)
{
    m_kept->takeUp(withInput);
}

void quvoGdalUtilities::setKeepStartingDir(bool keep)
{
    m_input->setKeepStartingDir(keep);
}

void quvoGdalUtilities::slot_activeLaunchButton()
{
    const optionsWidget *panel = m_tabs->currentPanel();
    const QString obstacle =
        launchObstacle(!m_input->path().isEmpty(), m_output->name(), panel ? panel->missing() : QString());
    m_form->m_pPBLaunchProcess->setEnabled(panel && obstacle.isEmpty());
    m_form->m_pPBLaunchProcess->setToolTip(obstacle.isEmpty() ? tr("Ctrl+Entrée", "MESS_LANCER_TOUCHE")
                                                              : obstacle);
    m_form->m_pPBLaunchProcess->setAccessibleDescription(obstacle);
    m_form->m_pLObstacle->setText(obstacle);
}

void quvoGdalUtilities::slot_onWidgetOptionsCompleteChanged()
{
    slot_activeLaunchButton();
}

void quvoGdalUtilities::slot_onCurrentTabChanged(int)
{
    slot_onInputDemChanged(m_input->path());
    applyTexts();
    updateOutputFormat();
    updateLook();
}

void quvoGdalUtilities::slot_onInputDemChanged(const QString &path)
{
    if (const auto process = m_tabs->currentProcess())
        m_output->propose(path.isEmpty() ? path : m_input->namingInput(), *process);
    updateProduct();
    slot_activeLaunchButton();
}

/// Says what the DEM means for the current process and its options.
void quvoGdalUtilities::updateLook()
{
    m_look->update(currentRequest(), m_tabs->currentPanel());
}

void quvoGdalUtilities::slot_onOutputFileChanged()
{
    updateProduct();
    slot_activeLaunchButton();
}

void quvoGdalUtilities::slot_selectInputDem()
{
    m_input->select();
}

void quvoGdalUtilities::slot_selectOutputFile()
{
    if (const auto process = m_tabs->currentProcess())
        m_output->select(m_input->namingInput(), *process, m_input->files());
}

ProcessingRequest quvoGdalUtilities::currentRequest() const
{
    return requestOf(m_tabs->currentProcess());
}

ProcessingRequest quvoGdalUtilities::requestOf(std::optional<Process> process) const
{
    ProcessingRequest request;
    request.process = process;
    if (process) {
        const ProcessOptions options = m_tabs->panel(*process).processOptions();
        request.mode = processWord(options);
        request.cellUse = cellUse(options);
        request.outputOptions = m_output->options(*process);
    }
    request.input = m_input->path();
    request.tiles = m_input->tiles();
    request.output = besideInput(m_output->name(), m_input->namingInput());
    request.band = m_input->band();
    request.part = m_part->part();
    return request;
}

Recipe quvoGdalUtilities::recipe() const
{
    return m_launch->recipe();
}

void quvoGdalUtilities::setRecipe(const Recipe &recipe)
{
    const Process process = processOf(recipe.options);
    if (!recipe.tiles.isEmpty())
        m_input->chooseMosaic(recipe.input, recipe.tiles);
    else if (!recipe.input.isEmpty())
        setInputDem(recipe.input);
    m_form->m_pCBBand->setCurrentIndex(recipe.band - 1);
    m_part->setPart(recipe.part);
    m_tabs->show(process);
    m_output->setOptions(process, recipe.outputOptions);
    updateOutputFormat();
    m_tabs->panel(process).setProcessOptions(recipe.options);
    if (recipe.output.isEmpty())
        slot_onInputDemChanged(m_input->path());
    else
        m_output->restore(recipe.output, m_input->namingInput(), process);
    slot_activeLaunchButton();
}

QString quvoGdalUtilities::commandToCopy() const
{
    return m_launch->commandToCopy();
}

void quvoGdalUtilities::slot_showOutputFileAdvancedOptions()
{
    const auto process = m_tabs->currentProcess();
    if (!process || !m_output->editOptions(*process, metricCrsName(m_look->facts())))
        return;
    updateOutputFormat();
    slot_activeLaunchButton();
    m_previewControl->refresh(); // a DEM that is read as it is has another product
    updateLook();
}

bool quvoGdalUtilities::mayLaunch()
{
    slot_activeLaunchButton(); // options may have been typed since the button was last updated
    return !isRunning() && m_form->m_pPBLaunchProcess->isEnabled();
}

void quvoGdalUtilities::updateOutputFormat()
{
    if (optionsWidget *panel = m_tabs->currentPanel())
        panel->setOutputFormat(outputFormat(currentRequest()));
}

void quvoGdalUtilities::updateProduct()
{
    if (optionsWidget *panel = m_tabs->currentPanel())
        panel->setProduct(currentRequest().output);
}

bool quvoGdalUtilities::isRunning() const
{
    return m_launch->isRunning() || m_sources->series().isRunning();
}

void quvoGdalUtilities::slot_launchProcess()
{
    if (!mayLaunch())
        return;
    m_previews.hold();
    if (!m_launch->start())
        m_previews.release();
}

void quvoGdalUtilities::slot_processFinished()
{
    m_launch->showFinished();
}

void quvoGdalUtilities::slot_processAborted()
{
    m_launch->showAborted();
}

void quvoGdalUtilities::slot_processFailed(const QString &)
{
    m_launch->showFailed();
}

std::optional<ProcessingRequest> quvoGdalUtilities::previewRequest(const QString &copy)
{
    const auto toolInput = m_tabs->currentPanel()->previewInput(copy);
    if (!toolInput)
        return std::nullopt;
    ProcessingRequest request = currentRequest();
    request.toolInput = *toolInput;
    return request;
}

void quvoGdalUtilities::slot_updateOutputFilePreview()
{
    const auto process = m_tabs->currentProcess();
    m_previewControl->showPanel(m_tabs->currentPanel(), m_tabs->currentTitle(),
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
    m_shape->removeMap();
    const QString text =
        tr("Une erreur est survenue lors de la création d'une vue réduite du MNT.\nLe mécanisme "
           "de preview doit être désactivé.",
           "MESS_ERR_APERCU_DES");
    Prompt::warning(this, QStringLiteral("%1\n\n%2").arg(text, toolText.trimmed()).trimmed());
}

void quvoGdalUtilities::slot_dialogExtension()
{
    m_shape->toggleMap();
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
    if (isRunning()
        && !Prompt::question(
            this, tr("Un traitement est en cours. Voulez-vous l'arrêter et quitter ?", "MESS_QUITTER_TRAIT")))
        return;
    stopRunSilently();
    m_shape->save();
    m_kept->save();
    writeFilerState(QuvoFilerDialog::state());
    QDialog::done(result);
}

void quvoGdalUtilities::closeAtOnce()
{
    stopRunSilently();
    close();
}

void quvoGdalUtilities::abandonRun()
{
    m_sources->series().abandon();
    m_launch->run().abandon();
}

void quvoGdalUtilities::stopRunSilently()
{
    m_sources->series().abandon();
    m_launch->stopSilently();
}

void quvoGdalUtilities::keyPressEvent(QKeyEvent *event)
{
    const bool isReturn = event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter;
    if (isReturn && event->modifiers().testFlag(Qt::ControlModifier))
        slot_launchProcess();
    else if (event->key() == Qt::Key_Escape)
        leaveField(focusWidget());
    else if (!isReturn)
        QDialog::keyPressEvent(event);
}

void quvoGdalUtilities::changeEvent(QEvent *event)
{
    if (event->type() == QEvent::LanguageChange) {
        m_form->retranslateUi(this);
        applyTexts();
        slot_activeLaunchButton();
        m_part->applyTexts();
        m_shape->arrange();
        m_kept->applyTexts();
        m_tabs->applyTexts();
        slot_updateOutputFilePreview();
        m_previewControl->refresh();
        updateLook();
    }
    QDialog::changeEvent(event);
}

/// Sets the texts that the form does not hold, in the language in use and for the current process.
void quvoGdalUtilities::applyTexts()
{
    m_form->m_pAboutLabel->setText(
        QStringLiteral("<a href=\"about\">%1</a>").arg(tr("a propos...", "MESS_ABOUT...").toHtmlEscaped()));
    const auto process = m_tabs->currentProcess();
    const bool vector = process && processRow(*process).product == ProductKind::Vector;
    m_form->m_pLOutputFile->setText(vector ? tr("Fichier vecteur à créer :", "MESS_FIC_VECT_A_CREER")
                                           : tr("Fichier à créer :", "MESS_FIC_A_CREER"));
}
