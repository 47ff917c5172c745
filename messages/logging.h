#pragma once

#include <QLoggingCategory>

/// "quvo.messages": dictionaries, languages and ini files.
Q_DECLARE_LOGGING_CATEGORY(lcMessages)
