#include "panels/observers/ObserverPointsModel.h"

#include "messages/label.h"
#include "panels/controls/numberfield.h"

#include <algorithm>

ObserverPointsModel::ObserverPointsModel(QObject *parent)
    : QAbstractTableModel(parent)
    , m_on(QStringLiteral(":/QuvoGdalUtilities/images/Ok-6380-16.png"))
    , m_off(QStringLiteral(":/QuvoGdalUtilities/images/No-9337-16.png"))
{
    // Without a picture of their own for selected rows, Qt would tint the icons there.
    m_on.addFile(QStringLiteral(":/QuvoGdalUtilities/images/Ok-6380-16.png"), {}, QIcon::Selected);
    m_off.addFile(QStringLiteral(":/QuvoGdalUtilities/images/No-9337-16.png"), {}, QIcon::Selected);
    constexpr int mostSteps = 100; // a step may hold all points twice
    m_history.setUndoLimit(mostSteps);
}

int ObserverPointsModel::rowCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : static_cast<int>(m_rows.size());
}

int ObserverPointsModel::columnCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : ColumnCount;
}

QString ObserverPointsModel::heightMeaning() const
{
    const QString unit = m_ground.elevationUnit();
    return unit.isEmpty()
        ? tr("Altitude dans l'unité du MNT, au-dessus du sol (Relative) ou du zéro (Absolute).",
             "MESS_OBS_HAUTEUR_MNT")
        : tr("Altitude en %1, au-dessus du sol (Relative) ou du zéro (Absolute).", "MESS_OBS_HAUTEUR_EN")
              .arg(unit);
}

QString ObserverPointsModel::distanceMeaning() const
{
    return tr("Distance en m ; 0 : sans limite.", "MESS_OBS_DIST_EN");
}

QVariant ObserverPointsModel::headerData(int section, Qt::Orientation orientation, int role) const
{
    if (role == Qt::ToolTipRole && orientation == Qt::Horizontal && section != EnabledColumn)
        return section == DistanceColumn ? distanceMeaning() : heightMeaning();
    if (role != Qt::DisplayRole)
        return {};
    if (orientation == Qt::Vertical)
        return section + 1;
    switch (section) {
    case EnabledColumn:
        return labelText({"MESS_ON_OFF", "On/Off"});
    case HeightColumn:
        return labelText({"MESS_ALTI_HAUTEUR", "Altitude"});
    case ModeColumn:
        return labelText({"MESS_MODE_ALTI", "Mode altitude"});
    default:
        return labelText({"MESS_DIST_MAX_OBS_ABR", "Dist. max."});
    }
}

Qt::ItemFlags ObserverPointsModel::flags(const QModelIndex &index) const
{
    const Qt::ItemFlags flags = Qt::ItemIsEnabled | Qt::ItemIsSelectable;
    return index.column() == EnabledColumn ? flags : flags | Qt::ItemIsEditable;
}

QString ObserverPointsModel::text(const ObserverPoint &point, int column) const
{
    switch (column) {
    case EnabledColumn:
        return point.enabled ? labelText({"MESS_OBS_ACTIF", "Oui"}) : labelText({"MESS_OBS_INACTIF", "Non"});
    case HeightColumn:
        return numberText(point.height);
    case ModeColumn:
        return altitudeModeText(point.mode);
    default:
        return numberText(point.maxDistance);
    }
}

QVariant ObserverPointsModel::data(const QModelIndex &index, int role) const
{
    const ObserverPoint &point = m_rows.at(index.row()).point;
    if (role == Qt::DisplayRole)
        return text(point, index.column());
    if (role == Qt::DecorationRole && index.column() == EnabledColumn)
        return point.enabled ? m_on : m_off;
    if (role == Qt::EditRole)
        return index.column() == EnabledColumn ? QVariant(point.enabled)
                                               : QVariant(text(point, index.column()));
    if (role == Qt::TextAlignmentRole && (index.column() == HeightColumn || index.column() == DistanceColumn))
        return static_cast<int>(Qt::AlignRight | Qt::AlignVCenter);
    return {};
}

bool ObserverPointsModel::setData(const QModelIndex &index, const QVariant &value, int role)
{
    if (role != Qt::EditRole)
        return false;
    ObserverPoint point = m_rows.at(index.row()).point;
    bool good = true;
    if (index.column() == EnabledColumn) {
        point.enabled = value.toBool();
    } else if (index.column() == ModeColumn) {
        const auto mode = readAltitudeMode(value.toString());
        good = mode.has_value();
        point.mode = mode.value_or(point.mode);
    } else {
        const double number = value.toString().toDouble(&good);
        (index.column() == HeightColumn ? point.height : point.maxDistance) = number;
    }
    good = good && pointProblem(point).isEmpty();
    if (good)
        setPoint(index.row(), point);
    return good;
}

QList<ObserverPoint> ObserverPointsModel::points() const
{
    QList<ObserverPoint> points;
    points.reserve(m_rows.size());
    for (const Row &row : m_rows)
        points += row.point;
    return points;
}

ObserverPointsModel::Row ObserverPointsModel::rowOf(const ObserverPoint &point) const
{
    return {point, m_ground.surfaceElevation(point.position())};
}

bool ObserverPointsModel::switchOffGroundless(QVector<Row> &rows) const
{
    bool any = false;
    for (Row &row : rows) {
        if (m_ground.isOpen() && row.isGroundless()) {
            row.point.enabled = false;
            any = true;
        }
    }
    return any;
}

void ObserverPointsModel::takeStep(const StepName &name, const NumberedPoints &changed,
                                   const QList<ObserverPoint> &added)
{
    QVector<Row> rows = m_rows;
    for (const NumberedPoint &each : changed) {
        const bool moved = m_rows.at(each.row).point.position() != each.point.position();
        rows[each.row] = moved ? rowOf(each.point) : Row{each.point, m_rows.at(each.row).ground};
    }
    for (const ObserverPoint &point : added)
        rows += rowOf(point);
    const bool switchedOff = switchOffGroundless(rows);
    TableEdit edit;
    for (int row = 0; row < rows.size(); ++row) {
        if (row >= m_rows.size()) {
            edit.inserted += {row, rows.at(row).point};
        } else if (rows.at(row).point != m_rows.at(row).point) {
            edit.before += {row, m_rows.at(row).point};
            edit.after += {row, rows.at(row).point};
        }
    }
    const auto count = edit.inserted.isEmpty() ? edit.after.size() : edit.inserted.size();
    if (count > 0)
        m_history.push(new ObserverStep(*this, name, static_cast<int>(count), edit));
    if (switchedOff)
        emit pointsSwitchedOff();
}

void ObserverPointsModel::changePoints(const NumberedPoints &points)
{
    takeStep(changeStep, points, {});
}

void ObserverPointsModel::addPoints(const QList<ObserverPoint> &points)
{
    if (!points.isEmpty())
        takeStep(addingStep, {}, points);
}

void ObserverPointsModel::removePoints(const QVector<int> &rows)
{
    TableEdit edit;
    for (const int row : rows)
        edit.removed += {row, m_rows.at(row).point};
    if (!rows.isEmpty())
        m_history.push(new ObserverStep(*this, removalStep, static_cast<int>(rows.size()), edit));
}

void ObserverPointsModel::openSettings(const QList<ObserverPoint> &points)
{
    TableEdit edit;
    for (int row = 0; row < rowCount(); ++row)
        edit.removed += {row, m_rows.at(row).point};
    for (int row = 0; row < points.size(); ++row)
        edit.inserted += {row, points.at(row)};
    if (points != this->points())
        m_history.push(new ObserverStep(*this, settingsStep, static_cast<int>(points.size()), edit));
}

QString ObserverPointsModel::stepName(int step) const
{
    const auto *command = static_cast<const ObserverStep *>(m_history.command(step));
    return command ? command->name() : QString();
}

QString ObserverPointsModel::undoName() const
{
    return stepName(m_history.index() - 1);
}

QString ObserverPointsModel::redoName() const
{
    return stepName(m_history.index());
}

void ObserverPointsModel::change(const NumberedPoints &points)
{
    if (points.isEmpty())
        return;
    for (const auto &[row, point] : points) {
        const bool moved = m_rows.at(row).point.position() != point.position();
        m_rows[row] = moved ? rowOf(point) : Row{point, m_rows.at(row).ground};
    }
    emit dataChanged(index(points.first().row, 0), index(points.last().row, ColumnCount - 1));
}

namespace
{

bool areAdjacent(const NumberedPoints &points)
{
    return points.last().row - points.first().row + 1 == points.size();
}

} // namespace

// Rows that lie apart are taken out and put in by a reset: a signal for each would cost the view the square of
// their number.

void ObserverPointsModel::takeOut(const NumberedPoints &points)
{
    if (points.isEmpty())
        return;
    const int first = points.first().row;
    if (areAdjacent(points)) {
        beginRemoveRows({}, first, points.last().row);
        m_rows.erase(m_rows.begin() + first, m_rows.begin() + points.last().row + 1);
        endRemoveRows();
        return;
    }
    beginResetModel();
    QVector<Row> left;
    left.reserve(m_rows.size() - points.size());
    for (int row = 0, at = 0; row < m_rows.size(); ++row) {
        if (at < points.size() && points.at(at).row == row)
            ++at;
        else
            left += m_rows.at(row);
    }
    m_rows = left;
    endResetModel();
}

void ObserverPointsModel::putIn(const NumberedPoints &points)
{
    if (points.isEmpty())
        return;
    const bool adjacent = areAdjacent(points);
    if (adjacent)
        beginInsertRows({}, points.first().row, points.last().row);
    else
        beginResetModel();
    QVector<Row> all;
    all.reserve(m_rows.size() + points.size());
    int old = 0;
    for (const auto &[row, point] : points) {
        while (all.size() < row)
            all += m_rows.at(old++);
        all += rowOf(point);
    }
    all += m_rows.mid(old);
    m_rows = all;
    if (adjacent)
        endInsertRows();
    else
        endResetModel();
}

void ObserverPointsModel::setGround(const DemGround &ground)
{
    m_ground = ground;
    for (Row &row : m_rows)
        row.ground = m_ground.surfaceElevation(row.point.position());
}

int ObserverPointsModel::groundlessCount() const
{
    return static_cast<int>(
        std::count_if(m_rows.begin(), m_rows.end(), [](const Row &row) { return row.isGroundless(); }));
}

int ObserverPointsModel::enabledCount() const
{
    return static_cast<int>(
        std::count_if(m_rows.begin(), m_rows.end(), [](const Row &row) { return row.point.enabled; }));
}

QList<ToolObserver> ObserverPointsModel::observers(const DemGround &copy) const
{
    QList<ToolObserver> observers;
    for (const Row &row : m_rows) {
        const auto observer = toolObserver(row.point, copy.surfaceElevation(row.point.position()), row.ground);
        if (observer)
            observers += *observer;
    }
    return observers;
}

void ObserverPointsModel::retranslate()
{
    emit headerDataChanged(Qt::Horizontal, 0, ColumnCount - 1);
}
