#pragma once

#include <QList>

class QWidget;

/// Makes the Tab key visit the controls of a window area by area. `areas`: widgets of the window in the wanted
/// order. Inside an area the order stays as it is; controls outside all of them come last.
void orderFocus(QWidget &window, const QList<QWidget *> &areas);
