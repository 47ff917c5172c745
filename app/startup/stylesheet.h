#pragma once

#include <QString>

/// The application's style sheet, from the built-in ones and the user's.
///
/// applicationSheet: what the application holds at start: empty, or "file:///" and the path of the sheet that
/// was given by "-stylesheet". The user's sheet then stands in the place of the dialog's own. A sheet that
/// cannot be read counts as empty.
QString composeStyleSheet(const QString &applicationSheet);
