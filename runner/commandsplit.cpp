#include "runner/commandsplit.h"

#include <QProcess>

void splitCommandLine(const QString &command, QString &program, QString &arguments)
{
    const QLatin1Char quote('"');
    program = command;
    arguments.clear();
    if (!command.contains(quote))
        return;

    if (command.startsWith(quote)) {
        const auto closing = command.indexOf(quote, 1);
        if (closing < 0)
            return;
        program = command.mid(1, closing - 1);
        arguments = command.mid(closing + 2);
    } else {
        const auto blank = command.indexOf(QLatin1Char(' '));
        if (blank < 0)
            return;
        program = command.left(blank);
        arguments = command.mid(blank + 1);
    }
}

ProcessCommand splitProcessCommand(const QString &command)
{
    ProcessCommand result;
    result.arguments = QProcess::splitCommand(command);
    const QString start = command.trimmed();
    const bool emptyProgram = start == QLatin1String("\"\"") || start.startsWith(QLatin1String("\"\" "));
    if (!emptyProgram && !result.arguments.isEmpty())
        result.program = result.arguments.takeFirst();
    return result;
}
