// Feeds any bytes to the reader of the environment file.

#include "app/startup/environment.h"
#include "messages/inifile.h"
#include "tests/fuzz/fuzzing.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    const QuietLog quiet;
    qputenv("XDG_CONFIG_HOME", QFile::encodeName(fuzzFolder().path())); // not the user's own settings
    const QString path = fuzzFile(QStringLiteral("Tool_env.ini"), fuzzBytes(data, size));

    const IniFile file(path);
    require(file.get("QuvoDirectSettings", "NO_SUCH_KEY_HERE", "d") == "d", "a missing key has the default");
    for (const char *key : {"LANGUAGE", "INSTALL_DIR", "MESSAGES_DIR"}) {
        const QByteArray value = file.get("QuvoDirectSettings", key, "d");
        require(value == file.get("QUVODIRECTSETTINGS", QByteArray(key).toLower().constData(), "d"),
                "the case does not count");
        require(!value.contains('\0') && !value.contains('\n'), "a value is one line of text");
    }

    const Environment environment = readEnvironment(path.chopped(8)); // without "_env.ini"
    require(!environment.language.isEmpty() && !environment.installDir.isEmpty(),
            "a missing setting has a default");
    require(environment.messagesPath.startsWith(environment.installDir + QLatin1Char('/')),
            "the messages stand below the installation");
    for (const QByteArray &variable : gdalVariables(environment.installDir, "/bin"))
        require(variable.indexOf('=') > 0, "a variable has a name");
    return 0;
}
