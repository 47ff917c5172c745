#pragma once

#include <QProcessEnvironment>
#include <QString>
#include <QStringList>

/// How a program ended.
struct Ended
{
    int code = -1; ///< exit code; -1 when it crashed or could not be started
    QString out;   ///< standard output
    QString error; ///< standard error
};

/// Runs a program and waits up to a minute for its end.
Ended runProgram(const QString &program, const QStringList &arguments,
                 const QProcessEnvironment &environment = QProcessEnvironment::systemEnvironment());
