#include "panels/observers/ObserverTable.h"

#include "messages/Prompt.h"
#include "panels/observers/PointDelegate.h"
#include "panels/options/observerlines.h"

#include <QAction>
#include <QClipboard>
#include <QComboBox>
#include <QGuiApplication>
#include <QHeaderView>
#include <QKeyEvent>
#include <QLocale>
#include <QTableView>
#include <QToolButton>

#include <algorithm>
#include <numeric>

ObserverTable::ObserverTable(QTableView *view, ObserverPointsModel &model)
    : m_view(view)
    , m_model(model)
    , m_undo(new QAction(QIcon(QStringLiteral(":/QuvoGdalUtilities/images/undo.png")), {}, this))
    , m_redo(new QAction(QIcon(QStringLiteral(":/QuvoGdalUtilities/images/redo.png")), {}, this))
    , m_copy(new QAction(this))
    , m_paste(new QAction(this))
{
    view->setModel(&model);
    view->setItemDelegate(new PointDelegate(view));
    view->setContextMenuPolicy(Qt::ActionsContextMenu);
    m_columns.emplace(view, model);
    connect(&*m_columns, &TableColumns::shown, this, [this](int column) {
        if (column == ObserverPointsModel::SeenColumn)
            emit seenAreasWanted();
    });
    // One height for all rows: heights by content would measure every row at every change.
    view->verticalHeader()->setSectionResizeMode(QHeaderView::Fixed);
    fitRowHeight();
    view->installEventFilter(this);
    QList<QKeySequence> redoKeys = QKeySequence::keyBindings(QKeySequence::Redo);
    const QKeySequence shiftedUndo(Qt::CTRL | Qt::SHIFT | Qt::Key_Z);
    if (!redoKeys.contains(shiftedUndo))
        redoKeys += shiftedUndo;
    m_undo->setShortcuts(QKeySequence::Undo);
    m_redo->setShortcuts(redoKeys);
    for (QAction *action : {m_undo, m_redo})
        action->setShortcutContext(Qt::WidgetShortcut);
    addHistoryKeys(view);
    view->addActions({m_copy, m_paste});
    connect(m_copy, &QAction::triggered, this, &ObserverTable::copy);
    connect(m_paste, &QAction::triggered, this, &ObserverTable::pasteRequested);
    connect(view, &QTableView::clicked, this, &ObserverTable::toggleClicked);
    connect(m_undo, &QAction::triggered, &model.history(), &QUndoStack::undo);
    connect(m_redo, &QAction::triggered, &model.history(), &QUndoStack::redo);
    connect(&model.history(), &QUndoStack::indexChanged, this, &ObserverTable::showHistory);
    connect(&model, &ObserverPointsModel::restored, this, &ObserverTable::choosePresentRow);
    connect(&model, &ObserverPointsModel::pointsSwitchedOff, this, &ObserverTable::warnOfGroundless,
            Qt::QueuedConnection); // after the cell's editor has closed: a message box follows
    showHistory();
}

void ObserverTable::setHistoryButtons(QToolButton *undo, QToolButton *redo)
{
    undo->setDefaultAction(m_undo);
    redo->setDefaultAction(m_redo);
}

void ObserverTable::setColumnsButton(QToolButton *button)
{
    m_columns->setMenuButton(button);
}

void ObserverTable::addHistoryKeys(QWidget *widget)
{
    widget->addActions({m_undo, m_redo});
}

int ObserverTable::currentRow() const
{
    return m_view->currentIndex().row();
}

void ObserverTable::choose(int row)
{
    // The view's own setCurrentIndex() would heed the keys that are pressed, such as Ctrl of an undo.
    m_view->selectionModel()->setCurrentIndex(m_model.index(row, ObserverPointsModel::HeightColumn),
                                              QItemSelectionModel::ClearAndSelect | QItemSelectionModel::Rows);
}

QVector<int> ObserverTable::selectedRows() const
{
    QVector<int> rows;
    for (const QItemSelectionRange &range : m_view->selectionModel()->selection()) {
        for (int row = range.top(); row <= range.bottom(); ++row)
            rows += row;
    }
    if (rows.isEmpty() && currentRow() >= 0)
        rows += currentRow();
    std::sort(rows.begin(), rows.end());
    rows.erase(std::unique(rows.begin(), rows.end()), rows.end());
    return rows;
}

void ObserverTable::addPoints(const QList<ObserverPoint> &points)
{
    m_model.addPoints(points);
    if (!points.isEmpty())
        choose(m_model.rowCount() - 1);
}

void ObserverTable::paste(const ObserverPoint &defaults)
{
    const PointLinesReading reading = readPointLines(QGuiApplication::clipboard()->text(), defaults);
    addPoints(reading.points);
    constexpr int mostShown = 5;
    QStringList problems;
    for (const LineProblem &each : reading.problems.mid(0, mostShown))
        problems += tr("Ligne %1 : %2", "MESS_OBS_LIGNE").arg(QString::number(each.line), each.problem);
    if (problems.isEmpty())
        return;
    if (reading.problems.size() > mostShown)
        problems +=
            tr("… et %1 autres lignes.", "MESS_OBS_LIGNES_AUTRES").arg(reading.problems.size() - mostShown);
    problems.prepend(
        tr("Lignes ignorées : %1. Une ligne s'écrit « x y [hauteur [mode [distance [nom]]]] », ou la "
           "première donne les noms des colonnes.",
           "MESS_OBS_COLLER")
            .arg(reading.problems.size()));
    Prompt::warning(m_view->window(), problems.join(QLatin1Char('\n')));
}

void ObserverTable::copy()
{
    QList<ObserverPoint> points;
    for (const int row : selectedRows())
        points += m_model.point(row);
    if (!points.isEmpty())
        QGuiApplication::clipboard()->setText(pointLines(points));
}

bool ObserverTable::showsSeenAreas() const
{
    return !m_view->isColumnHidden(ObserverPointsModel::SeenColumn);
}

void ObserverTable::removeSelected()
{
    const QVector<int> rows = selectedRows();
    m_model.removePoints(rows);
    if (!rows.isEmpty())
        choosePresentRow({rows.first()});
}

void ObserverTable::removeAll()
{
    if (m_model.rowCount() == 0
        || !Prompt::question(m_view->window(),
                             tr("Voulez-vous vraiment supprimer tous les points ?", "MESS_ATN_SUPPR_PTS")))
        return;
    QVector<int> rows(m_model.rowCount());
    std::iota(rows.begin(), rows.end(), 0);
    m_model.removePoints(rows);
}

void ObserverTable::toggleClicked(const QModelIndex &index)
{
    const bool selects = QGuiApplication::keyboardModifiers() & (Qt::ControlModifier | Qt::ShiftModifier);
    if (index.column() == ObserverPointsModel::EnabledColumn && !selects)
        enable({index.row()}, !m_model.point(index.row()).enabled);
}

void ObserverTable::enable(const QVector<int> &rows, bool on)
{
    NumberedPoints points;
    for (const int row : rows) {
        points += {row, m_model.point(row)};
        points.last().point.enabled = on;
    }
    m_model.changePoints(points);
}

/// Chooses the first of the rows, or the last row where the first of them does not exist. The current row stays
/// current where it is one of them.
void ObserverTable::choosePresentRow(const QVector<int> &rows)
{
    if (rows.isEmpty()) // the points were sorted
        return;
    const int row = std::min(rows.first(), m_model.rowCount() - 1);
    const QItemSelectionModel &selection = *m_view->selectionModel();
    if (row >= 0 && (!std::binary_search(rows.begin(), rows.end(), currentRow()) || !selection.hasSelection()))
        choose(row);
}

void ObserverTable::warnOfGroundless(int count)
{
    const QString several = count > 1 ? QLatin1Char('\n')
            + tr("%1 observateurs sont dans ce cas ; ils sont désactivés.", "MESS_OBS_DESACTIVES")
                  .arg(QLocale().toString(count))
                                      : QString();
    Prompt::warning(
        m_view->window(),
        tr("La position de l'observateur est dans une zone non informée du MNT; l'altitude absolue de "
           "l'observateur ne peut donc pas être calculée.Veuillez spécifier une altitude absolue.",
           "MESS_ATN_POS_NODATA")
            + several);
}

void ObserverTable::showHistory()
{
    const auto show = [](QAction *action, const QString &text, const QString &named, const QString &step) {
        action->setEnabled(!step.isEmpty());
        action->setText(step.isEmpty() ? text : named.arg(step));
        action->setToolTip(QStringLiteral("%1 (%2)").arg(
            action->text(), action->shortcut().toString(QKeySequence::NativeText)));
    };
    show(m_undo, tr("Annuler", "MESS_DEFAIRE"), tr("Annuler : %1", "MESS_DEFAIRE_ETAPE"), m_model.undoName());
    show(m_redo, tr("Rétablir", "MESS_REFAIRE"), tr("Rétablir : %1", "MESS_REFAIRE_ETAPE"), m_model.redoName());
}

void ObserverTable::retranslate()
{
    m_view->setAccessibleName(tr("Observateurs", "MESS_VAL_OBSERVATEURS"));
    m_view->setToolTip(
        tr("Coller ajoute des lignes « x y [hauteur [mode [distance [nom]]]] », ou les colonnes que la "
           "première ligne nomme ; la barre d'espace active un point.",
           "MESS_OBS_TABLE_EXPL"));
    const auto withKey = [](const QString &text, QKeySequence::StandardKey key) {
        return text + QLatin1Char('\t') + QKeySequence(key).toString(QKeySequence::NativeText);
    };
    m_copy->setText(withKey(tr("Copier", "MESS_OBS_COPIER"), QKeySequence::Copy));
    m_paste->setText(withKey(tr("Coller", "MESS_OBS_COLLER_ICI"), QKeySequence::Paste));
    m_model.retranslate();
    m_columns->retranslate();
    showHistory();
}

void ObserverTable::fitRowHeight()
{
    QComboBox tallest; // the list of modes is the tallest of the editors
    tallest.setFont(m_view->font());
    m_view->verticalHeader()->setDefaultSectionSize(tallest.sizeHint().height());
}

bool ObserverTable::handleKey(const QKeyEvent &key)
{
    if (key.key() == Qt::Key_Space && key.modifiers() == Qt::NoModifier && currentRow() >= 0) {
        enable(selectedRows(), !m_model.point(currentRow()).enabled);
        return true;
    }
    if (key.matches(QKeySequence::Copy)) {
        copy();
        return true;
    }
    if (key.matches(QKeySequence::Paste)) {
        emit pasteRequested();
        return true;
    }
    if (key.matches(QKeySequence::Delete)) {
        removeSelected();
        return true;
    }
    return false;
}

bool ObserverTable::eventFilter(QObject *watched, QEvent *event)
{
    if (event->type() == QEvent::KeyPress && handleKey(*static_cast<QKeyEvent *>(event)))
        return true;
    if (event->type() == QEvent::FontChange || event->type() == QEvent::StyleChange) {
        fitRowHeight();
        m_columns->fit();
    }
    return QObject::eventFilter(watched, event);
}
