#include "panels/contourOptionsWidget.h"

#include "panels/controls/QEditableComboBox.h"
#include "panels/controls/numberfield.h"
#include "panels/options/contourlevels.h"
#include "ui_contourOptionsWidget.h"

#include <QEvent>
#include <QLineEdit>
#include <QRegularExpressionValidator>

namespace
{

/// An empty note takes no room.
void setNote(QLabel *note, const QString &text)
{
    note->setText(text);
    note->setVisible(!text.isEmpty());
}

QString numberNote(const QString &text)
{
    bool isNumber = false;
    text.toDouble(&isNumber);
    return isNumber || text.isEmpty()
        ? QString()
        : labelText({"MESS_CN_PAS_NOMBRE", "« %1 » n'est pas un nombre ; l'outil recevrait 0."}).arg(text);
}

/// What a shapefile leaves of an attribute's name: ten bytes.
QString attributeNote(const QString &name)
{
    constexpr int longest = 10;
    const QByteArray bytes = name.toUtf8();
    if (bytes.size() <= longest)
        return {};
    return labelText({"MESS_CN_ATTR_LONG", "Un shapefile ne garde que 10 caractères de ce nom : « %1 »."})
        .arg(QString::fromUtf8(bytes.left(longest)));
}

} // namespace

contourOptionsWidget::contourOptionsWidget(QWidget *parent, Qt::WindowFlags flags)
    : optionsWidget(parent, flags)
    , m_form(std::make_unique<Ui::contourOptionsWidget>())
{
    m_form->setupUi(this);
    makeNoDataCombo();
    for (int row = 0; row < m_form->m_pFieldsLayout->rowCount(); ++row) {
        // Each label nearer to its field than to the one above.
        if (QLayoutItem *label = m_form->m_pFieldsLayout->itemAt(row, QFormLayout::LabelRole))
            label->widget()->setContentsMargins(0, 6, 0, 0);
    }
    static const QRegularExpression threeDecimals(QStringLiteral("\\d+\\.\\d{3}"));
    for (QLineEdit *field : {m_form->m_pLEElevationInterval, m_form->m_pLEOffset})
        field->setValidator(new PointForComma<QRegularExpressionValidator>(threeDecimals, field));
    connectControls();
    updateNotes();
}

contourOptionsWidget::~contourOptionsWidget() = default;

void contourOptionsWidget::makeNoDataCombo()
{
    constexpr int fieldRow = 5;
    constexpr int decimals = 3;
    m_pNoDataCombo = new QEditableComboBox(this);
    m_pNoDataCombo->setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
    m_pNoDataCombo->setMinimumContentsLength(16);
    m_pNoDataCombo->setValidator(makeNumberValidator(decimals, m_pNoDataCombo));
    m_pNoDataCombo->addItems({QStringLiteral("-9999"), QStringLiteral("-32768")});
    m_pNoDataCombo->setCurrentIndex(-1);
    m_form->m_pFieldsLayout->setWidget(fieldRow, QFormLayout::FieldRole, m_pNoDataCombo);
    m_form->m_pPixelValueToTreatAsNoDataLabel->setBuddy(m_pNoDataCombo);
    setTabOrder(m_form->m_pChBTreatNoDataValue, m_pNoDataCombo);
    setTabOrder(m_pNoDataCombo, m_form->m_pLEOffset);
}

void contourOptionsWidget::connectControls()
{
    for (QLineEdit *field : {m_form->m_pLEElevationInterval, m_form->m_pLEOffset, m_form->m_pLEFixedLevels})
        connect(field, &QLineEdit::textChanged, this, &contourOptionsWidget::slot_onOptionsChanged);
    connect(m_pNoDataCombo, qOverload<int>(&QComboBox::currentIndexChanged), this,
            &contourOptionsWidget::slot_onOptionsChanged);
    connect(m_form->m_pChBTreatNoDataValue, &QCheckBox::toggled, m_form->m_pPixelValueToTreatAsNoDataLabel,
            &QWidget::setDisabled);
    connect(m_form->m_pChBTreatNoDataValue, &QCheckBox::toggled, m_pNoDataCombo, &QWidget::setDisabled);

    // The other controls change the product, too; typing in the combo changes no index.
    connect(m_form->m_pLEElevationAttribute, &QLineEdit::textChanged, this,
            &contourOptionsWidget::slot_onOptionsChanged);
    for (QCheckBox *box : {m_form->m_pChB3D, m_form->m_pChBTreatNoDataValue})
        connect(box, &QCheckBox::toggled, this, &contourOptionsWidget::slot_onOptionsChanged);
    connect(m_pNoDataCombo->lineEdit(), &QLineEdit::textEdited, this,
            &contourOptionsWidget::slot_onOptionsChanged);

    connect(m_pNoDataCombo, &QEditableComboBox::textReset, this, &contourOptionsWidget::slot_onOptionsChanged);

    connect(m_form->m_pForecastLabel, &QLabel::linkActivated, this, [this](const QString &interval) {
        m_form->m_pLEElevationInterval->setText(interval);
        m_form->m_pLEElevationInterval->setFocus();
    });
}

QString contourOptionsWidget::getCommandArguments()
{
    return contourFragment(options());
}

bool contourOptionsWidget::isComplete() const
{
    return ::isComplete(options());
}

void contourOptionsWidget::setDem(const DemInfo &dem)
{
    m_dem = dem;
    updateNotes();
}

QStringList contourOptionsWidget::launchWarnings() const
{
    const Extremes extremes = m_dem.searching ? estimatedExtremes(m_dem.path, m_dem.band) : m_dem.extremes;
    return manyLevelsWarnings(options(), extremes);
}

ContourOptions contourOptionsWidget::options() const
{
    ContourOptions options;
    options.interval = fieldNumber(m_form->m_pLEElevationInterval->text());
    options.attribute = m_form->m_pLEElevationAttribute->text();
    options.threeD = m_form->m_pChB3D->isChecked();
    options.fixedLevels = m_form->m_pLEFixedLevels->text();
    options.everyValueValid = m_form->m_pChBTreatNoDataValue->isChecked();
    options.noDataValue = fieldNumber(m_pNoDataCombo->currentText());
    options.offset = fieldNumber(m_form->m_pLEOffset->text());
    return options;
}

void contourOptionsWidget::setProcessOptions(const ProcessOptions &processOptions)
{
    const auto *options = std::get_if<ContourOptions>(&processOptions);
    if (!options)
        return;
    m_form->m_pLEElevationInterval->setText(numberText(options->interval));
    m_form->m_pLEElevationAttribute->setText(options->attribute);
    m_form->m_pChB3D->setChecked(options->threeD);
    m_form->m_pLEFixedLevels->setText(options->fixedLevels);
    m_form->m_pChBTreatNoDataValue->setChecked(options->everyValueValid);
    m_pNoDataCombo->showTyped(numberText(options->noDataValue, 0));
    m_form->m_pLEOffset->setText(numberText(options->offset));
    slot_onOptionsChanged();
}

void contourOptionsWidget::slot_onOptionsChanged()
{
    updateNotes();
    emit completeChanged();
}

void contourOptionsWidget::updateNotes()
{
    const ContourOptions asked = options();
    m_form->m_pForecastLabel->setText(forecast(asked)); // beside its field, so that its room stays
    setNote(m_form->m_pAttributeNote, attributeNote(asked.attribute));
    setNote(m_form->m_pLevelsNote, levelsProblem(asked.fixedLevels));
    setNote(m_form->m_pOffsetNote, numberNote(m_form->m_pLEOffset->text()));
    const QString ignored = asked.everyValueValid ? QString() : m_pNoDataCombo->currentText();
    setNote(m_form->m_pNoDataNote, numberNote(ignored));
}

QString contourOptionsWidget::forecast(const ContourOptions &asked) const
{
    const QString notNumber = numberNote(m_form->m_pLEElevationInterval->text());
    if (!notNumber.isEmpty())
        return notNumber.toHtmlEscaped();
    if (asked.interval && *asked.interval <= 0.0)
        return tr("Un intervalle de 0 ne donne aucune courbe.", "MESS_CN_INTERV_NUL");
    if (asked.interval && !asked.fixedLevels.isEmpty())
        return tr("L'outil ignore l'intervalle : les valeurs spécifiques le remplacent.", "MESS_CN_IGNORE");
    if (!m_dem.extremes.known || !asked.fixedLevels.isEmpty())
        return {};

    const auto elevation = [this](double value) { return locale().toString(value, 'f', 1); };
    const QString range = tr("Altitudes de %1 à %2.", "MESS_CN_ALTITUDES")
                              .arg(elevation(m_dem.extremes.minimum), elevation(m_dem.extremes.maximum));
    if (asked.interval) {
        const double levels = levelCount(m_dem.extremes, *asked.interval, asked.offset.value_or(0.0));
        return range + QLatin1Char(' ')
            + tr("Niveaux : %1.", "MESS_CN_NIVEAUX").arg(locale().toString(levels, 'f', 0));
    }
    const auto offered = roundInterval(m_dem.extremes);
    if (!offered)
        return range;
    return range + QLatin1Char(' ')
        + tr("Intervalle proposé : %1", "MESS_CN_PROPOSE")
              .arg(QStringLiteral("<a href=\"%1\">%2</a>")
                       .arg(QString::number(*offered, 'f', 3), QString::number(*offered)));
}

void contourOptionsWidget::changeEvent(QEvent *event)
{
    if (event->type() == QEvent::LanguageChange) {
        m_form->retranslateUi(this);
        updateNotes();
    }
    optionsWidget::changeEvent(event);
}
