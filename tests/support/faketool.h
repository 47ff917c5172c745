#pragma once

#include <QString>
#include <QStringList>

/// Command line of the fake tool (tests/support/fake_tool.cpp) with the given words, each quoted.
inline QString fakeTool(const QStringList &words)
{
    QString command = QStringLiteral("\"%1\"").arg(QStringLiteral(QUVO_FAKE_TOOL));
    for (const QString &word : words)
        command += QStringLiteral(" \"") + word + QLatin1Char('"');
    return command;
}
