#pragma once

#include <QString>

/// A text that the user reads: the key under which the message dictionaries hold it, and the text that stands
/// where they hold none. Both are literals; the default text is UTF-8 and French but for a few words.
struct Label
{
    const char *key;
    const char *text;
};

/// The label's text in the language in use. For code that is no widget; a widget calls its own tr(text, key).
///
/// Values are put into a text that holds %1, %2 by one call of QString::arg with all of them: chained calls
/// would read a "%1" inside the first value as the next place.
QString labelText(const Label &label);

/// The text with a colon at its end; a text that ends in one is returned as it is.
QString withColon(const QString &text);
