#include "panels/light/ColorShading.h"

#include "panels/controls/ClickSlider.h"

#include <QCheckBox>
#include <QEvent>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QLocale>
#include <QPushButton>
#include <QRadioButton>

namespace
{

constexpr int indent = 24;
constexpr int sliderWidth = 160;

/// The edges are always computed for the shading, so the choice is no part of its light.
ShadedOptions withoutEdges(ShadedOptions light)
{
    light.computeEdges = ShadedOptions().computeEdges;
    return light;
}

} // namespace

ColorShading::ColorShading(QWidget *parent)
    : QWidget(parent)
    , m_pShade(new QCheckBox(this))
    , m_pStrengthLabel(new QLabel(this))
    , m_pStrength(new ClickSlider(this))
    , m_pStrengthValue(new QLabel(this))
    , m_pLightLabel(new QLabel(this))
    , m_pPanelLight(new QRadioButton(this))
    , m_pOwnLight(new QRadioButton(this))
    , m_pEdit(new QPushButton(this))
{
    m_pShade->setObjectName(QStringLiteral("m_pChBShade"));
    m_pStrength->setObjectName(QStringLiteral("m_pShadeStrength"));
    m_pPanelLight->setObjectName(QStringLiteral("m_pRBPanelLight"));
    m_pOwnLight->setObjectName(QStringLiteral("m_pRBOwnLight"));
    m_pEdit->setObjectName(QStringLiteral("m_pPBEditLight"));
    m_pEdit->setAutoDefault(false);
    m_pStrength->setOrientation(Qt::Horizontal);
    m_pStrength->setRange(0, 100);
    m_pStrength->setPageStep(10);
    m_pStrength->setFixedWidth(sliderWidth);
    m_pStrengthLabel->setBuddy(m_pStrength);
    auto strengthRow = new QHBoxLayout;
    strengthRow->addWidget(m_pStrength);
    strengthRow->addWidget(m_pStrengthValue);
    strengthRow->addStretch();
    auto ownRow = new QHBoxLayout;
    ownRow->addWidget(m_pOwnLight);
    ownRow->addWidget(m_pEdit);
    ownRow->addStretch();
    auto layout = new QGridLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(m_pShade, 0, 0, 1, 3);
    layout->setColumnMinimumWidth(0, indent);
    layout->addWidget(m_pStrengthLabel, 1, 1);
    layout->addLayout(strengthRow, 1, 2);
    layout->addWidget(m_pLightLabel, 2, 1);
    layout->addWidget(m_pPanelLight, 2, 2);
    layout->addLayout(ownRow, 3, 2);
    layout->setColumnStretch(2, 1);
    showOptions({});
    applyTexts();
    connect(m_pShade, &QCheckBox::toggled, this, &ColorShading::changed);
    connect(m_pStrength, &QSlider::valueChanged, this, &ColorShading::changed);
    connect(m_pOwnLight, &QRadioButton::toggled, this, &ColorShading::changed);
    connect(this, &ColorShading::changed, this, &ColorShading::updateControls);
    connect(m_pEdit, &QPushButton::clicked, this, &ColorShading::editOwnLight);
}

void ColorShading::addTo(ColorReliefOptions &options) const
{
    options.shaded = m_pShade->isChecked();
    options.shadeStrength = m_pStrength->value();
    options.shade = m_pOwnLight->isChecked() ? m_ownLight : m_panelLight;
}

void ColorShading::showOptions(const ColorReliefOptions &options)
{
    const QSignalBlocker silent(this);
    const ShadedOptions light = withoutEdges(options.shade);
    const bool isOwn = options.shaded && light != m_panelLight;
    m_ownLight = isOwn ? light : m_panelLight;
    m_pShade->setChecked(options.shaded);
    m_pStrength->setValue(options.shadeStrength);
    (isOwn ? m_pOwnLight : m_pPanelLight)->setChecked(true);
    updateControls();
}

void ColorShading::setPanelLight(const ShadedOptions &light)
{
    m_panelLight = withoutEdges(light);
    if (m_pShade->isChecked() && m_pPanelLight->isChecked())
        emit changed();
}

void ColorShading::updateControls()
{
    const bool isOn = m_pShade->isChecked();
    for (QWidget *control : QList<QWidget *>{m_pStrengthLabel, m_pStrength, m_pStrengthValue, m_pLightLabel,
                                             m_pPanelLight, m_pOwnLight})
        control->setEnabled(isOn);
    m_pEdit->setEnabled(isOn && m_pOwnLight->isChecked() && m_editor);
    m_pStrengthValue->setText(tr("%1 %", "MESS_POUR_CENT").arg(locale().toString(m_pStrength->value())));
}

/// Edits the own light in a dialog; the map follows while it is open.
void ColorShading::editOwnLight()
{
    const auto take = [this](const ShadedOptions &light) {
        if (m_ownLight == withoutEdges(light))
            return;
        m_ownLight = withoutEdges(light);
        emit changed();
    };
    const ShadedOptions before = m_ownLight;
    take(m_editor(this, before, take).value_or(before));
}

void ColorShading::setLightEditor(const LightEditor &editor)
{
    m_editor = editor;
    updateControls();
}

void ColorShading::changeEvent(QEvent *event)
{
    if (event->type() == QEvent::LanguageChange)
        applyTexts();
    QWidget::changeEvent(event);
}

void ColorShading::applyTexts()
{
    m_pShade->setText(tr("Ombrer les couleurs par le relief", "MESS_TC_OMBRER"));
    m_pStrengthLabel->setText(tr("Force :", "MESS_TC_FORCE"));
    m_pLightLabel->setText(tr("Lumière :", "MESS_LUMIERE_CHOIX"));
    m_pPanelLight->setText(tr("celle de l'onglet Ombres", "MESS_TC_LUM_ONGLET"));
    m_pOwnLight->setText(tr("propre à cette carte", "MESS_TC_LUM_PROPRE"));
    m_pEdit->setText(tr("Régler…", "MESS_TC_LUM_REGLER"));
    updateControls();
}
