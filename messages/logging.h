#pragma once

#include <QLoggingCategory>

// The program's log categories. Each shows information, warnings and errors; QT_LOGGING_RULES turns the debug
// messages on.

/// "quvo.messages": dictionaries, languages and ini files.
Q_DECLARE_LOGGING_CATEGORY(lcMessages)

/// "quvo.dataset.gdal": what GDAL reports in this process.
Q_DECLARE_LOGGING_CATEGORY(lcGdal)

/// "quvo.start": the start of the window; bench/start.py reads it.
Q_DECLARE_LOGGING_CATEGORY(lcStart)

/// "quvo.runner": child processes, the deletion of their outputs, and calls of the desktop.
Q_DECLARE_LOGGING_CATEGORY(lcRunner)
