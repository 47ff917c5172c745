#pragma once

#include <QByteArray>
#include <QString>

struct _dictionary_; // NOLINT(bugprone-reserved-identifier): iniparser's own name of its record

/// An ini file, read once by iniparser.
///
/// iniparser rejects the whole file for one line that is longer than about 1000 bytes, that is no ini line, or
/// that begins with a byte-order mark. A value that ends in a backslash continues on the next line. A file
/// without a single section is logged.
class IniFile
{
public:
    explicit IniFile(const QString &path);
    ~IniFile();
    IniFile(const IniFile &) = delete;
    IniFile &operator=(const IniFile &) = delete;

    /// The value of a key as it stands in the file, or the default when the key is absent. The case of A to Z
    /// in section and key does not count.
    QByteArray get(const char *section, const char *key, const char *defaultValue) const;

private:
    _dictionary_ *m_dictionary = nullptr;
};
