#pragma once

#include <QString>

/// The text as one argument of a tool's command line, in double quotes; a double quote inside it is written
/// three times, which is how a command line is split (runner/commandsplit.h). Every path and name that enters a
/// command comes through here.
QString quotedArgument(const QString &text);
