#include "tests/support/files.h"

#include <QFile>

QByteArray bytesOf(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

QString writeFile(const QString &path, const QByteArray &bytes)
{
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly | QIODevice::Truncate) || file.write(bytes) != bytes.size()
        || !file.flush())
        qFatal("%s cannot be written", qUtf8Printable(path));
    return path;
}

QString writeScript(const QString &path, const QByteArray &commands)
{
    writeFile(path, "#!/bin/sh\n" + commands);
    if (!QFile::setPermissions(path, QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner))
        qFatal("%s cannot be made executable", qUtf8Printable(path));
    return path;
}
