#include "panels/observers/ObserverPointsModel.h"

#include "messages/label.h"

#include <algorithm>

#include <cmath>

ObserverPointsModel::ObserverPointsModel(QObject *parent)
    : QAbstractTableModel(parent)
    , m_on(QStringLiteral(":/QuvoGdalUtilities/images/Ok-6380-16.png"))
    , m_off(QStringLiteral(":/QuvoGdalUtilities/images/No-9337-16.png"))
{
    // Without a picture of their own for selected rows, Qt would tint the icons there.
    m_on.addFile(QStringLiteral(":/QuvoGdalUtilities/images/Ok-6380-16.png"), {}, QIcon::Selected);
    m_off.addFile(QStringLiteral(":/QuvoGdalUtilities/images/No-9337-16.png"), {}, QIcon::Selected);
}

int ObserverPointsModel::rowCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : static_cast<int>(m_rows.size());
}

int ObserverPointsModel::columnCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : ColumnCount;
}

QVariant ObserverPointsModel::headerData(int section, Qt::Orientation orientation, int role) const
{
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
    constexpr int decimals = 3;
    switch (column) {
    case EnabledColumn:
        return point.enabled ? labelText({"MESS_OBS_ACTIF", "Oui"}) : labelText({"MESS_OBS_INACTIF", "Non"});
    case HeightColumn:
        return QString::number(point.height, 'f', decimals);
    case ModeColumn:
        return altitudeModeText(point.mode);
    default:
        return QString::number(point.maxDistance, 'f', decimals);
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
        good = good && std::isfinite(number);
        (index.column() == HeightColumn ? point.height : point.maxDistance) = number;
    }
    if (good)
        setPoint(index.row(), point);
    return good;
}

QList<ObserverPoint> ObserverPointsModel::points() const
{
    QList<ObserverPoint> points;
    for (const Row &row : m_rows)
        points += row.point;
    return points;
}

void ObserverPointsModel::replace(int row, const ObserverPoint &point)
{
    if (m_rows.at(row).point.position() != point.position())
        m_rows[row].ground = m_ground.surfaceElevation(point.position());
    m_rows[row].point = point;
}

void ObserverPointsModel::setPoint(int row, const ObserverPoint &point)
{
    replace(row, point);
    emit dataChanged(index(row, 0), index(row, ColumnCount - 1));
}

void ObserverPointsModel::setPoints(const QList<ObserverPoint> &points)
{
    for (int row = 0; row < rowCount(); ++row)
        replace(row, points.at(row));
    if (rowCount() > 0)
        emit dataChanged(index(0, 0), index(rowCount() - 1, ColumnCount - 1));
}

void ObserverPointsModel::addPoints(const QList<ObserverPoint> &points)
{
    if (points.isEmpty())
        return;
    const int first = rowCount();
    beginInsertRows({}, first, first + static_cast<int>(points.size()) - 1);
    for (const ObserverPoint &point : points)
        m_rows += {point, m_ground.surfaceElevation(point.position())};
    endInsertRows();
}

void ObserverPointsModel::removePoint(int row)
{
    beginRemoveRows({}, row, row);
    m_rows.removeAt(row);
    endRemoveRows();
}

void ObserverPointsModel::clear()
{
    beginResetModel();
    m_rows.clear();
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

int ObserverPointsModel::switchOffGroundless()
{
    const int count = groundlessCount();
    for (Row &row : m_rows) {
        if (row.isGroundless())
            row.point.enabled = false;
    }
    if (count > 0)
        emit dataChanged(index(0, 0), index(rowCount() - 1, ColumnCount - 1));
    return count;
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
        const auto ground = copy.surfaceElevation(row.point.position());
        const auto altitude = absoluteAltitude(row.point, ground ? ground : row.ground);
        if (row.point.enabled && altitude)
            observers += {row.point.x, row.point.y, *altitude, row.point.maxDistance};
    }
    return observers;
}

void ObserverPointsModel::retranslate()
{
    emit headerDataChanged(Qt::Horizontal, 0, ColumnCount - 1);
}
