#include "panels/contourOptionsWidget.h"

#include "dataset/demground.h"
#include "dataset/formats.h"
#include "messages/Prompt.h"
#include "messages/shownnumber.h"
#include "panels/controls/QEditableComboBox.h"
#include "panels/controls/numberfield.h"
#include "panels/controls/tips.h"
#include "panels/options/contours/contourinput.h"
#include "panels/options/contours/contourlevels.h"
#include "ui_contourOptionsWidget.h"

#include <QEvent>
#include <QLineEdit>
#include <QRegularExpressionValidator>

namespace
{

/// Shows the text in the label; an empty text hides the label, which takes no room then.
void setNote(LinkLabel *note, const QString &text)
{
    note->showText(text);
    note->setVisible(!text.isEmpty());
}

/// Warns of a text that is not a number; empty for a number and for an empty text.
QString numberNote(const QString &text)
{
    bool isNumber = false;
    text.toDouble(&isNumber);
    return isNumber || text.isEmpty()
        ? QString()
        : labelText({"MESS_CN_PAS_NOMBRE", "« %1 » n'est pas un nombre ; l'outil recevrait 0."}).arg(text);
}

/// Reports why the levels cannot be used, with a link that sorts them where that is enough. Rich text.
QString levelsNote(const QString &text)
{
    const QString problem = levelsProblem(text).toHtmlEscaped();
    const auto levels = readLevels(text);
    if (problem.isEmpty() || !levels || levelsAscend(*levels))
        return problem;
    return problem
        + QStringLiteral(" <a href=\"sort\">%1</a>")
              .arg(labelText({"MESS_CN_VAL_TRIER", "Trier les valeurs"}).toHtmlEscaped());
}

/// Unit of lengths on the ground of a DEM, for display: metres where its coordinates are degrees.
QString lengthUnit(const DemInfo &dem)
{
    if (dem.path.isEmpty())
        return {};
    const DemGround ground(dem.path, dem.band);
    return ground.unit() == QStringLiteral("°") ? QStringLiteral("m") : ground.unit();
}

} // namespace

contourOptionsWidget::contourOptionsWidget(QWidget *parent, Qt::WindowFlags flags)
    : optionsWidget(parent, flags)
    , m_form(std::make_unique<Ui::contourOptionsWidget>())
{
    m_form->setupUi(this);
    makeNoDataCombo();
    for (int row = 0; row < m_form->m_pFieldsLayout->rowCount(); ++row) {
        // A margin above each label sets it nearer to its own field than to the one above.
        if (QLayoutItem *label = m_form->m_pFieldsLayout->itemAt(row, QFormLayout::LabelRole))
            label->widget()->setContentsMargins(0, 6, 0, 0);
    }
    static const QRegularExpression threeDecimals(QStringLiteral("\\d+\\.\\d{3}"));
    for (QLineEdit *field : {m_form->m_pLEElevationInterval, m_form->m_pLEOffset})
        field->setValidator(new PointForComma<QRegularExpressionValidator>(threeDecimals, field));
    m_form->m_pDrawing->setOutputFormat(m_outputFormat);
    showOptions({});
    connectControls();
    updateNotes();
}

contourOptionsWidget::~contourOptionsWidget() = default;

void contourOptionsWidget::makeNoDataCombo()
{
    constexpr int fieldRow = 5;
    constexpr int decimals = 3;
    m_pNoDataCombo = new QEditableComboBox(this);
    m_pNoDataCombo->setObjectName(QStringLiteral("m_pNoDataCombo"));
    m_pNoDataCombo->setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
    m_pNoDataCombo->setMinimumContentsLength(16);
    m_pNoDataCombo->setValidator(makeNumberValidator(decimals, m_pNoDataCombo));
    m_pNoDataCombo->addItems({QStringLiteral("-9999"), QStringLiteral("-32768")});
    m_pNoDataCombo->setCurrentIndex(-1); // no row is current until the user chooses one
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

    // The other controls change the product, too. Typing in the combo does not change its index.
    connect(m_form->m_pLEElevationAttribute, &QLineEdit::textChanged, this,
            &contourOptionsWidget::slot_onOptionsChanged);
    for (QCheckBox *box : {m_form->m_pChB3D, m_form->m_pChBTreatNoDataValue})
        connect(box, &QCheckBox::toggled, this, &contourOptionsWidget::slot_onOptionsChanged);
    connect(m_pNoDataCombo->lineEdit(), &QLineEdit::textEdited, this,
            &contourOptionsWidget::slot_onOptionsChanged);
    connect(m_pNoDataCombo, &QEditableComboBox::textReset, this, &contourOptionsWidget::slot_onOptionsChanged);

    connect(m_form->m_pDrawing, &ContourDrawing::changed, this, &contourOptionsWidget::slot_onOptionsChanged);
    connect(m_form->m_pLevelsNote, &QLabel::linkActivated, this,
            [this] { m_form->m_pLEFixedLevels->setText(sortedLevels(m_form->m_pLEFixedLevels->text())); });
    connect(m_form->m_pForecastLabel, &QLabel::linkActivated, this, [this](const QString &interval) {
        m_form->m_pLEElevationInterval->setText(interval);
        m_form->m_pLEElevationInterval->setFocus();
    });
}

QString contourOptionsWidget::getCommandArguments()
{
    return contourInput(options(), demExtremes()).fragment;
}

std::optional<ToolInput> contourOptionsWidget::launchInput()
{
    const QString problem = mergedLevelsProblem(options(), widened(demExtremes()));
    if (!problem.isEmpty()) {
        Prompt::warning(this, problem);
        return std::nullopt;
    }
    return contourInput(options(), demExtremes());
}

std::optional<ToolInput> contourOptionsWidget::previewInput(const QString &)
{
    return contourInput(options(), demExtremes());
}

/// The extremes as far as they are known, which a launch or a preview needs at once.
Extremes contourOptionsWidget::demExtremes() const
{
    return m_dem.searching ? estimatedExtremes(m_dem.path, m_dem.band) : m_dem.extremes;
}

void contourOptionsWidget::setOutputFormat(const QString &driver)
{
    if (driver == m_outputFormat)
        return;
    m_outputFormat = driver;
    m_form->m_pDrawing->setOutputFormat(driver);
    updateNotes();
}

bool contourOptionsWidget::isComplete() const
{
    return ::isComplete(options());
}

QString contourOptionsWidget::missing() const
{
    return isComplete() ? QString() : tr("Indiquez un intervalle ou des altitudes.", "MESS_MANQUE_NIVEAUX");
}

void contourOptionsWidget::setDem(const DemInfo &dem)
{
    if (!dem.isSameFileAs(m_dem))
        m_form->m_pDrawing->setGroundUnit(lengthUnit(dem));
    m_dem = dem;
    updateNotes();
}

QStringList contourOptionsWidget::launchWarnings() const
{
    return manyLevelsWarnings(options(), demExtremes());
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
    m_form->m_pDrawing->addTo(options);
    return options;
}

void contourOptionsWidget::setProcessOptions(const ProcessOptions &processOptions)
{
    const auto *options = std::get_if<ContourOptions>(&processOptions);
    if (!options)
        return;
    showOptions(*options);
    slot_onOptionsChanged();
}

void contourOptionsWidget::showOptions(const ContourOptions &options)
{
    m_form->m_pLEElevationInterval->setText(numberText(options.interval));
    m_form->m_pLEElevationAttribute->setText(options.attribute);
    m_form->m_pChB3D->setChecked(options.threeD);
    m_form->m_pLEFixedLevels->setText(options.fixedLevels);
    m_form->m_pChBTreatNoDataValue->setChecked(options.everyValueValid);
    m_pNoDataCombo->showTyped(numberText(options.noDataValue, 0));
    m_form->m_pLEOffset->setText(numberText(options.offset));
    m_form->m_pDrawing->showOptions(options);
}

void contourOptionsWidget::slot_onOptionsChanged()
{
    updateNotes();
    reportChange();
    emit completeChanged();
}

void contourOptionsWidget::updateNotes()
{
    const ContourOptions shown = options();
    m_form->m_pDrawing->setHasInterval(shown.interval.value_or(0.0) > 0.0);
    m_form->m_pForecastLabel->showText(forecast(shown)); // never hidden: it stands beside its field
    const QString taken = takenAttributeProblem(shown);
    setNote(m_form->m_pAttributeNote,
            taken.isEmpty() ? attributesProblem(m_outputFormat, elevationAttributes(shown)) : taken);
    const QString noLines =
        shown.polygons ? tr("Les surfaces n'ont pas de courbes.", "MESS_CN_SURF_SANS") : QString();
    for (QWidget *control : QList<QWidget *>{m_form->m_pAttributeLabel, m_form->m_pLEElevationAttribute,
                                             m_form->m_pAttributeExpl, m_form->m_p3DLabel, m_form->m_pChB3D}) {
        control->setDisabled(shown.polygons);
        setTipRemark(*control, noLines);
    }
    setNote(m_form->m_pLevelsNote, levelsNote(shown.fixedLevels));
    setTabOrder(m_form->m_pLEFixedLevels,
                m_form->m_pLevelsNote); // the note takes the focus while it has a link
    const QString offsetNote = numberNote(m_form->m_pLEOffset->text());
    setNote(m_form->m_pOffsetNote,
            offsetNote.isEmpty() ? roundedNumberWarnings({.offset = shown.offset}).value(0) : offsetNote);
    const QString ignoredNote = shown.everyValueValid ? QString() : numberNote(m_pNoDataCombo->currentText());
    setNote(m_form->m_pNoDataNote, ignoredNote.isEmpty() ? ignoredValueProblem(shown) : ignoredNote);
}

QString contourOptionsWidget::forecast(const ContourOptions &options) const
{
    const QString notNumber = numberNote(m_form->m_pLEElevationInterval->text());
    if (!notNumber.isEmpty())
        return notNumber.toHtmlEscaped();
    if (options.interval && *options.interval <= 0.0)
        return tr("Un intervalle de 0 ne donne aucune courbe.", "MESS_CN_INTERV_NUL");
    const QString tooMany = mergedLevelsProblem(options, widened(m_dem.extremes));
    if (!tooMany.isEmpty())
        return tooMany.toHtmlEscaped();
    const QStringList rounded = roundedNumberWarnings({.interval = options.interval});
    if (!rounded.isEmpty())
        return rounded.first();
    if (!m_dem.extremes.known || (!options.fixedLevels.isEmpty() && !options.interval))
        return {};

    const auto elevation = [this](double value) { return shownNumber(value, 'f', 1, locale()); };
    const QString range = (m_dem.extremes.exact ? tr("Altitudes de %1 à %2.", "MESS_CN_ALTITUDES")
                                                : tr("Altitudes d'environ %1 à %2.", "MESS_CN_ALT_ENVIRON"))
                              .arg(elevation(m_dem.extremes.minimum), elevation(m_dem.extremes.maximum));
    if (options.interval) {
        const double levels = levelCount(m_dem.extremes, *options.interval, options.offset.value_or(0.0))
            + newLevels(options, m_dem.extremes);
        return range + QLatin1Char(' ')
            + (m_dem.extremes.exact ? tr("Niveaux : %1.", "MESS_CN_NIVEAUX")
                                    : tr("Niveaux : environ %1.", "MESS_CN_NIV_ENVIRON"))
                  .arg(shownNumber(levels, 'f', 0, locale()));
    }
    const auto proposed = roundInterval(m_dem.extremes);
    if (!proposed)
        return range;
    QStringList links;
    for (const double interval : {*proposed, finerInterval(*proposed), finerInterval(finerInterval(*proposed))})
        links += QStringLiteral("<a href=\"%1\">%2</a>")
                     .arg(QString::number(interval, 'f', 3), QString::number(interval));
    links.removeDuplicates();
    return range + QLatin1Char(' ')
        + tr("Intervalles proposés : %1", "MESS_CN_PROPOSE").arg(links.join(QLatin1String(", ")));
}

void contourOptionsWidget::changeEvent(QEvent *event)
{
    if (event->type() == QEvent::LanguageChange) {
        m_form->retranslateUi(this);
        updateNotes();
    }
    optionsWidget::changeEvent(event);
}
