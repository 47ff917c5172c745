#include "panels/aspectOptionsWidget.h"

#include "messages/label.h"
#include "panels/controls/paneltexts.h"
#include "panels/options/valueclasses.h"
#include "ui_aspectOptionsWidget.h"

#include <QEvent>

aspectOptionsWidget::aspectOptionsWidget(QWidget *parent, Qt::WindowFlags flags)
    : optionsWidget(parent, flags)
    , m_form(std::make_unique<Ui::aspectOptionsWidget>())
{
    m_form->setupUi(this);
    showOptions({});
    applyTexts();
    connectControls();
}

aspectOptionsWidget::~aspectOptionsWidget() = default;

void aspectOptionsWidget::connectControls()
{
    // Each radio button stands in a frame of its own, so that Qt does not uncheck the other one before
    // clicked(): the slots must see which one was checked.
    connect(m_form->m_pPBAzimuth, &QPushButton::clicked, this, &aspectOptionsWidget::slot_checkAzimuth);
    connect(m_form->m_pRBAzimuth, &QRadioButton::clicked, this, &aspectOptionsWidget::slot_checkAzimuth);
    connect(m_form->m_pPBAzimuth, &QPushButton::clicked, this,
            &aspectOptionsWidget::slot_onAzimuthButtonClicked);
    connect(m_form->m_pPBTrigonometric, &QPushButton::clicked, this,
            &aspectOptionsWidget::slot_checkTrigonometric);
    connect(m_form->m_pRBTrigonometric, &QRadioButton::clicked, this,
            &aspectOptionsWidget::slot_checkTrigonometric);
    connect(m_form->m_pPBTrigonometric, &QPushButton::clicked, this,
            &aspectOptionsWidget::slot_onTrigoButtonClicked);
    connect(m_form->m_pCBDirections, qOverload<int>(&QComboBox::activated), this,
            &aspectOptionsWidget::slot_onOptionsChanged);
    connect(m_form->m_pRBZero, &QRadioButton::toggled, this, &aspectOptionsWidget::slot_onOptionsChanged);
    connect(m_form->m_pChBComputeAtEdges, &QCheckBox::toggled, this,
            &aspectOptionsWidget::slot_onOptionsChanged);
    connect(m_form->m_pRBZevenbergenThorne, &QRadioButton::toggled, this,
            &aspectOptionsWidget::slot_onOptionsChanged);
}

QString aspectOptionsWidget::getCommandArguments()
{
    return aspectFragment(options());
}

std::optional<ToolInput> aspectOptionsWidget::launchInput()
{
    return aspectInput(options());
}

std::optional<ToolInput> aspectOptionsWidget::previewInput(const QString &)
{
    // The map shows flat cells in no direction, not as north.
    const bool hasDirections = options().directions > 0;
    return ToolInput{.fragment = hasDirections ? withFlatMarked(getCommandArguments()) : getCommandArguments()};
}

AspectOptions aspectOptionsWidget::options() const
{
    AspectOptions options;
    options.trigonometric = m_form->m_pRBTrigonometric->isChecked();
    options.zeroForFlat = m_form->m_pRBZero->isChecked();
    options.computeEdges = m_form->m_pChBComputeAtEdges->isChecked();
    options.zevenbergenThorne = m_form->m_pRBZevenbergenThorne->isChecked();
    options.directions = m_form->m_pCBDirections->currentData().toInt();
    return options;
}

void aspectOptionsWidget::listDirections(int chosen)
{
    QComboBox &list = *m_form->m_pCBDirections;
    list.clear();
    list.addItem(tr("aucune", "MESS_REECH_AUCUNE"), 0);
    for (const int count : {8, 16})
        list.addItem(tr("%1 directions", "MESS_N_DIRECTIONS").arg(count), count);
    list.setCurrentIndex(qMax(0, list.findData(chosen)));
}

void aspectOptionsWidget::setProcessOptions(const ProcessOptions &processOptions)
{
    const auto *options = std::get_if<AspectOptions>(&processOptions);
    if (!options)
        return;
    showOptions(*options);
    slot_onOptionsChanged();
}

void aspectOptionsWidget::showOptions(const AspectOptions &options)
{
    listDirections(options.directions);
    m_form->m_pRBAzimuth->setChecked(!options.trigonometric);
    m_form->m_pRBTrigonometric->setChecked(options.trigonometric);
    (options.zeroForFlat ? m_form->m_pRBZero : m_form->m_pRBNoData)->setChecked(true);
    m_form->m_pChBComputeAtEdges->setChecked(options.computeEdges);
    (options.zevenbergenThorne ? m_form->m_pRBZevenbergenThorne : m_form->m_pRBHorn)->setChecked(true);
}

void aspectOptionsWidget::slot_onOptionsChanged()
{
    reportChange();
    emit completeChanged();
}

void aspectOptionsWidget::slot_onAzimuthButtonClicked()
{
    m_form->m_pPBAzimuth->clearFocus();
}

void aspectOptionsWidget::slot_onTrigoButtonClicked()
{
    m_form->m_pPBTrigonometric->clearFocus();
}

void aspectOptionsWidget::slot_checkAzimuth()
{
    const bool changes = m_form->m_pRBTrigonometric->isChecked();
    m_form->m_pRBAzimuth->setChecked(true);
    m_form->m_pRBTrigonometric->setChecked(false);
    if (changes)
        slot_onOptionsChanged();
}

void aspectOptionsWidget::slot_checkTrigonometric()
{
    const bool changes = m_form->m_pRBAzimuth->isChecked();
    m_form->m_pRBAzimuth->setChecked(false);
    m_form->m_pRBTrigonometric->setChecked(true);
    if (changes)
        slot_onOptionsChanged();
}

void aspectOptionsWidget::changeEvent(QEvent *event)
{
    if (event->type() == QEvent::LanguageChange) {
        m_form->retranslateUi(this);
        applyTexts();
    }
    optionsWidget::changeEvent(event);
}

void aspectOptionsWidget::applyTexts()
{
    listDirections(options().directions);
    m_form->m_pLabelAspect->setText(withColon(tr("Orientations:", "MESS_ORIENTATIONS")));
    m_form->m_pLabelCode->setText(
        withColon(tr("Code à utiliser pour exprimer l'orientation des zones plates :", "MESS_ORIENT_PLAT")));
    m_form->m_pLabelCalcMethode->setText(methodText());
    m_form->m_pLabelCalcBord->setText(edgesText());
}
