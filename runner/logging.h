#pragma once

#include <QLoggingCategory>

/// "quvo.runner": child processes, their outputs and what is handed to the desktop.
Q_DECLARE_LOGGING_CATEGORY(lcRunner)
