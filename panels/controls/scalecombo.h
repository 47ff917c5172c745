#pragma once

#include "panels/controls/QEditableComboBox.h"

#include <QLineEdit>
#include <QStringList>

class QFrame;

/// The rows of the scale list (scaleRowCount in panels/options/fragments.h) in the current language.
QStringList scaleLabels();

/// Adds a combo box of the scale list to a panel's empty frame, which owns it. A ratio of one's own may be
/// typed; a comma in it becomes the point that the tools read.
QEditableComboBox *makeScaleCombo(QFrame *frame);

/// Shows a sentence below the combo box, or hides it when the sentence is empty.
void showScaleNote(QEditableComboBox &combo, const QString &note);

/// Shows below the combo box what a chosen ratio means for the DEM, and a link that chooses the first row of
/// the list instead. Shows the note alone where there is no hint.
void showScaleHint(QEditableComboBox &combo, const QString &note, const QString &hint);

/// Shows a row of the list, or for row -1 the typed ratio. Typing changes no row: no signal follows then.
void showScale(QEditableComboBox &combo, int scaleIndex, const QString &scaleText);

/// Calls the panel's slots slot_onScaleValueChanged() and slot_onOptionsChanged() when the user changes the
/// ratio.
template <class Panel> void connectScale(QEditableComboBox *combo, Panel *panel)
{
    const auto indexChanged = qOverload<int>(&QComboBox::currentIndexChanged);
    QObject::connect(combo, indexChanged, panel, &Panel::slot_onScaleValueChanged);
    QObject::connect(combo, indexChanged, panel, &Panel::slot_onOptionsChanged);
    // Typing does not change the index, and choosing the current row again after typing need not either.
    QObject::connect(combo->lineEdit(), &QLineEdit::textEdited, panel, &Panel::slot_onScaleValueChanged);
    QObject::connect(combo->lineEdit(), &QLineEdit::textEdited, panel, &Panel::slot_onOptionsChanged);
    QObject::connect(combo, &QEditableComboBox::textReset, panel, &Panel::slot_onOptionsChanged);
}
