// Feeds any bytes to both splitters of command lines: as a command, and as a list of arguments, one a line,
// that are quoted and joined.

#include "runner/commandsplit.h"
#include "runner/quoting.h"
#include "tests/fuzz/fuzzing.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    const QString text = QString::fromUtf8(fuzzBytes(data, size));
    QStringList arguments = text.split(QLatin1Char('\n'));
    QStringList quoted;
    for (const QString &argument : arguments)
        quoted += quotedArgument(argument);
    const ProcessCommand split = splitProcessCommand(quoted.join(QLatin1Char(' ')));
    require(split.program == arguments.takeFirst(), "the program comes back");
    arguments.removeAll(QString()); // empty arguments are dropped
    require(split.arguments == arguments, "the arguments come back");

    const ProcessCommand any = splitProcessCommand(text);
    require(any.arguments.join(QString()).size() + any.program.size() <= text.size(), "nothing is added");
    QString program;
    QString rest;
    splitCommandLine(text, program, rest);
    require(text.contains(program) && text.endsWith(rest), "both parts come from the command");
    require(program != text || rest.isEmpty(), "a whole command has no arguments left");
    return 0;
}
