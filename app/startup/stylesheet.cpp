#include "app/startup/stylesheet.h"

#include <QFile>

namespace
{

QString readSheet(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? QString::fromLatin1(file.readAll()) : QString();
}

} // namespace

QString composeStyleSheet(const QString &applicationSheet)
{
    const QString scheme = QStringLiteral("file:///");
    QString middle = QStringLiteral(":/QuvoGdalUtilities/qss/QuvoGdalUtilities.qss");
    if (!applicationSheet.isEmpty())
        middle = applicationSheet.mid(applicationSheet.indexOf(scheme) + scheme.size());
    return QStringLiteral("%1\n\n%2\n\n%3")
        .arg(readSheet(QStringLiteral(":/QuvoGdalUtilities/qss/global.qss")), readSheet(middle),
             readSheet(QStringLiteral(":/qss/quvo_geotools_qt4.qss")));
}
