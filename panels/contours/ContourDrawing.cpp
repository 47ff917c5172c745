#include "panels/contours/ContourDrawing.h"

#include "dataset/contours/contourstyles.h"
#include "panels/controls/numberfield.h"
#include "panels/controls/tips.h"

#include <QCheckBox>
#include <QEvent>
#include <QFormLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QSpinBox>

namespace
{

constexpr int mostLinesApart = 100;
constexpr int fieldCharacters = 12;
constexpr int decimals = 3;

/// A row of two widgets that stand at the left.
QHBoxLayout *rowOf(QWidget *first, QWidget *second)
{
    auto row = new QHBoxLayout;
    row->addWidget(first);
    row->addWidget(second);
    row->addStretch();
    return row;
}

void setLabel(QFormLayout &form, QWidget *field, const QString &text)
{
    if (auto label = qobject_cast<QLabel *>(form.labelForField(field))) {
        label->setText(text);
        label->buddy()->setAccessibleName(text); // Qt looks for the label only beside the field
    }
}

} // namespace

ContourDrawing::ContourDrawing(QWidget *parent)
    : QWidget(parent)
    , m_pTitle(new QLabel(this))
    , m_pIndex(new QSpinBox(this))
    , m_pRing(new QLineEdit(this))
    , m_pRingUnit(new QLabel(this))
    , m_pSmoothing(new QSpinBox(this))
    , m_pAreas(new QCheckBox(this))
    , m_pLowest(new QLineEdit(this))
    , m_pHighest(new QLineEdit(this))
    , m_pStyled(new QCheckBox(this))
    , m_pStyleNote(new QLabel(this))
    , m_pQgis(new QCheckBox(this))
{
    makeControls();
    applyTexts();
    showOptions({});
    for (QSpinBox *box : {m_pIndex, m_pSmoothing}) {
        box->setKeyboardTracking(false); // a run for each digit would be one too many
        connect(box, qOverload<int>(&QSpinBox::valueChanged), this, &ContourDrawing::changed);
    }
    for (QLineEdit *field : {m_pRing, m_pLowest, m_pHighest})
        connect(field, &QLineEdit::textChanged, this, &ContourDrawing::changed);
    for (QCheckBox *box : {m_pAreas, m_pStyled, m_pQgis})
        connect(box, &QCheckBox::toggled, this, &ContourDrawing::changed);
    connect(m_pAreas, &QCheckBox::toggled, this, &ContourDrawing::updateControls);
}

void ContourDrawing::makeControls()
{
    m_pIndex->setObjectName(QStringLiteral("m_pSBIndex"));
    m_pRing->setObjectName(QStringLiteral("m_pLERing"));
    m_pSmoothing->setObjectName(QStringLiteral("m_pSBSmoothing"));
    m_pAreas->setObjectName(QStringLiteral("m_pChBAreas"));
    m_pLowest->setObjectName(QStringLiteral("m_pLELowest"));
    m_pHighest->setObjectName(QStringLiteral("m_pLEHighest"));
    m_pStyled->setObjectName(QStringLiteral("m_pChBStyled"));
    m_pQgis->setObjectName(QStringLiteral("m_pChBQgis"));
    QFont bold = m_pTitle->font();
    bold.setBold(true);
    m_pTitle->setFont(bold);
    m_pIndex->setRange(0, mostLinesApart);
    m_pSmoothing->setRange(0, longestSmoothing);
    m_pRing->setValidator(makeNumberValidator(decimals, m_pRing));
    for (QLineEdit *field : {m_pRing, m_pLowest, m_pHighest})
        field->setMaximumWidth(field->fontMetrics().averageCharWidth() * (fieldCharacters + 4));
    m_pStyleNote->setWordWrap(true);
    m_form = new QFormLayout;
    m_form->setRowWrapPolicy(QFormLayout::WrapLongRows);
    m_form->setFieldGrowthPolicy(QFormLayout::FieldsStayAtSizeHint);
    m_form->addRow(new QLabel(this), m_pIndex);
    auto ring = new QWidget(this);
    auto ringRow = rowOf(m_pRing, m_pRingUnit);
    ringRow->setContentsMargins(0, 0, 0, 0);
    ring->setLayout(ringRow);
    m_form->addRow(new QLabel(this), ring);
    m_form->addRow(new QLabel(this), m_pSmoothing);
    m_form->addRow(m_pAreas);
    m_form->addRow(new QLabel(this), m_pLowest);
    m_form->addRow(new QLabel(this), m_pHighest);
    m_form->addRow(m_pStyled);
    m_form->addRow(m_pQgis);
    m_form->addRow(m_pStyleNote);
    for (QWidget *field : QList<QWidget *>{m_pIndex, m_pSmoothing, m_pLowest, m_pHighest})
        qobject_cast<QLabel *>(m_form->labelForField(field))->setBuddy(field);
    qobject_cast<QLabel *>(m_form->labelForField(ring))->setBuddy(m_pRing);
    auto layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(m_pTitle);
    layout->addLayout(m_form);
}

void ContourDrawing::addTo(ContourOptions &options) const
{
    const ContourOptions defaults;
    options.indexEvery = m_pIndex->value();
    options.shortestRing = fieldNumber(m_pRing->text()).value_or(defaults.shortestRing);
    options.smoothing = m_pSmoothing->value();
    options.polygons = m_pAreas->isChecked();
    options.lowestAttribute = m_pLowest->text();
    options.highestAttribute = m_pHighest->text();
    options.styled = m_pStyled->isChecked();
    options.qgisStyle = m_pQgis->isChecked();
}

void ContourDrawing::showOptions(const ContourOptions &options)
{
    const QSignalBlocker silent(this);
    m_pIndex->setValue(options.indexEvery);
    m_pRing->setText(options.shortestRing > 0.0 ? numberText(options.shortestRing, 0) : QString());
    m_pSmoothing->setValue(options.smoothing);
    m_pAreas->setChecked(options.polygons);
    m_pLowest->setText(options.lowestAttribute);
    m_pHighest->setText(options.highestAttribute);
    m_pStyled->setChecked(options.styled);
    m_pQgis->setChecked(options.qgisStyle);
    updateControls();
}

void ContourDrawing::setOutputFormat(const QString &driver)
{
    m_format = driver;
    updateControls();
}

void ContourDrawing::setHasInterval(bool hasInterval)
{
    m_hasInterval = hasInterval;
    updateControls();
}

void ContourDrawing::setGroundUnit(const QString &unit)
{
    m_pRingUnit->setText(unit);
}

/// Greys out what has no meaning, and says why.
void ContourDrawing::updateControls()
{
    const bool areas = m_pAreas->isChecked();
    const QString noLines = areas ? tr("Les surfaces n'ont pas de courbes.", "MESS_CN_SURF_SANS") : QString();
    const auto enable = [&](QWidget *field, QWidget *labelled, const QString &reason) {
        field->setEnabled(reason.isEmpty());
        setTipRemark(*field, reason);
        if (QWidget *label = m_form->labelForField(labelled))
            label->setEnabled(reason.isEmpty());
    };
    const QString noInterval = m_hasInterval
        ? QString()
        : tr("Les courbes maîtresses se comptent dans un intervalle.", "MESS_CN_MAITRE_INTERV");
    enable(m_pIndex, m_pIndex, areas ? noLines : noInterval);
    enable(m_pRing, m_pRing->parentWidget(), noLines);
    m_pRingUnit->setEnabled(!areas);
    const QString noAreas = areas ? QString() : tr("Pour des surfaces entre les niveaux.", "MESS_CN_SURF_SEUL");
    enable(m_pLowest, m_pLowest, noAreas);
    enable(m_pHighest, m_pHighest, noAreas);
    const bool keeps = m_format.isEmpty() || keepsStyles(m_format);
    m_pStyled->setEnabled(keeps || m_pStyled->isChecked());
    m_pStyleNote->setVisible(!keeps);
    m_pStyleNote->setText(
        tr("Le format « %1 » ne garde pas de dessin ; GeoPackage, MapInfo, DXF et KML le gardent.",
           "MESS_CN_STYLE_FORMAT")
            .arg(m_format));
}

void ContourDrawing::changeEvent(QEvent *event)
{
    if (event->type() == QEvent::LanguageChange)
        applyTexts();
    QWidget::changeEvent(event);
}

void ContourDrawing::applyTexts()
{
    m_pTitle->setText(tr("Pour une carte", "MESS_CN_CARTE"));
    setLabel(*m_form, m_pIndex, tr("Une courbe maîtresse toutes les :", "MESS_CN_MAITRESSE"));
    m_pIndex->setSuffix(QLatin1Char(' ') + tr("courbes", "MESS_CN_COURBES"));
    m_pIndex->setSpecialValueText(tr("aucune", "MESS_CN_SANS_MAITRESSE"));
    setLabel(*m_form, m_pRing->parentWidget(),
             tr("Omettre les courbes fermées de moins de :", "MESS_CN_ANNEAU"));
    setLabel(*m_form, m_pSmoothing, tr("Lisser le MNT avant le tracé, rayon :", "MESS_CN_LISSAGE"));
    m_pSmoothing->setSuffix(QLatin1Char(' ') + tr("cellules", "MESS_CELLULES"));
    m_pSmoothing->setSpecialValueText(tr("pas de lissage", "MESS_CN_SANS_LISSAGE"));
    m_pAreas->setText(tr("Surfaces entre les niveaux au lieu de courbes", "MESS_CN_SURFACES"));
    setLabel(*m_form, m_pLowest, tr("Attribut de l'altitude la plus basse :", "MESS_CN_ATTR_BAS"));
    setLabel(*m_form, m_pHighest, tr("Attribut de l'altitude la plus haute :", "MESS_CN_ATTR_HAUT"));
    m_pStyled->setText(
        tr("Dessiner les objets : traits, hauteurs le long des courbes maîtresses", "MESS_CN_DESSIN"));
    m_pQgis->setText(tr("Écrire un style QGIS (.qml) à côté du fichier", "MESS_CN_QML"));
    updateControls();
}
