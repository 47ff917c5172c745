#include "dataset/pathencoding.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QRegularExpression>

QByteArray encodePath(const QString &path)
{
#ifdef Q_OS_WIN
    return path.toLocal8Bit();
#else
    return QFile::encodeName(path);
#endif
}

QString decodePath(const char *bytes)
{
#ifdef Q_OS_WIN
    return QString::fromLocal8Bit(bytes);
#else
    return QFile::decodeName(bytes);
#endif
}

bool isVirtualPath(const QString &path)
{
    return path.startsWith(QLatin1String("/vsi"));
}

QString dataSetName(const QString &typed, const QString &folder)
{
    static const QRegularExpression driverPrefix(QStringLiteral("^[A-Za-z][A-Za-z0-9_]+:"));
    const QFileInfo file(QDir(folder), typed);
    if (isVirtualPath(typed) || (!file.exists() && driverPrefix.match(typed).hasMatch()))
        return typed;
    return QDir::cleanPath(file.absoluteFilePath());
}
