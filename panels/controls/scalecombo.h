#pragma once

#include <QStringList>

class QEditableComboBox;
class QFrame;

/// The rows of the scale list (panels/options/fragments) in the language in use.
QStringList scaleLabels();

/// Adds a combo of the scale list to a panel's empty frame. The first row is chosen; another ratio may be
/// typed. The combo belongs to the frame.
QEditableComboBox *makeScaleCombo(QFrame *frame);
