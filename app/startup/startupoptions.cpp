#include "app/startup/startupoptions.h"

#include "dataset/pathencoding.h"

#include <QFile>

#include <cpl_string.h>

namespace
{

constexpr char keepOption[] = "-keep_startingdir";
constexpr char dtmOption[] = "-startingdtm";

/// The options as a name=value list of GDAL.
CPLStringList collectOptions(const QStringList &arguments)
{
    CPLStringList options;
    for (int index = 1; index < arguments.size(); ++index) {
        const QString &argument = arguments.at(index);
        if (argument == QLatin1String(keepOption)) {
            options.SetNameValue(keepOption, "TRUE");
        } else if (argument == QLatin1String(dtmOption) && index + 1 < arguments.size()) {
            ++index;
            options.SetNameValue(dtmOption, encodePath(arguments.at(index)).constData());
        } else if (!argument.isEmpty() && !argument.startsWith(QLatin1Char('-'))
                   && !options.FetchNameValue(dtmOption)) {
            options.SetNameValue(dtmOption, encodePath(argument).constData());
        }
    }
    return options;
}

QString readSheet(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? QString::fromLatin1(file.readAll()) : QString();
}

} // namespace

bool asksForStyleSheet(const QStringList &arguments)
{
    return arguments.indexOf(QStringLiteral("-stylesheet"), 1) >= 0;
}

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

StartupOptions readStartupOptions(const QStringList &arguments)
{
    const CPLStringList list = collectOptions(arguments);
    StartupOptions options;
    options.any = list.Count() > 0;
    options.keepStartingDir = list.FetchBool(keepOption, false);
    options.startingDtm = decodePath(list.FetchNameValueDef(dtmOption, ""));
    return options;
}
