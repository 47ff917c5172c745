#include "messages/logging.h"

Q_LOGGING_CATEGORY(lcMessages, "quvo.messages", QtInfoMsg)
