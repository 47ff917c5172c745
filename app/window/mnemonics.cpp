#include "app/window/mnemonics.h"

#include <QAbstractButton>
#include <QAction>
#include <QApplication>
#include <QGroupBox>
#include <QKeyEvent>
#include <QLabel>
#include <QMenu>
#include <QPointer>
#include <QTabWidget>
#include <QTextDocument>
#include <QTimer>
#include <QToolButton>

#include <functional>
#include <utility>

namespace
{

bool isLetter(QChar character)
{
    const QChar lower = character.toLower();
    return lower >= QLatin1Char('a') && lower <= QLatin1Char('z');
}

/// A text of a window that can have a mnemonic.
struct ShownText
{
    QString text;
    std::function<void(const QString &)> show;
};

/// The text of a control; with an empty text where it has none that could have a letter.
ShownText textOf(QWidget *control)
{
    if (auto *button = qobject_cast<QAbstractButton *>(control)) {
        const auto *tool = qobject_cast<QToolButton *>(button);
        if (tool && tool->toolButtonStyle() == Qt::ToolButtonIconOnly && !tool->icon().isNull())
            return {};
        return {button->text(), [button](const QString &text) { button->setText(text); }};
    }
    if (auto *label = qobject_cast<QLabel *>(control); label && label->buddy()) {
        if (label->textFormat() == Qt::RichText || Qt::mightBeRichText(label->text()))
            return {};
        return {label->text(), [label](const QString &text) { label->setText(text); }};
    }
    if (auto *box = qobject_cast<QGroupBox *>(control); box && box->isCheckable())
        return {box->title(), [box](const QString &title) { box->setTitle(title); }};
    return {};
}

void giveLetter(const ShownText &shown, QSet<QChar> &taken)
{
    if (shown.text.isEmpty())
        return;
    const QString text = withMnemonic(withoutMnemonic(shown.text), taken);
    if (text != shown.text)
        shown.show(text);
}

/// Gives the controls below `area` their letters, then those of each page of a tab widget in it.
void putLetters(QWidget &area, QSet<QChar> taken)
{
    QList<QTabWidget *> tabWidgets;
    const std::function<void(QWidget &)> visit = [&](QWidget &parent) {
        for (QObject *child : parent.children()) {
            auto *widget = qobject_cast<QWidget *>(child);
            if (!widget || widget->isWindow() || widget->isHidden())
                continue;
            giveLetter(textOf(widget), taken);
            if (auto *tabs = qobject_cast<QTabWidget *>(widget))
                tabWidgets += tabs;
            else
                visit(*widget);
        }
    };
    visit(area);
    for (QTabWidget *tabs : qAsConst(tabWidgets)) {
        for (int index = 0; index < tabs->count(); ++index)
            giveLetter({tabs->tabText(index), [&](const QString &text) { tabs->setTabText(index, text); }},
                       taken);
    }
    for (QTabWidget *tabs : qAsConst(tabWidgets)) {
        for (int index = 0; index < tabs->count(); ++index)
            putLetters(*tabs->widget(index), taken);
    }
}

void putMenuLetters(const QMenu &menu)
{
    QSet<QChar> taken;
    for (QAction *action : menu.actions())
        giveLetter({action->text(), [action](const QString &text) { action->setText(text); }}, taken);
}

class MnemonicWatch : public QObject
{
public:
    using QObject::QObject;

protected:
    bool eventFilter(QObject *watched, QEvent *event) override
    {
        const QEvent::Type type = event->type();
        if (type == QEvent::Show) {
            if (const auto *menu = qobject_cast<QMenu *>(watched))
                putMenuLetters(*menu);
            else if (auto *window = qobject_cast<QWidget *>(watched); window && window->isWindow())
                putMnemonics(*window);
        } else if (type == QEvent::LanguageChange) {
            // The window sets its texts when this filter has returned.
            if (auto *window = qobject_cast<QWidget *>(watched); window && window->isWindow())
                QTimer::singleShot(0, window, [window] { putMnemonics(*window); });
        } else if (type == QEvent::KeyPress && static_cast<QKeyEvent *>(event)->key() == Qt::Key_Alt) {
            // Texts that changed since then get their letters before one of these can be typed.
            if (auto *widget = qobject_cast<QWidget *>(watched))
                putMnemonics(*widget->window());
        }
        return QObject::eventFilter(watched, event);
    }
};

} // namespace

QString withMnemonic(const QString &text, QSet<QChar> &taken)
{
    const auto isFree = [&](int at) { return isLetter(text.at(at)) && !taken.contains(text.at(at).toLower()); };
    const auto isInitial = [&](int at) { return at == 0 || !text.at(at - 1).isLetterOrNumber(); };
    const int length = static_cast<int>(text.size());
    int chosen = -1;
    for (int at = 0; at < length && (chosen < 0 || !isInitial(chosen)); ++at) {
        if (isFree(at) && (chosen < 0 || isInitial(at)))
            chosen = at;
    }
    if (chosen < 0)
        return text;
    taken.insert(text.at(chosen).toLower());
    return QString(text).insert(chosen, QLatin1Char('&'));
}

QString withoutMnemonic(QString text)
{
    for (int at = 0; at < text.size(); ++at) {
        if (text.at(at) != QLatin1Char('&'))
            continue;
        const bool isEscaped = at + 1 < text.size() && text.at(at + 1) == QLatin1Char('&');
        if (isEscaped)
            ++at;
        else
            text.remove(at--, 1);
    }
    return text;
}

void putMnemonics(QWidget &window)
{
    putLetters(window, {});
}

void putMnemonicsEverywhere()
{
    qApp->installEventFilter(new MnemonicWatch(qApp));
}
