#include "panels/intervisibilityOptionsWidget.h"

#include "dataset/workfolder.h"
#include "messages/Prompt.h"
#include "panels/controls/numberfield.h"
#include "panels/observers/PointDelegate.h"
#include "panels/observers/observerimport.h"
#include "ui_intervisibilityOptionsWidget.h"

#include <QClipboard>
#include <QEvent>
#include <QGuiApplication>
#include <QHeaderView>
#include <QKeyEvent>

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
    QTableView *table = m_form->m_pTViewObsPos;
    table->setModel(&m_model);
    table->setItemDelegate(new PointDelegate(table));
    table->horizontalHeader()->setSectionResizeMode(QHeaderView::Stretch);
    table->verticalHeader()->setSectionResizeMode(QHeaderView::ResizeToContents);
    table->installEventFilter(this);
    for (QLineEdit *field : {m_form->m_pLEAltitude, m_form->m_pLEMaxDistance, m_form->m_pLESmokeHeight,
                             m_form->m_pLEPointX, m_form->m_pLEPointY})
        makeNumberField(field);
    m_visibleColor.emplace(m_form->m_pPBColorZO, m_form->m_pPBResetColorZO, defaults.visibleColor);
    m_hiddenColor.emplace(m_form->m_pPBColorZNO, m_form->m_pPBResetColorZNO, defaults.hiddenColor);
    m_noDataColor.emplace(m_form->m_pPBColorNoData, m_form->m_pPBResetColorNoData, defaults.noDataColor);
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

void intervisibilityOptionsWidget::connectTable()
{
    using Panel = intervisibilityOptionsWidget;
    using Model = ObserverPointsModel;
    const QTableView *table = m_form->m_pTViewObsPos;
    connect(table, &QTableView::clicked, this, &Panel::slot_onCurrentObserverPointChanged);
    connect(table, &QTableView::clicked, this, &Panel::toggle);
    connect(table->selectionModel(), &QItemSelectionModel::currentChanged, this,
            &Panel::slot_onCurrentObserverPointChanged);
    connect(&m_model, &Model::dataChanged, this, &Panel::slot_onCurrentObserverPointChanged);
    connect(&m_model, &Model::dataChanged, this, &Panel::switchOffGroundless,
            Qt::QueuedConnection); // after the cell's editor has closed: a message box may follow
    connect(&m_model, &Model::modelReset, this, &Panel::slot_onCurrentObserverPointChanged);
    for (const auto signal : {&Model::rowsInserted, &Model::rowsRemoved})
        connect(&m_model, signal, this, &Panel::slot_onOptionsChanged);
    connect(&m_model, &Model::modelReset, this, &Panel::slot_onOptionsChanged);
    connect(&m_model, &Model::dataChanged, this, &Panel::slot_onOptionsChanged);
}

void intervisibilityOptionsWidget::connectControls()
{
    using Panel = intervisibilityOptionsWidget;
    connect(m_form->m_pPBAddPoint, &QPushButton::clicked, this, &Panel::slot_addNewPoint);
    connect(m_form->m_pPBAddFromVector, &QPushButton::clicked, this, &Panel::slot_addPointListFromOgrDS);
    connect(m_form->m_pPBRemovePoint, &QPushButton::clicked, this, &Panel::slot_removePoint);
    connect(m_form->m_pPBRemoveAll, &QPushButton::clicked, this, &Panel::slot_removeAllPoint);
    for (QLineEdit *field : {m_form->m_pLEPointX, m_form->m_pLEPointY})
        connect(field, &QLineEdit::editingFinished, this, &Panel::applyTypedPosition);
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
    return argumentsWith(m_model.observers());
}

std::optional<ToolInput> intervisibilityOptionsWidget::launchInput()
{
    return ToolInput{.fragment = getCommandArguments(), .readsTemporaryFile = true};
}

std::optional<ToolInput> intervisibilityOptionsWidget::previewInput(const QString &copy)
{
    return ToolInput{.fragment = argumentsWith(m_model.observers(DemGround(copy, m_dem.band))),
                     .readsTemporaryFile = true};
}

QString intervisibilityOptionsWidget::argumentsWith(const QList<ToolObserver> &observers)
{
    const QString folder = m_workFolder.newFolder();
    const QString file = folder.isEmpty() ? QString() : writePointFile(folder, observers);
    return intervisibilityFragment(options(), file);
}

bool intervisibilityOptionsWidget::isComplete() const
{
    return m_model.enabledCount() > 0 && m_model.groundlessCount() == 0;
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
    m_model.clear();
    m_model.addPoints(options.observers); // an enabled point without ground stays enabled: a note reports it
    if (m_model.rowCount() > 0)
        chooseObserver(0);
    (options.combination == QLatin1String("AND") ? m_form->m_pRBAndMode : m_form->m_pRBOrMode)
        ->setChecked(true);
    m_form->m_pLESmokeHeight->setText(numberText(options.groundHeight));
    m_visibleColor->set(options.visibleColor);
    m_hiddenColor->set(options.hiddenColor);
    m_noDataColor->set(options.noDataColor);
}

std::optional<ObserverPoint> intervisibilityOptionsWidget::currentObserver() const
{
    const int row = currentRow();
    return row >= 0 ? std::optional<ObserverPoint>(m_model.point(row)) : std::nullopt;
}

int intervisibilityOptionsWidget::currentRow() const
{
    return m_form->m_pTViewObsPos->currentIndex().row();
}

void intervisibilityOptionsWidget::chooseObserver(int row)
{
    m_form->m_pTViewObsPos->setCurrentIndex(m_model.index(row, ObserverPointsModel::HeightColumn));
}

void intervisibilityOptionsWidget::placeObserver(int row, const QPointF &position)
{
    ObserverPoint point = row >= 0 ? m_model.point(row) : defaultPoint();
    point.x = position.x();
    point.y = position.y();
    if (row < 0) {
        addPoints({point});
        return;
    }
    chooseObserver(row);
    m_model.setPoint(row, point);
}

void intervisibilityOptionsWidget::setDem(const DemInfo &dem)
{
    const bool sameBand = dem.isSameBandAs(m_dem);
    m_dem = dem;
    if (sameBand)
        return;
    m_ground = dem.path.isEmpty() ? DemGround() : DemGround(dem.path, dem.band);
    m_model.setGround(m_ground);
    slot_onOptionsChanged();
}

void intervisibilityOptionsWidget::updateControls()
{
    const bool hasCurrent = currentObserver().has_value();
    const int groundless = m_model.groundlessCount();
    m_form->m_pGBVisibiliyMultiPoints->setEnabled(m_model.enabledCount() >= 2);
    m_form->m_pPBAddPoint->setEnabled(m_ground.isOpen());
    m_form->m_pPBAddFromVector->setEnabled(m_ground.isOpen());
    m_form->m_pPBRemovePoint->setEnabled(hasCurrent);
    m_form->m_pPBRemoveAll->setEnabled(m_model.rowCount() > 0);
    for (QLineEdit *field : {m_form->m_pLEPointX, m_form->m_pLEPointY})
        field->setEnabled(hasCurrent);
    m_form->m_pGroundNote->setVisible(groundless > 0 && m_ground.isOpen());
    m_form->m_pGroundNote->setText(
        tr("Observateurs hors du sol de ce MNT : %1.", "MESS_OBS_SANS_SOL").arg(groundless));
}

void intervisibilityOptionsWidget::showPosition()
{
    constexpr int digits = 12;
    const auto point = currentObserver();
    m_form->m_pLEPointX->setText(point ? QString::number(point->x, 'g', digits) : QString());
    m_form->m_pLEPointY->setText(point ? QString::number(point->y, 'g', digits) : QString());
}

void intervisibilityOptionsWidget::applyTypedPosition()
{
    const QModelIndex current = m_form->m_pTViewObsPos->currentIndex();
    const auto x = fieldNumber(m_form->m_pLEPointX->text());
    const auto y = fieldNumber(m_form->m_pLEPointY->text());
    if (!current.isValid() || !x || !y)
        return;
    ObserverPoint point = m_model.point(current.row());
    // The field shows a rounded coordinate, which replaces the exact one only where the user typed it.
    if (m_form->m_pLEPointX->isModified())
        point.x = *x;
    if (m_form->m_pLEPointY->isModified())
        point.y = *y;
    if (point != m_model.point(current.row()))
        m_model.setPoint(current.row(), point);
}

void intervisibilityOptionsWidget::toggle(const QModelIndex &index)
{
    if (index.isValid() && index.column() == ObserverPointsModel::EnabledColumn)
        m_model.setData(index, !m_model.point(index.row()).enabled);
}

void intervisibilityOptionsWidget::switchOffGroundless()
{
    if (!m_ground.isOpen() || m_model.switchOffGroundless() == 0)
        return;
    Prompt::warning(
        this,
        tr("La position de l'observateur est dans une zone non informée du MNT; l'altitude absolue de "
           "l'observateur ne peut donc pas être calculée.Veuillez spécifier une altitude absolue.",
           "MESS_ATN_POS_NODATA"));
}

ObserverPoint intervisibilityOptionsWidget::defaultPoint() const
{
    ObserverPoint point;
    const QPointF centre = m_ground.centre();
    point.x = centre.x();
    point.y = centre.y();
    point.height = fieldNumber(m_form->m_pLEAltitude->text()).value_or(point.height);
    point.mode = readAltitudeMode(m_form->m_pCmBAltitudeType->currentText()).value_or(point.mode);
    point.maxDistance = fieldNumber(m_form->m_pLEMaxDistance->text()).value_or(point.maxDistance);
    return point;
}

void intervisibilityOptionsWidget::addPoints(const QList<ObserverPoint> &points)
{
    if (points.isEmpty())
        return;
    m_model.addPoints(points);
    chooseObserver(m_model.rowCount() - 1);
    switchOffGroundless();
}

void intervisibilityOptionsWidget::slot_addNewPoint()
{
    addPoints({defaultPoint()});
}

void intervisibilityOptionsWidget::slot_removePoint()
{
    const QModelIndex current = m_form->m_pTViewObsPos->currentIndex();
    if (current.isValid())
        m_model.removePoint(current.row());
}

void intervisibilityOptionsWidget::slot_removeAllPoint()
{
    if (m_model.rowCount() > 0
        && Prompt::question(this, tr("Voulez-vous vraiment supprimer tous les points ?", "MESS_ATN_SUPPR_PTS")))
        m_model.clear();
}

void intervisibilityOptionsWidget::pastePoints()
{
    const PointLinesReading reading = readPointLines(QGuiApplication::clipboard()->text(), defaultPoint());
    addPoints(reading.points);
    if (reading.invalidLines > 0)
        Prompt::warning(
            this,
            tr("%1 lignes ne sont pas des points : x y [hauteur [mode [distance]]].", "MESS_OBS_COLLER")
                .arg(reading.invalidLines));
}

void intervisibilityOptionsWidget::slot_addPointListFromOgrDS()
{
    addPoints(importObservers(m_dem.path, m_ground, defaultPoint(), this));
}

void intervisibilityOptionsWidget::slot_onCurrentObserverPointChanged()
{
    showPosition();
    updateControls();
    emit currentObserverPointChanged();
}

void intervisibilityOptionsWidget::slot_onApplyToAllPoint()
{
    const ObserverPoint values = defaultPoint();
    QList<ObserverPoint> points = m_model.points();
    for (ObserverPoint &point : points) {
        point.height = values.height;
        point.mode = values.mode;
        point.maxDistance = values.maxDistance;
    }
    m_model.setPoints(points);
}

void intervisibilityOptionsWidget::slot_onOptionsChanged()
{
    showPosition();
    updateControls();
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

bool intervisibilityOptionsWidget::eventFilter(QObject *watched, QEvent *event)
{
    if (watched == m_form->m_pTViewObsPos && event->type() == QEvent::KeyPress) {
        const auto key = static_cast<QKeyEvent *>(event);
        const QModelIndex current = m_form->m_pTViewObsPos->currentIndex();
        if (key->key() == Qt::Key_Space && current.isValid()) {
            toggle(current.siblingAtColumn(ObserverPointsModel::EnabledColumn));
            return true;
        }
        if (key->matches(QKeySequence::Paste) && m_ground.isOpen()) {
            pastePoints();
            return true;
        }
        if (key->matches(QKeySequence::Delete)) {
            slot_removePoint();
            return true;
        }
    }
    return optionsWidget::eventFilter(watched, event);
}

void intervisibilityOptionsWidget::changeEvent(QEvent *event)
{
    if (event->type() == QEvent::LanguageChange) {
        m_form->retranslateUi(this);
        applyTexts();
        m_model.retranslate();
        updateControls();
    }
    optionsWidget::changeEvent(event);
}

void intervisibilityOptionsWidget::applyTexts()
{
    m_form->m_pLApplyToAllPointsLink->setText(
        QStringLiteral("<a href=\"all\">%1</a>")
            .arg(tr("Appliquer à tous les points", "MESS_APPLI_TS_PTS").toHtmlEscaped()));
    m_form->m_pTViewObsPos->setToolTip(
        tr("Coller ajoute des lignes « x y [hauteur [mode [distance]]] » ; la barre d'espace active un point.",
           "MESS_OBS_TABLE_EXPL"));
}
