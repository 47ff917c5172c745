#include "panels/shadedOptionsWidget.h"

#include "messages/label.h"
#include "messages/shownnumber.h"
#include "panels/controls/CompassDial.h"
#include "panels/controls/focusorder.h"
#include "panels/controls/paneltexts.h"
#include "panels/controls/scalecombo.h"
#include "panels/controls/tips.h"
#include "panels/light/LightChoice.h"
#include "panels/options/lightazimuth.h"
#include "ui_shadedOptionsWidget.h"

#include <QEvent>
#include <QLocale>
#include <QTimerEvent>

#include <cmath>

#include <qwt_compass_rose.h>
#include <qwt_dial_needle.h>
#include <qwt_wheel.h>

namespace
{

const ShadedOptions defaults;

constexpr double fullTurn = 360.0; // degrees
constexpr int largestDial = 220;   // pixels

/// Six significant digits at most, as the user's language writes numbers.
QString numberShown(double value)
{
    return shownNumber(value, 'g', 6);
}

QString degrees(double value)
{
    return numberShown(value) + QStringLiteral("°");
}

} // namespace

shadedOptionsWidget::shadedOptionsWidget(QWidget *parent, Qt::WindowFlags flags)
    : optionsWidget(parent, flags)
    , m_form(std::make_unique<Ui::shadedOptionsWidget>())
{
    m_form->setupUi(this);
    makeCompass();
    makeWheel();
    m_pScaleCombo = makeScaleCombo(m_form->m_pRatioFrame);
    orderTabs();
    showOptions(defaults);
    applyTexts();
    connectControls();
}

shadedOptionsWidget::~shadedOptionsWidget()
{
    delete m_pCompass;
    delete m_pWheel;
}

void shadedOptionsWidget::makeCompass()
{
    m_pCompass = new CompassDial(m_form->m_pCompassFrame);
    // Rose, needle and scale belong to the compass.
    m_pCompass->setScaleDraw(new QwtCompassScaleDraw({{0.0, QStringLiteral("N")},
                                                      {90.0, QStringLiteral("E")},
                                                      {180.0, QStringLiteral("S")},
                                                      {270.0, QStringLiteral("W")}}));
    auto rose = new QwtSimpleCompassRose(4, 1);
    QPalette roseColours = palette();
    roseColours.setColor(QPalette::Dark, QColor(140, 154, 168));
    roseColours.setColor(QPalette::Light, QColor(201, 211, 220));
    rose->setPalette(roseColours);
    m_pCompass->setRose(rose);
    m_pCompass->setNeedle(
        new QwtCompassWindArrow(QwtCompassWindArrow::Style2, QColor(217, 164, 65), QColor(176, 122, 30)));
    m_pCompass->setLineWidth(4);
    m_pCompass->setFrameShadow(QwtDial::Sunken);
    m_pCompass->setTotalSteps(360);
    m_pCompass->setSingleSteps(1);
    m_pCompass->setPageSteps(15);
    auto layout = new QVBoxLayout(m_form->m_pCompassFrame);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(m_pCompass);
    m_form->m_pCompassFrame->setMaximumSize(largestDial, largestDial);
    m_form->m_pAzimuthLayout->setAlignment(m_form->m_pCompassFrame, Qt::AlignHCenter);
}

void shadedOptionsWidget::makeWheel()
{
    m_pWheel = new QwtWheel(m_form->m_pZFactorFrame);
    m_pWheel->setRange(0.0, 100.0);
    m_pWheel->setSingleStep(0.1);
    m_pWheel->setPageStepCount(1);
    m_pWheel->setTotalAngle(1800.0);
    m_pWheel->setMinimumWidth(200);
    auto layout = new QVBoxLayout(m_form->m_pZFactorFrame);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(m_pWheel);
}

/// The Tab key follows the eye: the controls that the form lacks were made last.
void shadedOptionsWidget::orderTabs()
{
    orderFocus(*this,
               {m_pCompass, m_form->m_pAzimuthField, m_form->m_pPBResetAzimuth, m_form->m_pAltitudeSlider,
                m_form->m_pPBResetAltitude, m_pWheel, m_form->m_pPBResetZFactor, m_pScaleCombo,
                m_form->m_pPBResetScale, m_form->m_pRBZevenbergenThorne, m_form->m_pRBHorn,
                m_form->m_pChBComputeAtEdges, m_form->m_pLightChoice});
}

void shadedOptionsWidget::connectControls()
{
    connect(m_pWheel, &QwtWheel::valueChanged, this, &shadedOptionsWidget::slot_onOptionsChanged);
    connect(m_pWheel, &QwtWheel::valueChanged, this, &shadedOptionsWidget::slot_onZFactorValueChanged);
    connectScale(m_pScaleCombo, this);
    connect(m_form->m_pPBResetAltitude, &QPushButton::clicked, this,
            &shadedOptionsWidget::slot_resetAltitudeValue);
    connect(m_form->m_pPBResetAzimuth, &QPushButton::clicked, this,
            &shadedOptionsWidget::slot_resetAzimuthValue);
    connect(m_form->m_pPBResetScale, &QPushButton::clicked, this, &shadedOptionsWidget::slot_resetScaleValue);
    connect(m_form->m_pPBResetZFactor, &QPushButton::clicked, this,
            &shadedOptionsWidget::slot_resetZFactorValue);
    connect(m_pCompass, &QwtCompass::valueChanged, this, &shadedOptionsWidget::slot_onOptionsChanged);
    connect(m_form->m_pAltitudeSlider, &QSlider::valueChanged, this,
            &shadedOptionsWidget::slot_onOptionsChanged);
    connect(m_pCompass, &QwtCompass::valueChanged, this, &shadedOptionsWidget::slot_onAzimuthValueChanged);
    connect(m_form->m_pAltitudeSlider, &QSlider::valueChanged, this,
            &shadedOptionsWidget::slot_onAltitudeValueChanged);
    connect(m_form->m_pRBZevenbergenThorne, &QRadioButton::toggled, this,
            &shadedOptionsWidget::slot_onOptionsChanged);
    connect(m_form->m_pChBComputeAtEdges, &QCheckBox::toggled, this,
            &shadedOptionsWidget::slot_onOptionsChanged);
    connect(m_form->m_pAzimuthField, qOverload<double>(&QDoubleSpinBox::valueChanged), m_pCompass,
            [this](double reading) { m_pCompass->setValue(std::fmod(reading, fullTurn)); });
    connect(m_form->m_pLightChoice, &LightChoice::lightChanged, this,
            &shadedOptionsWidget::slot_onOptionsChanged);
    connect(m_form->m_pLightChoice, &LightChoice::presetChosen, this,
            [this](const ShadedOptions &light) { setProcessOptions(withLight(options(), light)); });
}

QString shadedOptionsWidget::getCommandArguments()
{
    return shadedFragment(options());
}

bool shadedOptionsWidget::isComplete() const
{
    return ::isComplete(options());
}

QString shadedOptionsWidget::missing() const
{
    return missingScale(options().scaleIndex, options().scaleText);
}

ShadedOptions shadedOptionsWidget::options() const
{
    ShadedOptions options;
    options.exaggeration = m_pWheel->value();
    options.scaleIndex = m_pScaleCombo->chosenIndex();
    options.scaleText = options.scaleIndex < 0 ? m_pScaleCombo->currentText() : QString();
    options.compass = m_pCompass->value();
    options.altitude = m_form->m_pAltitudeSlider->value();
    options.computeEdges = m_form->m_pChBComputeAtEdges->isChecked();
    options.zevenbergenThorne = m_form->m_pRBZevenbergenThorne->isChecked();
    options.light = lightWord(m_form->m_pLightChoice->light());
    return options;
}

void shadedOptionsWidget::setProcessOptions(const ProcessOptions &options)
{
    const auto *shaded = std::get_if<ShadedOptions>(&options);
    if (!shaded)
        return;
    showOptions(*shaded);
    if (shaded->scaleIndex < 0)
        slot_onScaleValueChanged();
    slot_onOptionsChanged();
}

void shadedOptionsWidget::showOptions(const ShadedOptions &options)
{
    m_pWheel->setValue(options.exaggeration);
    m_pCompass->setValue(options.compass);
    m_form->m_pAltitudeSlider->setValue(options.altitude);
    showScale(*m_pScaleCombo, options.scaleIndex, options.scaleText);
    m_form->m_pChBComputeAtEdges->setChecked(options.computeEdges);
    (options.zevenbergenThorne ? m_form->m_pRBZevenbergenThorne : m_form->m_pRBHorn)->setChecked(true);
    m_form->m_pLightChoice->showLight(options);
    showLight();
    showValues();
}

/// Greys out what the chosen light does not use, and says why.
void shadedOptionsWidget::showLight()
{
    const Light light = m_form->m_pLightChoice->light();
    m_form->m_pAZimuthFrame->setEnabled(unusedAzimuthText(light).isEmpty());
    m_form->m_pSunFrame->setEnabled(unusedAltitudeText(light).isEmpty());
    m_form->m_pSunNote->setText(unusedAltitudeText(light));
    m_form->m_pSunNote->setVisible(!m_form->m_pSunNote->text().isEmpty());
    QPalette legible = palette(); // the reason is read while the controls around it are grey
    legible.setColor(QPalette::Disabled, QPalette::WindowText,
                     palette().color(QPalette::Active, QPalette::WindowText));
    for (QLabel *reason : {m_form->m_pSunNote, m_form->m_pLightLabel})
        reason->setPalette(legible);
    showReading(m_pCompass->value());
}

void shadedOptionsWidget::hideEdges()
{
    for (QWidget *control : QList<QWidget *>{m_form->m_pLabelCalcBord, m_form->m_pChBComputeAtEdges})
        control->hide();
}

void shadedOptionsWidget::setLightShelf(LightShelf *shelf)
{
    m_form->m_pLightChoice->setShelf(shelf);
}

void shadedOptionsWidget::showValues()
{
    showReading(m_pCompass->value());
    m_form->m_pAltitudeValueLabel->setText(degrees(m_form->m_pAltitudeSlider->value()));
    m_form->m_pZFactorValueLabel->setText(numberShown(m_pWheel->value()));
}

void shadedOptionsWidget::showReading(double reading)
{
    m_form->m_pAzimuthValueLabel->setText(degrees(reading));
    m_form->m_pAzimuthField->showAngle(reading);
    const QString unused = unusedAzimuthText(m_form->m_pLightChoice->light());
    m_form->m_pLightLabel->setText(unused.isEmpty() ? lightText(reading, QLocale()) : unused);
}

void shadedOptionsWidget::slot_onAzimuthValueChanged(double value)
{
    showReading(value);
    m_form->m_pPBResetAzimuth->setEnabled(true);
}

void shadedOptionsWidget::slot_onAltitudeValueChanged(int value)
{
    m_form->m_pAltitudeValueLabel->setText(degrees(value));
    m_form->m_pPBResetAltitude->setEnabled(true);
}

void shadedOptionsWidget::slot_onZFactorValueChanged(double value)
{
    m_form->m_pZFactorValueLabel->setText(numberShown(value));
    m_form->m_pPBResetZFactor->setEnabled(true);
}

void shadedOptionsWidget::slot_onScaleValueChanged()
{
    m_form->m_pPBResetScale->setEnabled(true);
}

// The value is set first and the button disabled after it, because the change enables the button.

void shadedOptionsWidget::slot_resetAzimuthValue()
{
    m_pCompass->setValue(defaults.compass);
    m_form->m_pPBResetAzimuth->setEnabled(false);
}

void shadedOptionsWidget::slot_resetAltitudeValue()
{
    m_form->m_pAltitudeSlider->setValue(defaults.altitude);
    m_form->m_pPBResetAltitude->setEnabled(false);
}

void shadedOptionsWidget::slot_resetScaleValue()
{
    m_pScaleCombo->choose(defaults.scaleIndex);
    m_form->m_pPBResetScale->setEnabled(false);
}

void shadedOptionsWidget::slot_resetZFactorValue()
{
    m_pWheel->setValue(defaults.exaggeration);
    m_form->m_pPBResetZFactor->setEnabled(false);
}

void shadedOptionsWidget::slot_onOptionsChanged()
{
    updateScaleNote();
    m_form->m_pLightChoice->showLight(options());
    showLight();
    reportChange();
    m_changeTimer.start(changeDelay, this); // a pending timer begins again
}

void shadedOptionsWidget::timerEvent(QTimerEvent *event)
{
    if (event->timerId() == m_changeTimer.timerId()) {
        m_changeTimer.stop(); // before the signal, whose receiver may change an option
        emit completeChanged();
    }
    optionsWidget::timerEvent(event);
}

void shadedOptionsWidget::setScaleHint(const QString &hint)
{
    m_scaleHint = hint;
    updateScaleNote();
}

void shadedOptionsWidget::updateScaleNote()
{
    const auto shown = options();
    showScaleHint(*m_pScaleCombo, scaleProblem(shown.scaleIndex, shown.scaleText), m_scaleHint);
}

void shadedOptionsWidget::changeEvent(QEvent *event)
{
    if (event->type() == QEvent::LanguageChange) {
        m_form->retranslateUi(this);
        applyTexts();
        updateScaleNote();
    }
    optionsWidget::changeEvent(event);
}

void shadedOptionsWidget::applyTexts()
{
    m_form->m_pLabelExageration->setText(withColon(tr("Exagération verticale", "MESS_EXA_RELIEF")));
    m_form->m_pLabelCalcMethode->setText(methodText());
    m_form->m_pLabelCalcBord->setText(edgesText());
    const QString reading = tr("L'outil reçoit l'azimut 270 - lecture de la boussole.", "MESS_BOUSSOLE_EXPL");
    for (QWidget *control : QList<QWidget *>{m_form->m_pCompassFrame, m_form->m_pAzimuthField})
        setTipRemark(*control, reading);
    m_pCompass->setAccessibleName(m_form->m_pAzimuthLabel->text());
    m_form->m_pAltitudeSlider->setAccessibleName(m_form->m_pSunLabel->text());
    m_pWheel->setAccessibleName(m_form->m_pLabelExageration->text());
    nameReset(*m_form->m_pPBResetAzimuth, m_form->m_pAzimuthLabel->text());
    nameReset(*m_form->m_pPBResetAltitude, m_form->m_pSunLabel->text());
    nameReset(*m_form->m_pPBResetZFactor, m_form->m_pLabelExageration->text());
    nameReset(*m_form->m_pPBResetScale, m_form->m_pScaleLabel->text());
    showLight();
    showValues(); // numbers and the words for the light
    m_pScaleCombo->translateItems(scaleLabels());
}
