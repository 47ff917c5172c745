#pragma once

class QEditableComboBox;
class QFrame;

/// Fills a panel's frame with the combo of the scale list (scaleLabels(), the first row chosen), in which
/// another ratio may be typed.
QEditableComboBox *makeScaleCombo(QFrame *frame);
