#include "app/startup/environment.h"

#include "dataset/pathencoding.h"
#include "messages/inifile.h"
#include "messages/languages.h"

#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>
#include <QLocale>
#include <QSettings>

#include <cpl_conv.h>

#include <cstdlib>
#include <utility>

#ifdef Q_OS_UNIX
#include <clocale>
#include <langinfo.h>
#endif

namespace
{

constexpr char direct[] = "QuvoDirectSettings";
constexpr char registered[] = "QuvoRegisterKeys";

/// The C library keeps the pointer, not a copy: the text lives as long as the process.
void exportVariable(const QByteArray &assignment)
{
#ifdef Q_OS_WIN
    _putenv(qstrdup(assignment.constData()));
#else
    ::putenv(qstrdup(assignment.constData()));
#endif
}

/// The value that the user's settings hold under the path "application/group/key"; the default for a path
/// without a key.
QString registeredValue(const QString &keyPath, const QString &defaultValue)
{
    const QString key = keyPath.section(QLatin1Char('/'), 1);
    if (key.isEmpty())
        return defaultValue;
    const QSettings settings(QStringLiteral("KARVEX"), keyPath.section(QLatin1Char('/'), 0, 0));
    const QString value = settings.value(key).toString();
    return value.isEmpty() ? defaultValue : value;
}

/// The value of `key` in the environment file. Where it is empty, the value of the settings key that the file
/// names under `registerKey`; without that, the default.
QString lookUp(const IniFile &file, const char *key, const char *registerKey, const QString &defaultValue)
{
    const QString value = decodePath(file.get(direct, key, "").constData());
    if (!value.isEmpty())
        return value;
    const QString keyPath = decodePath(file.get(registered, registerKey, "").constData());
    return keyPath.isEmpty() ? defaultValue : registeredValue(keyPath, defaultValue);
}

/// Whether variables that name the folder are exported.
bool isExported(const QString &folder)
{
#ifdef Q_OS_WIN
    Q_UNUSED(folder)
    return true;
#else
    return QFileInfo(folder).isDir();
#endif
}

QString below(const QString &folder, const QString &name)
{
    return QDir::toNativeSeparators(folder) + QDir::separator() + name;
}

} // namespace

void useUtf8Paths()
{
#ifdef Q_OS_UNIX
    std::setlocale(LC_CTYPE, "");
    if (qstrcmp(nl_langinfo(CODESET), "ANSI_X3.4-1968") != 0)
        return;
    qputenv(qEnvironmentVariableIsEmpty("LC_ALL") ? "LC_CTYPE" : "LC_ALL", "C.UTF-8");
    std::setlocale(LC_CTYPE, "");
#endif
}

void useOffscreenPlatform()
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
}

QString environmentFile(const QString &executable)
{
    QString stem = executable;
    if (stem.endsWith(QLatin1String(".exe"), Qt::CaseInsensitive))
        stem.chop(4);
    const QString own = stem + QStringLiteral("_env.ini");
    if (QFileInfo::exists(own))
        return own;
    return QFileInfo(executable).absolutePath() + QDir::separator() + QStringLiteral("setup_env.ini");
}

QString systemLanguage(const QString &messagesPath)
{
    const QLocale system = QLocale::system();
    QString name = QStringLiteral("ENGLISH");
    for (const Language &language : availableLanguages(messagesPath)) {
        const QLocale locale(language.locale);
        // Chinese is written in two ways.
        if (locale.language() == system.language() && locale.script() == system.script())
            name = language.name;
    }
    return name;
}

Environment readEnvironment(const QString &executable)
{
    Environment environment;
    environment.installDir = QFileInfo(executable).absolutePath();
    QString messages = QStringLiteral("MESSAGES");

    const QString path = environmentFile(executable);
    if (QFileInfo::exists(path)) {
        const IniFile file(path);
        environment.language = lookUp(file, "LANGUAGE", "QuvoRegKey_Language", QString());
        environment.installDir = lookUp(file, "INSTALL_DIR", "QuvoRegKey_InstallDir", environment.installDir);
        // The file may hold QuvoRegKey_MessagesDir. Its value is not used: kept so on purpose.
        const QString messagesDir = decodePath(file.get(direct, "MESSAGES_DIR", "").constData());
        if (!messagesDir.isEmpty())
            messages = messagesDir;
    }
    environment.messagesPath = environment.installDir + QDir::separator() + messages;
    if (environment.language.isEmpty())
        environment.language = systemLanguage(environment.messagesPath);
    return environment;
}

QString driverPath(const QString &installDir)
{
    const QString driver = below(installDir, QStringLiteral("driver"));
    if (!isExported(driver))
        return {};
    return driver + QDir::listSeparator() + driver + QDir::separator() + QStringLiteral("qt4");
}

QVector<QByteArray> gdalVariables(const QString &installDir, const QByteArray &searchPath)
{
    // A separator before an empty search path would add an empty element, which means the current directory.
    const QByteArray separator(searchPath.isEmpty() ? 0 : 1, QDir::listSeparator().toLatin1());
    QVector<QByteArray> variables;
    variables += "PATH=" + encodePath(QDir::toNativeSeparators(installDir)) + separator + searchPath;
    const QByteArray drivers = encodePath(driverPath(installDir));
    if (!drivers.isEmpty()) {
        variables += "GDAL_DRIVER_PATH=" + drivers;
        variables += "OGR_DRIVER_PATH=" + drivers;
    }
    variables += "GDAL_FILENAME_IS_UTF8=NO";
    variables += "SHAPE_ENCODING="; // shapefile attributes are not recoded
    const QString data = below(installDir, QStringLiteral("data"));
    if (isExported(data))
        variables += "GDAL_DATA=" + encodePath(data);
    return variables;
}

void exportInstallDir(const QString &installDir)
{
    exportVariable("QUVO_BIN_HOME=" + encodePath(installDir));
}

/// Time limits for servers that do not answer, in seconds, for GDAL in this program and in the tools.
constexpr std::pair<const char *, const char *> timeLimits[] = {
    {"GDAL_HTTP_CONNECTTIMEOUT", "20"}, // until the connection stands
    {"GDAL_HTTP_LOW_SPEED_TIME", "60"}, // with less than the next limit in bytes a second
    {"GDAL_HTTP_LOW_SPEED_LIMIT", "1"},
    {"PGCONNECT_TIMEOUT", "20"},
};

void exportGdalVariables(const QString &installDir)
{
    for (const auto &[variable, seconds] : timeLimits) {
        if (!qEnvironmentVariableIsSet(variable))
            qputenv(variable, seconds);
    }
    for (const QByteArray &variable : gdalVariables(installDir, qgetenv("PATH")))
        exportVariable(variable);
    CPLSetConfigOption("SHAPE_ENCODING", ""); // Windows drops an empty variable
}

void exportWindowVariables(bool hasPlainRows)
{
    if (!qEnvironmentVariableIsSet("GDAL_CACHEMAX"))
        qputenv("GDAL_CACHEMAX",
                "256"); // MB; windows are read once, and a large cache costs more than it saves
    if (hasPlainRows && !qEnvironmentVariableIsSet("GTIFF_DIRECT_IO"))
        qputenv("GTIFF_DIRECT_IO", "YES");
}

void exportMessageVariables(const Environment &environment)
{
    if (!qEnvironmentVariableIsSet("LUMAGRAF_HOME"))
        exportVariable("LUMAGRAF_HOME=" + encodePath(environment.installDir));
    if (!qEnvironmentVariableIsSet("GEOLANGUE"))
        exportVariable("GEOLANGUE=" + environment.language.toLocal8Bit());
}

void exportLanguage(const QString &before, const QString &now)
{
    if (qgetenv("GEOLANGUE") == before.toLocal8Bit())
        exportVariable("GEOLANGUE=" + now.toLocal8Bit());
}
