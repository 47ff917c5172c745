#include "panels/slopeOptionsWidget.h"

#include "messages/label.h"
#include "panels/controls/QEditableComboBox.h"
#include "panels/controls/scalecombo.h"
#include "ui_slopeOptionsWidget.h"

#include <QEvent>
#include <QLineEdit>

slopeOptionsWidget::slopeOptionsWidget(QWidget *parent, Qt::WindowFlags flags)
    : optionsWidget(parent, flags)
    , m_form(std::make_unique<Ui::slopeOptionsWidget>())
{
    m_form->setupUi(this);
    m_pScaleCombo = makeScaleCombo(m_form->m_pRatioFrame);
    applyTexts();
    connectControls();
}

slopeOptionsWidget::~slopeOptionsWidget() = default;

void slopeOptionsWidget::connectControls()
{
    const auto indexChanged = qOverload<int>(&QComboBox::currentIndexChanged);
    connect(m_pScaleCombo, indexChanged, this, &slopeOptionsWidget::slot_onScaleValueChanged);
    connect(m_pScaleCombo, indexChanged, this, &slopeOptionsWidget::slot_onOptionsChanged);
    connect(m_form->m_pPBResetScale, &QPushButton::clicked, this, &slopeOptionsWidget::slot_resetScaleValue);
    connect(m_form->m_pRBDegreesSlope, &QRadioButton::toggled, this,
            &slopeOptionsWidget::slot_onOptionsChanged);
    connect(m_form->m_pChBComputeAtEdges, &QCheckBox::toggled, this,
            &slopeOptionsWidget::slot_onOptionsChanged);
    connect(m_form->m_pRBZevenbergenThorne, &QRadioButton::toggled, this,
            &slopeOptionsWidget::slot_onOptionsChanged);

    // Typing changes no index, and a reset of what was typed need not either.
    connect(m_pScaleCombo->lineEdit(), &QLineEdit::textEdited, this,
            &slopeOptionsWidget::slot_onScaleValueChanged);
    connect(m_pScaleCombo->lineEdit(), &QLineEdit::textEdited, this,
            &slopeOptionsWidget::slot_onOptionsChanged);
    connect(m_pScaleCombo, &QEditableComboBox::textReset, this, &slopeOptionsWidget::slot_onOptionsChanged);
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
    (options->percent ? m_form->m_pRBPercentSlope : m_form->m_pRBDegreesSlope)->setChecked(true);
    if (options->scaleIndex >= 0) {
        m_pScaleCombo->choose(options->scaleIndex);
    } else {
        m_pScaleCombo->showTyped(options->scaleText);
        slot_onScaleValueChanged();
    }
    m_form->m_pChBComputeAtEdges->setChecked(options->computeEdges);
    (options->zevenbergenThorne ? m_form->m_pRBZevenbergenThorne : m_form->m_pRBHorn)->setChecked(true);
    slot_onOptionsChanged();
}

void slopeOptionsWidget::slot_onScaleValueChanged()
{
    m_form->m_pPBResetScale->setEnabled(true);
}

void slopeOptionsWidget::slot_resetScaleValue()
{
    m_pScaleCombo->choose(0);
    m_form->m_pPBResetScale->setEnabled(false); // after the change, which enables it
}

void slopeOptionsWidget::slot_onOptionsChanged()
{
    emit completeChanged();
}

void slopeOptionsWidget::changeEvent(QEvent *event)
{
    if (event->type() == QEvent::LanguageChange) {
        m_form->retranslateUi(this);
        applyTexts();
    }
    optionsWidget::changeEvent(event);
}

void slopeOptionsWidget::applyTexts()
{
    m_form->m_pLabelCalcMethode->setText(withColon(tr("Méthode de calcul", "MESS_CALC_METHODE")));
    m_form->m_pLabelCalcBord->setText(
        withColon(tr("Autoriser le calcul sur les bords de l’image et à proximité des valeurs NoData",
                     "MESS_CALC_BORD_EXPL")));
    m_pScaleCombo->translateItems(scaleLabels());
}
