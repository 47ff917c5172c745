#include "panels/intervisibilityOptionsWidget.h"

#include "dataset/workfolder.h"
#include "messages/label.h"
#include "panels/controls/numberfield.h"
#include "panels/controls/tips.h"
#include "panels/observers/ComputingEstimate.h"
#include "panels/observers/observerimport.h"
#include "panels/options/pointfile.h"
#include "panels/options/previewobservers.h"
#include "ui_intervisibilityOptionsWidget.h"

#include <QEvent>
#include <QTimer>

namespace
{

const IntervisibilityOptions defaults;

} // namespace

intervisibilityOptionsWidget::intervisibilityOptionsWidget(WorkFolder &workFolder, QWidget *parent,
                                                           Qt::WindowFlags flags)
    : optionsWidget(parent, flags)
    , m_form(std::make_unique<Ui::intervisibilityOptionsWidget>())
    , m_workFolder(workFolder)
{
    m_form->setupUi(this);
    m_table.emplace(m_form->m_pTViewObsPos, m_model);
    m_table->setHistoryButtons(m_form->m_pTBUndo, m_form->m_pTBRedo);
    m_table->setColumnsButton(m_form->m_pTBColumns);
    m_position.emplace(m_form->m_pLEPointX, m_form->m_pLEPointY);
    m_timeNote.emplace(*m_form->m_pTimeNote, m_model);
    for (QWidget *widget :
         QList<QWidget *>{m_form->m_pLEPointX, m_form->m_pLEPointY, m_form->m_pPBAddPoint,
                          m_form->m_pPBAddFromVector, m_form->m_pPBRemovePoint, m_form->m_pPBRemoveAll})
        m_table->addHistoryKeys(widget);
    makeNumberField(m_form->m_pLEAltitude, -highestAltitude, highestAltitude);
    makeNumberField(m_form->m_pLEMaxDistance, 0.0, longestDistance);
    m_form->m_pLEMaxDistance->setMinimumWidth(
        fontMetrics().horizontalAdvance(QStringLiteral("x%1x").arg(numberText(ObserverPoint().maxDistance))));
    makeNumberField(m_form->m_pLESmokeHeight);
    m_visibleColor.emplace(m_form->m_pPBColorZO, m_form->m_pPBResetColorZO, defaults.visibleColor);
    m_hiddenColor.emplace(m_form->m_pPBColorZNO, m_form->m_pPBResetColorZNO, defaults.hiddenColor);
    m_noDataColor.emplace(m_form->m_pPBColorNoData, m_form->m_pPBResetColorNoData, defaults.noDataColor);
    makeOutputs();
    showOptions(defaults);
    slot_resetDefaultObserverHeight();
    slot_resetDefaultAltitudeType();
    slot_resetDefaultMaxDistance();
    applyTexts();
    connectTable();
    connectControls();
    connectColors();
    updateControls();
}

intervisibilityOptionsWidget::~intervisibilityOptionsWidget() = default;

/// The choice of the result and the files besides the product.
void intervisibilityOptionsWidget::makeOutputs()
{
    using Panel = intervisibilityOptionsWidget;
    m_result =
        std::make_unique<SightResultChoice>(m_form->m_pCBResult, m_form->m_pCBRamp, m_form->m_pResultNote);
    m_sideFiles = std::make_unique<SightSideFiles>(
        SightSideFiles::Row{m_form->m_pChBSkyline, m_form->m_pLESkyline, m_form->m_pPBSkyline},
        SightSideFiles::Row{m_form->m_pChBStatistics, m_form->m_pLEStatistics, m_form->m_pPBStatistics},
        m_form->m_pLabelSkylineStep, m_form->m_pLESkylineStep);
    connect(m_result.get(), &SightResultChoice::changed, this, &Panel::slot_onOptionsChanged);
    // The product does not depend on these files, so that no new preview of it is needed.
    connect(m_sideFiles.get(), &SightSideFiles::changed, this, [this] {
        m_timeNote->setSkyline(!options().skyline.isEmpty());
        emit completeChanged();
    });
}

void intervisibilityOptionsWidget::setProduct(const QString &path)
{
    m_sideFiles->setProduct(path);
}

void intervisibilityOptionsWidget::connectTable()
{
    using Panel = intervisibilityOptionsWidget;
    using Model = ObserverPointsModel;
    const QTableView *table = m_form->m_pTViewObsPos;
    connect(table, &QTableView::clicked, this, &Panel::slot_onCurrentObserverPointChanged);
    connect(table->selectionModel(), &QItemSelectionModel::currentChanged, this,
            &Panel::slot_onCurrentObserverPointChanged);
    connect(&m_model, &Model::dataChanged, this, [this](const QModelIndex &first) {
        if (first.column() == Model::SeenColumn) // no observer changed
            return;
        slot_onCurrentObserverPointChanged();
        slot_onOptionsChanged();
    });
    connect(&*m_table, &ObserverTable::seenAreasWanted, this, [this] { reportChange(); });
    connect(&m_model, &Model::layoutChanged, this, [this] {
        slot_onCurrentObserverPointChanged(); // the numbers of the observers on the map are their rows
        slot_onOptionsChanged();
    });
    connect(&m_model, &Model::modelReset, this, &Panel::slot_onCurrentObserverPointChanged);
    for (const auto signal : {&Model::rowsInserted, &Model::rowsRemoved})
        connect(&m_model, signal, this, &Panel::slot_onOptionsChanged);
    connect(&m_model, &Model::modelReset, this, &Panel::slot_onOptionsChanged);
}

void intervisibilityOptionsWidget::connectControls()
{
    using Panel = intervisibilityOptionsWidget;
    connect(m_form->m_pPBAddPoint, &QPushButton::clicked, this, &Panel::slot_addNewPoint);
    connect(m_form->m_pPBAddFromVector, &QPushButton::clicked, this, &Panel::slot_addPointListFromOgrDS);
    connect(m_form->m_pPBRemovePoint, &QPushButton::clicked, this, &Panel::slot_removePoint);
    connect(m_form->m_pPBRemoveAll, &QPushButton::clicked, this, &Panel::slot_removeAllPoint);
    connect(&*m_position, &PositionFields::moved, this,
            [this](const QPointF &position) { placeObserver(currentRow(), position); });
    connect(&*m_table, &ObserverTable::pasteRequested, this, [this] {
        if (m_ground.isOpen())
            m_table->paste(defaultPoint());
    });
    connect(m_form->m_pLEAltitude, &QLineEdit::textChanged, this,
            &Panel::slot_onDefaultObserverHeightValueChanged);
    connect(m_form->m_pCmBAltitudeType, qOverload<int>(&QComboBox::currentIndexChanged), this,
            &Panel::slot_onDefaultAltitudeTypeChanged);
    connect(m_form->m_pLEMaxDistance, &QLineEdit::textChanged, this, &Panel::slot_onMaxDistanceValueChanged);
    connect(m_form->m_pLESmokeHeight, &QLineEdit::textChanged, this, &Panel::slot_onSmokeHeightValueChanged);
    connect(m_form->m_pPBResetAltitude, &QPushButton::clicked, this, &Panel::slot_resetDefaultObserverHeight);
    connect(m_form->m_pPBResetAltitudeType, &QPushButton::clicked, this, &Panel::slot_resetDefaultAltitudeType);
    connect(m_form->m_pPBResetMaxDistance, &QPushButton::clicked, this, &Panel::slot_resetDefaultMaxDistance);
    connect(m_form->m_pPBResetSmokeHeight, &QPushButton::clicked, this, &Panel::slot_resetSmokeHeight);
    connect(m_form->m_pLApplyToAllPointsLink, &QLabel::linkActivated, this, &Panel::slot_onApplyToAllPoint);
    connect(m_form->m_pRBOrMode, &QRadioButton::toggled, this, &Panel::slot_onOptionsChanged);
}

void intervisibilityOptionsWidget::connectColors()
{
    using Panel = intervisibilityOptionsWidget;
    connect(m_form->m_pPBColorZO, &QPushButton::clicked, this, &Panel::slot_changeColorZoneVisible);
    connect(m_form->m_pPBColorZNO, &QPushButton::clicked, this, &Panel::slot_changeColorZoneNotVisible);
    connect(m_form->m_pPBColorNoData, &QPushButton::clicked, this, &Panel::slot_changeColorZoneNoData);
    connect(m_form->m_pPBResetColorZO, &QPushButton::clicked, this, &Panel::slot_resetColorZoneVisible);
    connect(m_form->m_pPBResetColorZNO, &QPushButton::clicked, this, &Panel::slot_resetColorZoneNotVisible);
    connect(m_form->m_pPBResetColorNoData, &QPushButton::clicked, this, &Panel::slot_resetColorZoneNoData);
}

QString intervisibilityOptionsWidget::getCommandArguments()
{
    return argumentsWith(m_workFolder.newFolder(), m_model.observers())
        + sideFileArguments(sideFiles(options()));
}

std::optional<ToolInput> intervisibilityOptionsWidget::launchInput()
{
    return ToolInput{.fragment = argumentsWith(m_workFolder.newFolder(), m_model.observers()),
                     .readsTemporaryFile = true,
                     .sideFiles = sideFiles(options())};
}

std::optional<ToolInput> intervisibilityOptionsWidget::previewInput(const QString &copy)
{
    const QString folder = m_workFolder.newFolder();
    ToolInput input{.fragment =
                        argumentsWith(folder, m_model.observers(DemGround(copy, m_dem.band), mostPreviewed)),
                    .readsTemporaryFile = true};
    if (m_table->showsSeenAreas() && observerCount() <= mostPreviewed && !folder.isEmpty())
        input.sideFiles += {statisticsArgument, folder + QStringLiteral("/seen.csv"), {"csv"}};
    return input;
}

QString intervisibilityOptionsWidget::argumentsWith(const QString &folder, const QList<ToolObserver> &observers)
{
    const QString file = folder.isEmpty() ? QString() : writePointFile(folder, observers);
    return intervisibilityFragment(options(), file);
}

bool intervisibilityOptionsWidget::isComplete() const
{
    return m_model.enabledCount() > 0 && m_model.groundlessCount() == 0;
}

QString intervisibilityOptionsWidget::missing() const
{
    if (m_model.rowCount() == 0)
        return tr("Placez un observateur : cliquez sur la carte ou ajoutez un point.", "MESS_MANQUE_POINT");
    if (m_model.enabledCount() == 0)
        return tr("Cochez au moins un observateur.", "MESS_MANQUE_COCHE");
    if (m_model.groundlessCount() > 0)
        return tr("Déplacez ou décochez les observateurs hors du sol de ce MNT.", "MESS_MANQUE_SOL");
    return {};
}

IntervisibilityOptions intervisibilityOptionsWidget::options() const
{
    IntervisibilityOptions options;
    options.observers = m_model.points();
    options.combined = m_form->m_pGBVisibiliyMultiPoints->isEnabled();
    options.combination = m_form->m_pRBOrMode->isChecked() ? QStringLiteral("OR")
        : m_form->m_pRBAndMode->isChecked()                ? QStringLiteral("AND")
                                                           : QString();
    options.groundHeight = fieldNumber(m_form->m_pLESmokeHeight->text());
    options.visibleColor = m_visibleColor->name();
    options.hiddenColor = m_hiddenColor->name();
    options.noDataColor = m_noDataColor->name();
    options.result = sightResultWord(m_result->result());
    options.ramp = m_result->ramp();
    m_sideFiles->addTo(options);
    return options;
}

void intervisibilityOptionsWidget::setProcessOptions(const ProcessOptions &processOptions)
{
    const auto *options = std::get_if<IntervisibilityOptions>(&processOptions);
    if (!options)
        return;
    showOptions(*options);
    slot_onOptionsChanged();
}

void intervisibilityOptionsWidget::showOptions(const IntervisibilityOptions &options)
{
    m_model.openSettings(options.observers); // an enabled point without ground stays enabled: a note reports it
    if (m_model.rowCount() > 0)
        chooseObserver(0);
    (options.combination == QLatin1String("AND") ? m_form->m_pRBAndMode : m_form->m_pRBOrMode)
        ->setChecked(true);
    m_form->m_pLESmokeHeight->setText(numberText(options.groundHeight));
    m_visibleColor->set(options.visibleColor);
    m_hiddenColor->set(options.hiddenColor);
    m_noDataColor->set(options.noDataColor);
    m_result->set(sightResult(options), options.ramp);
    m_sideFiles->show(options);
}

std::optional<ObserverPoint> intervisibilityOptionsWidget::currentObserver() const
{
    const int row = currentRow();
    return row >= 0 ? std::optional<ObserverPoint>(m_model.point(row)) : std::nullopt;
}

int intervisibilityOptionsWidget::observerCount() const
{
    return m_model.enabledCount() - m_model.groundlessCount();
}

int intervisibilityOptionsWidget::currentRow() const
{
    return m_table->currentRow();
}

QList<QAction *> intervisibilityOptionsWidget::historyActions() const
{
    return m_table->historyActions();
}

void intervisibilityOptionsWidget::chooseObserver(int row)
{
    m_table->choose(row);
}

void intervisibilityOptionsWidget::placeObserver(int row, const QPointF &position, bool byKey)
{
    ObserverPoint point = row >= 0 ? m_model.point(row) : defaultPoint();
    point.x = position.x();
    point.y = position.y();
    if (row < 0) {
        m_table->addPoints({point});
        return;
    }
    chooseObserver(row);
    m_model.changePoints({{row, point}}, byKey);
}

void intervisibilityOptionsWidget::setSeenAreas(const QVector<double> &km2ByEnabledObserver)
{
    m_model.setSeenAreas(km2ByEnabledObserver);
}

void intervisibilityOptionsWidget::setPreviewTime(double seconds, const QString &copy)
{
    m_timeNote->showFor(seconds, DemGround(copy, m_dem.band), m_ground);
}

bool intervisibilityOptionsWidget::dropObserver(int row, const QPointF &position, bool byKey)
{
    const ObserverPoint point = row >= 0 ? m_model.point(row) : defaultPoint();
    const bool needsGround = point.enabled && point.mode == AltitudeMode::Relative;
    if (needsGround && m_ground.isOpen() && !m_ground.surfaceElevation(position)) {
        // The box is shown when the mouse has let the observer go.
        QTimer::singleShot(0, this, [this] { m_table->warnOfGroundless(); });
        return false;
    }
    placeObserver(row, position, byKey);
    return true;
}

void intervisibilityOptionsWidget::setDem(const DemInfo &dem)
{
    const bool sameBand = dem.isSameBandAs(m_dem);
    m_dem = dem;
    if (sameBand)
        return;
    m_ground = dem.path.isEmpty() ? DemGround() : DemGround(dem.path, dem.band);
    m_model.setGround(m_ground);
    applyTexts();
    slot_onOptionsChanged();
}

void intervisibilityOptionsWidget::updateControls()
{
    const int groundless = m_model.groundlessCount();
    const SightResult result = m_result->result();
    m_form->m_pGBVisibiliyMultiPoints->setEnabled(m_model.enabledCount() >= 2 && result != SightResult::Count);
    m_form->m_pSmokeBox->setEnabled(result != SightResult::Height);
    m_form->m_pZoneColors->setVisible(result == SightResult::Picture);
    for (QWidget *widget : QList<QWidget *>{m_form->m_pLabelRamp, m_form->m_pCBRamp})
        widget->setVisible(result != SightResult::Picture);
    m_form->m_pPBAddPoint->setEnabled(m_ground.isOpen());
    m_form->m_pPBAddFromVector->setEnabled(m_ground.isOpen());
    m_form->m_pPBRemovePoint->setEnabled(currentRow() >= 0);
    m_form->m_pPBRemoveAll->setEnabled(m_model.rowCount() > 0);
    m_form->m_pGroundNote->setVisible(groundless > 0 && m_ground.isOpen());
    m_form->m_pGroundNote->setText(
        tr("Observateurs hors du sol de ce MNT : %1.", "MESS_OBS_SANS_SOL").arg(groundless));
}

ObserverPoint intervisibilityOptionsWidget::defaultPoint() const
{
    const auto number = [](const QLineEdit *field, double otherwise) {
        return field->hasAcceptableInput() ? field->text().toDouble() : otherwise;
    };
    ObserverPoint point;
    const QPointF centre = m_ground.centre();
    point.x = centre.x();
    point.y = centre.y();
    point.height = number(m_form->m_pLEAltitude, point.height);
    point.mode = readAltitudeMode(m_form->m_pCmBAltitudeType->currentText()).value_or(point.mode);
    point.maxDistance = number(m_form->m_pLEMaxDistance, point.maxDistance);
    return point;
}

void intervisibilityOptionsWidget::slot_addNewPoint()
{
    m_table->addPoints({defaultPoint()});
}

void intervisibilityOptionsWidget::slot_removePoint()
{
    m_table->removeSelected();
}

void intervisibilityOptionsWidget::slot_removeAllPoint()
{
    m_table->removeAll();
}

void intervisibilityOptionsWidget::slot_addPointListFromOgrDS()
{
    std::optional<ComputingEstimate> estimate;
    if (m_timeNote->timing())
        estimate.emplace(*m_timeNote->timing(), m_workFolder, m_ground, m_dem.band,
                         [this](const QString &points) {
                             IntervisibilityOptions combined = options();
                             combined.combined = true; // as they are once the observers are in the table
                             return intervisibilityFragment(combined, points);
                         });
    m_table->addPoints(importObservers(m_dem.path, m_ground, defaultPoint(), estimate ? &*estimate : nullptr,
                                       m_form->m_pPBAddFromVector));
}

void intervisibilityOptionsWidget::slot_onCurrentObserverPointChanged()
{
    m_position->show(currentObserver());
    updateControls();
    emit currentObserverPointChanged();
}

void intervisibilityOptionsWidget::slot_onApplyToAllPoint()
{
    const ObserverPoint values = defaultPoint();
    NumberedPoints points;
    for (int row = 0; row < m_model.rowCount(); ++row) {
        ObserverPoint point = m_model.point(row);
        point.height = values.height;
        point.mode = values.mode;
        point.maxDistance = values.maxDistance;
        points += {row, point};
    }
    m_model.changePoints(points);
}

void intervisibilityOptionsWidget::slot_onOptionsChanged()
{
    m_position->show(currentObserver());
    m_timeNote->clear();
    updateControls();
    reportChange();
    emit completeChanged();
}

void intervisibilityOptionsWidget::slot_onSmokeHeightValueChanged()
{
    m_form->m_pPBResetSmokeHeight->setEnabled(true);
    slot_onOptionsChanged();
}

void intervisibilityOptionsWidget::slot_onMaxDistanceValueChanged()
{
    m_form->m_pPBResetMaxDistance->setEnabled(true);
}

void intervisibilityOptionsWidget::slot_onDefaultObserverHeightValueChanged()
{
    m_form->m_pPBResetAltitude->setEnabled(true);
}

void intervisibilityOptionsWidget::slot_onDefaultAltitudeTypeChanged()
{
    m_form->m_pPBResetAltitudeType->setEnabled(true);
}

// The value is set first and the button disabled after it, because the change enables the button.

void intervisibilityOptionsWidget::slot_resetSmokeHeight()
{
    m_form->m_pLESmokeHeight->setText(numberText(*defaults.groundHeight));
    m_form->m_pPBResetSmokeHeight->setEnabled(false);
}

void intervisibilityOptionsWidget::slot_resetDefaultMaxDistance()
{
    m_form->m_pLEMaxDistance->setText(numberText(ObserverPoint().maxDistance));
    m_form->m_pPBResetMaxDistance->setEnabled(false);
}

void intervisibilityOptionsWidget::slot_resetDefaultObserverHeight()
{
    m_form->m_pLEAltitude->setText(numberText(ObserverPoint().height));
    m_form->m_pPBResetAltitude->setEnabled(false);
}

void intervisibilityOptionsWidget::slot_resetDefaultAltitudeType()
{
    m_form->m_pCmBAltitudeType->setCurrentText(altitudeModeText(ObserverPoint().mode));
    m_form->m_pPBResetAltitudeType->setEnabled(false);
}

void intervisibilityOptionsWidget::changeColor(ZoneColor &color)
{
    if (color.choose(this, tr("Choisir une couleur", "MESS_CHX_COULEUR")))
        slot_onOptionsChanged();
}

void intervisibilityOptionsWidget::resetColor(ZoneColor &color)
{
    color.reset();
    slot_onOptionsChanged();
}

void intervisibilityOptionsWidget::slot_changeColorZoneVisible()
{
    changeColor(*m_visibleColor);
}

void intervisibilityOptionsWidget::slot_changeColorZoneNotVisible()
{
    changeColor(*m_hiddenColor);
}

void intervisibilityOptionsWidget::slot_changeColorZoneNoData()
{
    changeColor(*m_noDataColor);
}

void intervisibilityOptionsWidget::slot_resetColorZoneVisible()
{
    resetColor(*m_visibleColor);
}

void intervisibilityOptionsWidget::slot_resetColorZoneNotVisible()
{
    resetColor(*m_hiddenColor);
}

void intervisibilityOptionsWidget::slot_resetColorZoneNoData()
{
    resetColor(*m_noDataColor);
}

void intervisibilityOptionsWidget::changeEvent(QEvent *event)
{
    if (event->type() == QEvent::LanguageChange) {
        m_form->retranslateUi(this);
        applyTexts();
        updateControls();
    }
    optionsWidget::changeEvent(event);
}

void intervisibilityOptionsWidget::applyTexts()
{
    m_form->m_pLApplyToAllPointsLink->setText(
        QStringLiteral("<a href=\"all\">%1</a>")
            .arg(tr("Appliquer à tous les points", "MESS_APPLI_TS_PTS").toHtmlEscaped()));
    nameReset(*m_form->m_pPBResetAltitude, m_form->m_pLabelAltitude->text());
    nameReset(*m_form->m_pPBResetAltitudeType, tr("Mode altitude", "MESS_MODE_ALTI"));
    nameReset(*m_form->m_pPBResetMaxDistance, m_form->m_pLabelMaxDistance->text());
    nameReset(*m_form->m_pPBResetSmokeHeight, m_form->m_pLabelSmokeHeight->text());
    nameReset(*m_form->m_pPBResetColorZO, m_form->m_pLabelColorZO->text());
    nameReset(*m_form->m_pPBResetColorZNO, m_form->m_pLabelColorZNO->text());
    nameReset(*m_form->m_pPBResetColorNoData, m_form->m_pLabelColorNoData->text());
    m_table->retranslate();
    m_timeNote->retranslate();
    m_result->retranslate();
    m_sideFiles->retranslate();
    m_form->m_pLEAltitude->setToolTip(m_model.heightMeaning());
    m_form->m_pLEMaxDistance->setToolTip(m_model.distanceMeaning());
    m_form->m_pDefaultsNote->setText(m_model.heightMeaning() + QLatin1Char(' ') + m_model.distanceMeaning());
}
