#pragma once

#include <QByteArray>
#include <QString>

struct _dictionary_; // NOLINT(bugprone-reserved-identifier): iniparser's own name of its record

/// An ini file, read once by iniparser.
///
/// iniparser gives a whole file up for one line that is longer than about 1000 bytes, that is no ini line, or
/// that begins with a byte-order mark; a value that ends in a backslash goes on in the next line. A file that
/// gives nothing is logged.
class IniFile
{
public:
    explicit IniFile(const QString &path);
    ~IniFile();
    IniFile(const IniFile &) = delete;
    IniFile &operator=(const IniFile &) = delete;

    /// The value of a key as the file's bytes; the default where the key is absent. Letters A to Z in section
    /// and key count as a to z.
    QByteArray get(const char *section, const char *key, const char *defaultValue) const;

private:
    _dictionary_ *m_dictionary;
};
