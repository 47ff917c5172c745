#include "tests/support/files.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

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

QString partOf(const QString &output)
{
    const QFileInfo file(output);
    const QDir folder(file.absolutePath());
    for (const QString &name : folder.entryList(QDir::Dirs | QDir::Hidden)) {
        const QString part = folder.filePath(name + QStringLiteral("/new/") + file.fileName());
        if (name.startsWith(QLatin1Char('.') + file.fileName() + QStringLiteral(".part-"))
            && QFile::exists(part))
            return part;
    }
    return {};
}
