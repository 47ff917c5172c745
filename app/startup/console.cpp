#include "app/startup/console.h"

#include <QFile>

#include <cstdio>

bool printOutput(const QString &text)
{
    std::fputs(text.toLocal8Bit().constData(), stdout);
    return std::fflush(stdout) == 0 && std::ferror(stdout) == 0;
}

void printError(const QString &text)
{
    if (text.isEmpty())
        return;
    const bool ended = text.endsWith(QLatin1Char('\n'));
    std::fprintf(stderr, "%s%s", text.toLocal8Bit().constData(), ended ? "" : "\n");
    std::fflush(stderr);
}

QByteArray readInput(qint64 most)
{
    QFile input;
    return input.open(stdin, QIODevice::ReadOnly) ? input.read(most) : QByteArray();
}
