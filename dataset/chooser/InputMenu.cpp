#include "dataset/chooser/InputMenu.h"

#include <QAction>
#include <QKeyEvent>
#include <QMenu>
#include <QToolButton>

#include <utility>

InputMenu::InputMenu(QToolButton *button)
    : QObject(button)
    , m_button(button)
    , m_menu(new QMenu(button))
{
    m_button->setMenu(m_menu);
    m_button->setPopupMode(QToolButton::MenuButtonPopup);
    m_button->setFocusPolicy(Qt::StrongFocus); // a tool button takes none by a click
    m_button->installEventFilter(this);
    connect(m_button, &QToolButton::clicked, this, [this] {
        if (!m_entries.isEmpty())
            m_entries.first().first->trigger();
    });
}

void InputMenu::add(const Label &text, std::function<void()> choose)
{
    QAction *action = m_menu->addAction(labelText(text));
    connect(action, &QAction::triggered, this, [choose = std::move(choose)] { choose(); });
    m_entries.append({action, text});
}

void InputMenu::applyTexts()
{
    for (const auto &[action, text] : std::as_const(m_entries))
        action->setText(labelText(text));
}

bool InputMenu::eventFilter(QObject *watched, QEvent *event)
{
    if (event->type() == QEvent::LanguageChange)
        applyTexts();
    if (event->type() == QEvent::KeyPress && static_cast<QKeyEvent *>(event)->key() == Qt::Key_Down) {
        m_button->showMenu();
        return true;
    }
    return QObject::eventFilter(watched, event);
}
