#include "panels/observers/PositionFields.h"

#include "panels/controls/numberfield.h"

#include <QKeyEvent>
#include <QLineEdit>

PositionFields::PositionFields(QLineEdit *x, QLineEdit *y)
    : m_x(x)
    , m_y(y)
{
    for (QLineEdit *field : {x, y}) {
        makeNumberField(field, -highestCoordinate, highestCoordinate);
        field->installEventFilter(this);
        connect(field, &QLineEdit::editingFinished, this, &PositionFields::apply);
    }
}

void PositionFields::show(const std::optional<ObserverPoint> &point)
{
    constexpr int digits = 12;
    m_point = point;
    m_x->setText(point ? QString::number(point->x, 'g', digits) : QString());
    m_y->setText(point ? QString::number(point->y, 'g', digits) : QString());
    for (QLineEdit *field : {m_x, m_y})
        field->setEnabled(point.has_value());
}

void PositionFields::apply()
{
    const auto x = fieldNumber(m_x->text());
    const auto y = fieldNumber(m_y->text());
    if (!m_point || !x || !y)
        return;
    // A field shows a rounded coordinate, which replaces the exact one only where the user typed it.
    const QPointF position(m_x->isModified() ? *x : m_point->x, m_y->isModified() ? *y : m_point->y);
    if (position.x() != m_point->x || position.y() != m_point->y)
        emit moved(position);
}

bool PositionFields::eventFilter(QObject *watched, QEvent *event)
{
    if (event->type() == QEvent::ShortcutOverride) {
        const auto field = static_cast<QLineEdit *>(watched);
        const auto key = static_cast<QKeyEvent *>(event);
        if ((key->matches(QKeySequence::Undo) && !field->isUndoAvailable())
            || (key->matches(QKeySequence::Redo) && !field->isRedoAvailable())) {
            event->ignore();
            return true;
        }
    }
    return QObject::eventFilter(watched, event);
}
