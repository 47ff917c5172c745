#pragma once

#include <QKeySequence>

#include <functional>

class QTabWidget;
class QWidget;

// Keys that work in a whole window, whichever control has the focus.

/// Calls `act` when the keys are pressed while `window` is the active one.
void addShortcut(QWidget &window, const QKeySequence &keys, std::function<void()> act);

/// Ctrl+Tab shows the next tab, Ctrl+Shift+Tab the previous tab. After the last tab comes the first one.
void addTabKeys(QWidget &window, QTabWidget &tabs);
