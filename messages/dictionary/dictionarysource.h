#pragma once

#include "messages/dicoindex.h"

#include <string>
#include <string_view>
#include <vector>

// The source of a dictionary is a UTF-8 text with one message per line:
//
//   # a comment
//   MESS_HEURES = heure(s)
//   AVER_OUV_RDONLY (warning 1) = fichier %s ouvert en lecture seule
//
// In a text "\n" stands for a line feed and "\\" for a backslash. Blanks around the text are dropped.

/// One message of a source.
struct DictionaryEntry
{
    std::string key;
    std::string text;
    int number = 0;
    int kind = 0; ///< see DicoKind; 0 for plain text
    int line = 0; ///< line number in the source, from 1
};

/// The messages of a source, and its faults, each as "line: what is wrong".
struct DictionarySource
{
    std::vector<DictionaryEntry> entries;
    std::vector<std::string> faults;
};

/// Reads a source. Faults are: a line that is no message, a key that occurs twice, a key of more than 23 bytes
/// (code looks a longer key up by its first 23), and a "%n".
DictionarySource parseDictionary(std::string_view source);

/// Compares two languages. A fault is a key of both whose %1 to %9 places differ or, in a text without such
/// places, whose printf conversions differ.
std::vector<std::string> compareDictionaries(const DictionarySource &one, const DictionarySource &other);

/// The %1 to %9 places of a Qt text, each once, in ascending order.
std::string qtPlaces(std::string_view text);

/// The two files of a dictionary.
struct CompiledDictionary
{
    std::string data;
    std::string index;
};

/// Compiles a source that has no faults.
CompiledDictionary compileDictionary(const DictionarySource &source);
