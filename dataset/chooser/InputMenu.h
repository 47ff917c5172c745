#pragma once

#include "messages/label.h"

#include <QObject>
#include <QVector>

#include <functional>
#include <utility>

class QAction;
class QMenu;
class QToolButton;

/// The menu behind the arrow of an input button: the ways to choose a source. A click on the button itself does
/// what the first entry does. With the keyboard, Down opens the menu.
class InputMenu : public QObject
{
    Q_OBJECT

public:
    /// The button owns this object.
    explicit InputMenu(QToolButton *button);

    /// Adds an entry, which calls `choose`. Its text follows the language in use.
    void add(const Label &text, std::function<void()> choose);

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    void applyTexts();

    QToolButton *m_button;
    QMenu *m_menu;
    QVector<std::pair<QAction *, Label>> m_entries;
};
