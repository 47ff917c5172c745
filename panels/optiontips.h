#pragma once

#include "panels/options/processoptions.h"

#include <QString>

class optionsWidget;

/// The tooltip of an option: its meaning as a sentence, range and default, and the argument that passes it to
/// the tool. `field` is the option's row in describeOptions(); its range and default are left out where
/// `meaning`, which then replaces that of the row, is given. `argument` may be empty: the tool does not know
/// the option.
QString optionTip(const FieldDescription &field, const QString &argument, const QString &meaning);

/// Gives the controls of a panel their tooltips, in the language in use. `defaults` are the options of the new
/// panel.
void setOptionTips(const optionsWidget &panel, const ProcessOptions &defaults);
