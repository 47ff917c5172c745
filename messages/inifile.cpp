#include "messages/inifile.h"

#include "messages/logging.h"

#include <QFile>
#include <QFileInfo>

#include <iniparser.h>

#include <cstdarg>

namespace
{

int logFault(const char *format, ...)
{
    std::va_list arguments;
    va_start(arguments, format);
    qCWarning(lcMessages, "%s", qUtf8Printable(QString::vasprintf(format, arguments).trimmed()));
    va_end(arguments);
    return 0;
}

} // namespace

IniFile::IniFile(const QString &path)
{
    iniparser_set_error_callback(logFault);
    if (QFileInfo(path).isFile()) // reading a pipe or a device might never end
        m_dictionary = iniparser_load(QFile::encodeName(path).constData());
    if (!m_dictionary || iniparser_getnsec(m_dictionary) < 1)
        qCWarning(lcMessages, "%s gives no setting", qUtf8Printable(path));
}

IniFile::~IniFile()
{
    if (m_dictionary)
        iniparser_freedict(m_dictionary);
}

QByteArray IniFile::get(const char *section, const char *key, const char *defaultValue) const
{
    QByteArray name = QByteArray(section) + ':' + key;
    for (char &letter : name) {
        if (letter >= 'A' && letter <= 'Z')
            letter = static_cast<char>(letter - 'A' + 'a');
    }
    return m_dictionary ? iniparser_getstring(m_dictionary, name.constData(), defaultValue) : defaultValue;
}
