#include "app/startup/startupoptions.h"

#include "dataset/pathencoding.h"

#include <cpl_string.h>

namespace
{

constexpr char keepOption[] = "-keep_startingdir";
constexpr char dtmOption[] = "-startingdtm";

/// The options as a name=value list of GDAL's, under their own names.
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
        }
    }
    return options;
}

} // namespace

bool asksForStyleSheet(const QStringList &arguments)
{
    return arguments.indexOf(QStringLiteral("-stylesheet"), 1) >= 0;
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
