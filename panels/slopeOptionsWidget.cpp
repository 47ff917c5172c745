#include "panels/slopeOptionsWidget.h"

#include "colortable/editor/tablefiles.h"
#include "panels/controls/focusorder.h"
#include "panels/controls/paneltexts.h"
#include "panels/controls/scalecombo.h"
#include "panels/controls/tips.h"
#include "panels/options/valueclasses.h"
#include "ui_slopeOptionsWidget.h"

#include <QEvent>
#include <QFileInfo>

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
    orderFocus(*this,
               {m_form->m_pRBPercentSlope, m_form->m_pRBDegreesSlope, m_form->m_pRatioFrame,
                m_form->m_pPBResetScale, m_form->m_pRBZevenbergenThorne, m_form->m_pRBHorn,
                m_form->m_pChBComputeAtEdges, m_form->m_pCBClasses});
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
    connect(m_form->m_pCBClasses, qOverload<int>(&QComboBox::activated), this,
            &slopeOptionsWidget::onClassesActivated);
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

QString slopeOptionsWidget::missing() const
{
    return missingScale(options().scaleIndex, options().scaleText);
}

std::optional<ToolInput> slopeOptionsWidget::launchInput()
{
    return slopeInput(options());
}

std::optional<ToolInput> slopeOptionsWidget::previewInput(const QString &)
{
    return ToolInput{.fragment = getCommandArguments()};
}

SlopeOptions slopeOptionsWidget::options() const
{
    SlopeOptions options;
    options.percent = m_form->m_pRBPercentSlope->isChecked();
    options.scaleIndex = m_pScaleCombo->chosenIndex();
    options.scaleText = options.scaleIndex < 0 ? m_pScaleCombo->currentText() : QString();
    options.computeEdges = m_form->m_pChBComputeAtEdges->isChecked();
    options.zevenbergenThorne = m_form->m_pRBZevenbergenThorne->isChecked();
    options.classes = m_classes;
    return options;
}

/// Fills the list of classes: none, the tables of this program, the user's own if that is chosen, and the
/// choice of another file, whose row has no data.
void slopeOptionsWidget::listClasses(const QString &chosen)
{
    m_classes = chosen;
    QComboBox &list = *m_form->m_pCBClasses;
    list.clear();
    list.addItem(tr("aucune", "MESS_REECH_AUCUNE"), QString());
    list.addItem(tr("avalanches (degrés)", "MESS_CLASSES_AVALANCHE"), QStringLiteral("avalanche"));
    list.addItem(tr("agriculture (pour cent)", "MESS_CLASSES_FERME"), QStringLiteral("farming"));
    list.addItem(tr("construction (pour cent)", "MESS_CLASSES_BATIR"), QStringLiteral("building"));
    if (list.findData(chosen) < 0) {
        list.addItem(QFileInfo(chosen).fileName(), chosen);
        list.setItemData(list.count() - 1, chosen, Qt::ToolTipRole);
    }
    list.addItem(tr("votre table couleur…", "MESS_CLASSES_PROPRE"));
    list.setCurrentIndex(list.findData(chosen));
}

void slopeOptionsWidget::onClassesActivated(int row)
{
    QString chosen = m_form->m_pCBClasses->itemData(row).toString();
    if (row == m_form->m_pCBClasses->count() - 1) {
        const QString file = chooseTableToOpen(this, QFileInfo(m_classes).path());
        chosen = file.isEmpty() ? m_classes : file;
    }
    const bool changes = chosen != m_classes;
    listClasses(chosen);
    if (changes)
        slot_onOptionsChanged();
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
    listClasses(options.classes);
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
    nameReset(*m_form->m_pPBResetScale, m_form->m_pScaleLabel->text());
    listClasses(m_classes);
    m_pScaleCombo->translateItems(scaleLabels());
}
