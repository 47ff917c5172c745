#include "runner/logging.h"

Q_LOGGING_CATEGORY(lcRunner, "quvo.runner", QtInfoMsg)
