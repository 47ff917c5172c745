#pragma once

#include <QString>

class QWidget;

// The tooltip of a control consists of what its option means, which never changes, and of a remark on its
// state, which stands first.

void setTip(QWidget &control, const QString &meaning);

/// `remark` is why the control is off, or what its value means; empty: it has none.
void setTipRemark(QWidget &control, const QString &remark);
