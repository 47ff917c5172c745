#include "app/startup/console.h"

#include <QFile>

#include <cstdio>

void printOutput(const QString &text)
{
    std::fputs(text.toLocal8Bit().constData(), stdout);
    std::fflush(stdout);
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
