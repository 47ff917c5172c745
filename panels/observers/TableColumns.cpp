#include "panels/observers/TableColumns.h"

#include "panels/observers/ObserverPointsModel.h"

#include <QHeaderView>
#include <QTableView>
#include <QToolButton>

#include <algorithm>

TableColumns::TableColumns(QTableView *view, ObserverPointsModel &model)
    : m_view(view)
    , m_model(model)
{
    QHeaderView *titles = view->horizontalHeader();
    titles->moveSection(titles->visualIndex(NameColumn), EnabledColumn + 1);
    titles->setSectionsClickable(true);
    titles->setContextMenuPolicy(Qt::CustomContextMenu);
    for (int column = NameColumn; column < ColumnCount; ++column) {
        QAction *action = m_menu.addAction(QString());
        action->setCheckable(true);
        action->setData(column);
        action->setChecked(column == NameColumn);
        view->setColumnHidden(column, !action->isChecked());
        connect(action, &QAction::toggled, this, [this, column](bool on) { show(column, on); });
        m_actions += action;
    }
    connect(titles, &QWidget::customContextMenuRequested, this,
            [this, titles](const QPoint &place) { m_menu.popup(titles->mapToGlobal(place)); });
    connect(titles, &QHeaderView::sectionClicked, this, &TableColumns::sortBy);
    connect(&model.history(), &QUndoStack::indexChanged, this, [this] { markSorted(std::nullopt); });
    connect(&model, &QAbstractItemModel::rowsInserted, this,
            [this](const QModelIndex &, int first, int last) { showUsed(first, last); });
    connect(&model, &QAbstractItemModel::modelReset, this, [this] { showUsed(0, m_model.rowCount() - 1); });
}

void TableColumns::setMenuButton(QToolButton *button)
{
    button->setMenu(&m_menu);
    button->setPopupMode(QToolButton::InstantPopup);
}

void TableColumns::show(int column, bool on)
{
    m_view->setColumnHidden(column, !on);
    fit();
    if (on)
        emit shown(column);
}

void TableColumns::showUsed(int firstRow, int lastRow)
{
    for (QAction *action : m_actions) {
        if (!action->isChecked() && m_model.isUsed(action->data().toInt(), firstRow, lastRow))
            action->setChecked(true);
    }
}

void TableColumns::sortBy(int column)
{
    const Sorting ascending{column, Qt::AscendingOrder};
    const Sorting sorting{column, m_sorting == ascending ? Qt::DescendingOrder : Qt::AscendingOrder};
    m_model.sort(column, sorting.order);
    markSorted(sorting); // the step of the history has removed the mark
    m_view->scrollTo(m_view->currentIndex());
}

void TableColumns::markSorted(const std::optional<Sorting> &sorting)
{
    m_sorting = sorting;
    QHeaderView *titles = m_view->horizontalHeader();
    titles->setSortIndicatorShown(sorting.has_value());
    if (sorting)
        titles->setSortIndicator(sorting->column, sorting->order);
}

void TableColumns::retranslate()
{
    for (QAction *action : m_actions) {
        const int column = action->data().toInt();
        action->setText(columnTitle(column));
        action->setToolTip(m_model.columnMeaning(column));
    }
    m_menu.setToolTipsVisible(true);
    fit();
}

/// The width at which the column shows its title and the largest usual number.
int TableColumns::leastWidth(int column) const
{
    const int margin = 2 * m_view->style()->pixelMetric(QStyle::PM_FocusFrameHMargin, nullptr, m_view) + 12;
    const int title = m_view->horizontalHeader()->sectionSizeHint(column);
    if (column == EnabledColumn || column == ModeColumn)
        return title + margin;
    const bool isLong = column == HeightColumn || column == DistanceColumn;
    const QString usual = isLong ? QStringLiteral("100000.000") : QStringLiteral("360.000");
    return std::max(title + margin / 2, m_view->fontMetrics().horizontalAdvance(usual) + margin);
}

void TableColumns::fit()
{
    QHeaderView *titles = m_view->horizontalHeader();
    const bool hasMore = std::any_of(m_actions.begin() + 1, m_actions.end(),
                                     [](const QAction *action) { return action->isChecked(); });
    int width = m_view->verticalHeader()->sizeHint().width() + 2 * m_view->frameWidth();
    for (int column = 0; column < ColumnCount; ++column) {
        const int least = leastWidth(column);
        // The names take what the usual columns leave of the table's width; with more of them, the table is
        // scrolled.
        const bool takesRest = !hasMore && column == NameColumn;
        titles->setSectionResizeMode(column,
                                     takesRest ? QHeaderView::Stretch
                                         : column == EnabledColumn || column == ModeColumn
                                         ? QHeaderView::Fixed
                                         : QHeaderView::Interactive);
        if (!takesRest)
            titles->resizeSection(column,
                                  column == NameColumn ? 2 * least : least); // names are longer than numbers
        if (column <= NameColumn && !m_view->isColumnHidden(column))
            width += least;
    }
    titles->setStretchLastSection(hasMore);
    m_view->setMinimumWidth(width);
}
