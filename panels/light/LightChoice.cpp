#include "panels/light/LightChoice.h"

#include "messages/label.h"
#include "panels/light/LightList.h"

#include <QComboBox>
#include <QEvent>
#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>

namespace
{

constexpr Label kinds[] = {
    {"MESS_LUM_UN_SOLEIL", "Un soleil"},
    {"MESS_LUM_SOLEILS", "Plusieurs soleils"},
    {"MESS_LUM_COMBINEE", "Un soleil, la pente assombrit"},
    {"MESS_LUM_IGOR", "Lumière douce"},
};

} // namespace

LightChoice::LightChoice(QWidget *parent)
    : QWidget(parent)
    , m_pLabel(new QLabel(this))
    , m_pKind(new QComboBox(this))
    , m_pListLabel(new QLabel(this))
    , m_pLights(new LightList(this))
    , m_pKeep(new QPushButton(this))
{
    m_pKind->setObjectName(QStringLiteral("m_pCBLight"));
    m_pKeep->setObjectName(QStringLiteral("m_pPBKeepLight"));
    for (const Label &kind : kinds)
        m_pKind->addItem(labelText(kind));
    m_pLabel->setBuddy(m_pKind);
    m_pListLabel->setBuddy(m_pLights);
    m_pKeep->setAutoDefault(false);
    auto row = new QHBoxLayout;
    row->addWidget(m_pLabel);
    row->addWidget(m_pKind);
    row->addStretch();
    auto keepRow = new QHBoxLayout;
    keepRow->addWidget(m_pListLabel, 1);
    keepRow->addWidget(m_pKeep);
    auto layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addLayout(row);
    layout->addLayout(keepRow);
    layout->addWidget(m_pLights);
    setTabOrder(m_pKind, m_pKeep);
    setTabOrder(m_pKeep, m_pLights);
    setShelf(nullptr);
    applyTexts();
    connect(m_pKind, qOverload<int>(&QComboBox::currentIndexChanged), this, &LightChoice::lightChanged);
    connect(m_pLights, &LightList::chosen, this, &LightChoice::presetChosen);
    connect(m_pKeep, &QPushButton::clicked, this, [this] { m_pLights->keep(m_shown); });
}

void LightChoice::setShelf(LightShelf *shelf)
{
    m_pLights->setShelf(shelf);
    m_pKeep->setVisible(m_pLights->canKeep());
}

Light LightChoice::light() const
{
    return static_cast<Light>(m_pKind->currentIndex());
}

void LightChoice::showLight(const ShadedOptions &options)
{
    const QSignalBlocker silent(m_pKind);
    m_shown = options;
    m_pKind->setCurrentIndex(static_cast<int>(lightOf(options)));
    m_pLights->showLight(options);
}

void LightChoice::changeEvent(QEvent *event)
{
    if (event->type() == QEvent::LanguageChange)
        applyTexts();
    QWidget::changeEvent(event);
}

void LightChoice::applyTexts()
{
    m_pLabel->setText(tr("Lumière :", "MESS_LUMIERE_CHOIX"));
    m_pListLabel->setText(tr("Lumières toutes prêtes :", "MESS_LUM_LISTE"));
    m_pKeep->setText(tr("Garder cette lumière…", "MESS_LUM_GARDER"));
    for (int kind = 0; kind < m_pKind->count(); ++kind)
        m_pKind->setItemText(kind, labelText(kinds[kind]));
}

QString unusedAzimuthText(Light light)
{
    return light == Light::Multidirectional
        ? labelText({"MESS_LUM_SANS_AZIMUT", "La lumière vient de plusieurs côtés : la boussole ne sert pas."})
        : QString();
}

QString unusedAltitudeText(Light light)
{
    return light == Light::Igor ? labelText({"MESS_LUM_SANS_HAUTEUR", "La lumière douce n'a pas de hauteur."})
                                : QString();
}
