#include "panels/observers/ObserverPointsModel.h"

#include "messages/label.h"
#include "messages/shownnumber.h"
#include "panels/options/previewobservers.h"

#include <QLocale>

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

QString ObserverPointsModel::columnMeaning(int column) const
{
    if (const LimitField *limit = limitOf(column))
        return labelText(limit->meaning);
    switch (column) {
    case HeightColumn:
    case ModeColumn:
        return heightMeaning();
    case DistanceColumn:
        return distanceMeaning();
    case SeenColumn:
        return tr("Surface que voit l'observateur, en km², environ : l'aperçu la calcule sur une copie réduite "
                  "du MNT "
                  "entier, pour %1 observateurs au plus.",
                  "MESS_OBS_VOIT_EXPL")
            .arg(QLocale().toString(mostPreviewed));
    default:
        return {};
    }
}

QVariant ObserverPointsModel::headerData(int section, Qt::Orientation orientation, int role) const
{
    if (role == Qt::ToolTipRole && orientation == Qt::Horizontal) {
        const QString meaning = columnMeaning(section);
        const QString sorting = tr("Un clic trie les observateurs.", "MESS_OBS_TRI_EXPL");
        return meaning.isEmpty() ? sorting : meaning + QLatin1Char(' ') + sorting;
    }
    if (role != Qt::DisplayRole)
        return {};
    return orientation == Qt::Vertical ? QVariant(section + 1) : QVariant(columnTitle(section));
}

Qt::ItemFlags ObserverPointsModel::flags(const QModelIndex &index) const
{
    const Qt::ItemFlags flags = Qt::ItemIsEnabled | Qt::ItemIsSelectable;
    const bool isEdited = index.column() != EnabledColumn && index.column() != SeenColumn;
    return isEdited ? flags | Qt::ItemIsEditable : flags;
}

QString ObserverPointsModel::text(const Row &row, int column) const
{
    if (column != SeenColumn)
        return cellText(row.point, column);
    return row.seenArea ? shownNumber(*row.seenArea, 'f', 2) : QString();
}

QVariant ObserverPointsModel::data(const QModelIndex &index, int role) const
{
    const Row &row = m_rows.at(index.row());
    if (role == Qt::DisplayRole)
        return text(row, index.column());
    if (role == Qt::DecorationRole && index.column() == EnabledColumn)
        return row.point.enabled ? m_on : m_off;
    if (role == Qt::EditRole)
        return index.column() == EnabledColumn ? QVariant(row.point.enabled)
                                               : QVariant(text(row, index.column()));
    if (role == Qt::TextAlignmentRole && isNumberColumn(index.column()))
        return static_cast<int>(Qt::AlignRight | Qt::AlignVCenter);
    return {};
}

bool ObserverPointsModel::setData(const QModelIndex &index, const QVariant &value, int role)
{
    if (role != Qt::EditRole || !(flags(index) & Qt::ItemIsEditable || index.column() == EnabledColumn))
        return false;
    ObserverPoint point = m_rows.at(index.row()).point;
    const bool good = setCell(point, index.column(), value);
    if (good)
        setPoint(index.row(), point);
    return good;
}

QList<ObserverPoint> ObserverPointsModel::points() const
{
    if (!m_points) {
        m_points.emplace();
        m_points->reserve(m_rows.size());
        for (const Row &row : m_rows)
            *m_points += row.point;
    }
    return *m_points;
}

ObserverPointsModel::Row ObserverPointsModel::rowOf(const ObserverPoint &point) const
{
    return {point, m_ground.surfaceElevation(point.position())};
}

int ObserverPointsModel::switchOffGroundless(QVector<Row> &rows) const
{
    int count = 0;
    for (Row &row : rows) {
        if (m_ground.isOpen() && row.isGroundless()) {
            row.point.enabled = false;
            ++count;
        }
    }
    return count;
}

void ObserverPointsModel::takeStep(const StepName &name, const NumberedPoints &changed,
                                   const QList<ObserverPoint> &added, bool joins)
{
    QVector<Row> rows = m_rows;
    for (const NumberedPoint &each : changed) {
        const bool moved = m_rows.at(each.row).point.position() != each.point.position();
        rows[each.row] = moved ? rowOf(each.point) : Row{each.point, m_rows.at(each.row).ground};
    }
    for (const ObserverPoint &point : added)
        rows += rowOf(point);
    const int switchedOff = switchOffGroundless(rows);
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
        m_history.push(new ObserverStep(*this, name, static_cast<int>(count), edit, joins));
    if (switchedOff > 0)
        emit pointsSwitchedOff(switchedOff);
}

void ObserverPointsModel::changePoints(const NumberedPoints &points, bool joins)
{
    takeStep(changeStep, points, {}, joins);
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

void ObserverPointsModel::sort(int column, Qt::SortOrder order)
{
    QVector<SortedObserver> rows;
    rows.reserve(m_rows.size());
    for (const Row &row : m_rows)
        rows += {&row.point, row.seenArea};
    TableEdit edit;
    edit.order = sortedRows(rows, column, order);
    if (!std::is_sorted(edit.order.begin(), edit.order.end()))
        m_history.push(new ObserverStep(*this, sortingStep, rowCount(), edit));
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
    clearSeenAreas();
    for (const auto &[row, point] : points) {
        const bool moved = m_rows.at(row).point.position() != point.position();
        m_rows[row] = moved ? rowOf(point) : Row{point, m_rows.at(row).ground};
    }
    m_points.reset();
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
    clearSeenAreas();
    const int first = points.first().row;
    if (areAdjacent(points)) {
        beginRemoveRows({}, first, points.last().row);
        m_rows.erase(m_rows.begin() + first, m_rows.begin() + points.last().row + 1);
        m_points.reset();
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
    m_points.reset();
    endResetModel();
}

void ObserverPointsModel::putIn(const NumberedPoints &points)
{
    if (points.isEmpty())
        return;
    clearSeenAreas();
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
    m_points.reset();
    if (adjacent)
        endInsertRows();
    else
        endResetModel();
}

void ObserverPointsModel::reorder(const QVector<int> &order)
{
    if (order.isEmpty())
        return;
    emit layoutAboutToBeChanged({}, QAbstractItemModel::VerticalSortHint);
    QVector<Row> rows;
    QVector<int> places(order.size());
    rows.reserve(order.size());
    for (int row = 0; row < order.size(); ++row) {
        rows += m_rows.at(order.at(row));
        places[order.at(row)] = row;
    }
    m_rows = rows;
    m_points.reset();
    const QModelIndexList before = persistentIndexList();
    QModelIndexList after;
    after.reserve(before.size());
    for (const QModelIndex &each : before)
        after += index(places.at(each.row()), each.column());
    changePersistentIndexList(before, after);
    emit layoutChanged({}, QAbstractItemModel::VerticalSortHint);
}

/// The rows of observers() without a limit on their number.
QVector<int> ObserverPointsModel::seeingRows() const
{
    QVector<int> seeing;
    for (int row = 0; row < m_rows.size(); ++row) {
        if (m_rows.at(row).point.enabled && !m_rows.at(row).isGroundless())
            seeing += row;
    }
    return seeing;
}

void ObserverPointsModel::setSeenAreas(const QVector<double> &areas)
{
    clearSeenAreas();
    const QVector<int> seeing = seeingRows();
    if (seeing.isEmpty() || seeing.size() != areas.size())
        return;
    for (int at = 0; at < areas.size(); ++at)
        m_rows[seeing.at(at)].seenArea = areas.at(at);
    m_showsAreas = true;
    emit dataChanged(index(0, SeenColumn), index(rowCount() - 1, SeenColumn));
}

void ObserverPointsModel::clearSeenAreas()
{
    if (!m_showsAreas)
        return;
    m_showsAreas = false;
    for (Row &row : m_rows)
        row.seenArea.reset();
    emit dataChanged(index(0, SeenColumn), index(rowCount() - 1, SeenColumn));
}

bool ObserverPointsModel::isUsed(int column, int firstRow, int lastRow) const
{
    const LimitField *limit = limitOf(column);
    return std::any_of(m_rows.begin() + firstRow, m_rows.begin() + lastRow + 1, [&](const Row &row) {
        return limit ? (row.point.limits.*limit->value).has_value()
                     : column == NameColumn && !row.point.name.isEmpty();
    });
}

void ObserverPointsModel::setGround(const DemGround &ground)
{
    m_ground = ground;
    clearSeenAreas();
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

QList<ToolObserver> ObserverPointsModel::observers(const DemGround &copy, int most) const
{
    QList<ToolObserver> observers;
    const QVector<int> seeing = seeingRows();
    const int count = std::min(most, static_cast<int>(seeing.size()));
    for (int at = 0; at < count; ++at) {
        const Row &row =
            m_rows.at(seeing.at(static_cast<int>(static_cast<qint64>(at) * seeing.size() / count)));
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
