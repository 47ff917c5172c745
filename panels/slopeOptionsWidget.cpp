#include "panels/slopeOptionsWidget.h"

#include "panels/controls/paneltexts.h"
#include "panels/controls/scalecombo.h"
#include "ui_slopeOptionsWidget.h"

#include <QEvent>

namespace
{

const SlopeOptions defaults;

} // namespace

slopeOptionsWidget::slopeOptionsWidget(QWidget *parent, Qt::WindowFlags flags)
    : optionsWidget(parent, flags)
    , m_form(std::make_unique<Ui::slopeOptionsWidget>())
{
    m_form->setupUi(this);
    m_pScaleCombo = makeScaleCombo(m_form->m_pRatioFrame);
    showOptions(defaults);
    applyTexts();
    connectControls();
}

slopeOptionsWidget::~slopeOptionsWidget() = default;

void slopeOptionsWidget::connectControls()
{
    connectScale(m_pScaleCombo, this);
    connect(m_form->m_pPBResetScale, &QPushButton::clicked, this, &slopeOptionsWidget::slot_resetScaleValue);
    connect(m_form->m_pRBDegreesSlope, &QRadioButton::toggled, this,
            &slopeOptionsWidget::slot_onOptionsChanged);
    connect(m_form->m_pChBComputeAtEdges, &QCheckBox::toggled, this,
            &slopeOptionsWidget::slot_onOptionsChanged);
    connect(m_form->m_pRBZevenbergenThorne, &QRadioButton::toggled, this,
            &slopeOptionsWidget::slot_onOptionsChanged);
}

QString slopeOptionsWidget::getCommandArguments()
{
    return slopeFragment(options());
}

bool slopeOptionsWidget::isComplete() const
{
    return ::isComplete(options());
}

SlopeOptions slopeOptionsWidget::options() const
{
    SlopeOptions options;
    options.percent = m_form->m_pRBPercentSlope->isChecked();
    options.scaleIndex = m_pScaleCombo->chosenIndex();
    options.scaleText = options.scaleIndex < 0 ? m_pScaleCombo->currentText() : QString();
    options.computeEdges = m_form->m_pChBComputeAtEdges->isChecked();
    options.zevenbergenThorne = m_form->m_pRBZevenbergenThorne->isChecked();
    return options;
}

void slopeOptionsWidget::setProcessOptions(const ProcessOptions &processOptions)
{
    const auto *options = std::get_if<SlopeOptions>(&processOptions);
    if (!options)
        return;
    showOptions(*options);
    if (options->scaleIndex < 0)
        slot_onScaleValueChanged();
    slot_onOptionsChanged();
}

void slopeOptionsWidget::showOptions(const SlopeOptions &options)
{
    (options.percent ? m_form->m_pRBPercentSlope : m_form->m_pRBDegreesSlope)->setChecked(true);
    showScale(*m_pScaleCombo, options.scaleIndex, options.scaleText);
    m_form->m_pChBComputeAtEdges->setChecked(options.computeEdges);
    (options.zevenbergenThorne ? m_form->m_pRBZevenbergenThorne : m_form->m_pRBHorn)->setChecked(true);
}

void slopeOptionsWidget::slot_onScaleValueChanged()
{
    m_form->m_pPBResetScale->setEnabled(true);
}

void slopeOptionsWidget::slot_resetScaleValue()
{
    m_pScaleCombo->choose(defaults.scaleIndex);
    m_form->m_pPBResetScale->setEnabled(false); // after the change, which enables the button
}

void slopeOptionsWidget::slot_onOptionsChanged()
{
    updateScaleNote();
    reportChange();
    emit completeChanged();
}

void slopeOptionsWidget::setScaleHint(const QString &hint)
{
    m_scaleHint = hint;
    updateScaleNote();
}

void slopeOptionsWidget::updateScaleNote()
{
    const auto shown = options();
    showScaleHint(*m_pScaleCombo, scaleProblem(shown.scaleIndex, shown.scaleText), m_scaleHint);
}

void slopeOptionsWidget::changeEvent(QEvent *event)
{
    if (event->type() == QEvent::LanguageChange) {
        m_form->retranslateUi(this);
        applyTexts();
        updateScaleNote();
    }
    optionsWidget::changeEvent(event);
}

void slopeOptionsWidget::applyTexts()
{
    m_form->m_pLabelCalcMethode->setText(methodText());
    m_form->m_pLabelCalcBord->setText(edgesText());
    m_pScaleCombo->translateItems(scaleLabels());
}
