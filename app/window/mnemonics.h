#pragma once

#include <QSet>
#include <QString>

class QWidget;

// The letters that, with Alt, use a control from the keyboard. Neither the forms nor the dictionaries hold
// them: they are chosen for the texts that a window shows, in whatever language.

/// The text with "&" before the letter that becomes its mnemonic, which joins `taken`: the first letter of a
/// word where one is free, else any free letter. Only letters from A to Z count, which each keyboard has.
/// `taken` holds lower case letters. A text without a free letter comes back unchanged. `text` has no mnemonic
/// yet; "&&" in it stands for "&".
QString withMnemonic(const QString &text, QSet<QChar> &taken);

/// The text without its mnemonic; "&&" stays.
QString withoutMnemonic(QString text);

/// Gives the visible buttons, boxes, tabs and labels with a buddy of a window their letters, in the order in
/// which the window was built. Each page of a tab widget has letters that differ from those around it; two
/// pages may share some.
void putMnemonics(QWidget &window);

/// Calls putMnemonics() for each window of the program when the window is shown, when its language changes and
/// when the Alt key is pressed. Menus get letters when they are shown. Called once, at the start.
void putMnemonicsEverywhere();
