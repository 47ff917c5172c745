#pragma once

#include <QString>

/// A text for the user: its key in the message dictionaries, and the default text for a dictionary without that
/// key. Both are literals; the default text is UTF-8, and French but for a few words.
struct Label
{
    const char *key;
    const char *text;
};

/// The text of the label in the current language. For code outside widgets; a widget calls its own tr(text,
/// key).
///
/// Never empty, whatever the dictionary holds and the places are filled with: rules may return a problem's
/// sentence, and an empty text for "no problem".
///
/// If the text holds %1, %2 …, fill them by a single call of QString::arg with all values: chained calls would
/// also replace a "%1" that the first value holds.
QString labelText(const Label &label);

/// The text with a colon at its end; a text that ends in one is returned as it is.
QString withColon(const QString &text);
