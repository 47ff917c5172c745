#include "messages/logging.h"

Q_LOGGING_CATEGORY(lcMessages, "quvo.messages", QtInfoMsg)
Q_LOGGING_CATEGORY(lcGdal, "quvo.dataset.gdal", QtInfoMsg)
Q_LOGGING_CATEGORY(lcStart, "quvo.start", QtInfoMsg)
Q_LOGGING_CATEGORY(lcRunner, "quvo.runner", QtInfoMsg)
