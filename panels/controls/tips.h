#pragma once

#include <QString>

class QWidget;

// The tooltip of a control consists of what its option means, which never changes, and of a remark on its
// state, which stands first.

void setTip(QWidget &control, const QString &meaning);

/// `remark` is why the control is off, or what its value means; empty: it has none.
void setTipRemark(QWidget &control, const QString &remark);

/// Gives a button that sets an option back to its default a name and a tooltip that tell which option it is:
/// "Default: sun azimuth". `option` is the text beside the option's control, with or without a colon.
void nameReset(QWidget &button, QString option);
