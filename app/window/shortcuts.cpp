#include "app/window/shortcuts.h"

#include <QShortcut>
#include <QTabWidget>

#include <utility>

void addShortcut(QWidget &window, const QKeySequence &keys, std::function<void()> act)
{
    auto shortcut = new QShortcut(keys, &window);
    QObject::connect(shortcut, &QShortcut::activated, &window, std::move(act));
}

void addTabKeys(QWidget &window, QTabWidget &tabs)
{
    const auto step = [&tabs](int by) {
        if (tabs.count() > 0)
            tabs.setCurrentIndex((tabs.currentIndex() + by + tabs.count()) % tabs.count());
    };
    addShortcut(window, QKeySequence(QStringLiteral("Ctrl+Tab")), [step] { step(1); });
    addShortcut(window, QKeySequence(QStringLiteral("Ctrl+Shift+Tab")), [step] { step(-1); });
    // With Shift the Tab key is a key of its own on X11.
    addShortcut(window, QKeySequence(QStringLiteral("Ctrl+Shift+Backtab")), [step] { step(-1); });
}
