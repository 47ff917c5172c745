#pragma once

#include "messages/dicoindex.h"

#include <string>
#include <string_view>
#include <vector>

// The source of a dictionary, a text in UTF-8 with one message a line:
//
//   # a comment
//   MESS_HEURES = heure(s)
//   AVER_OUV_RDONLY (warning 1) = fichier %s ouvert en lecture seule
//
// "\n" in a text is a line feed, "\\" a backslash. Blanks around the text are dropped.

/// One message of a source.
struct DictionaryEntry
{
    std::string key;
    std::string text;
    int number = 0;
    int kind = 0; ///< see DicoKind; 0 for plain text
    int line = 0; ///< in the source, from 1
};

/// What was read, and every fault as "line: what".
struct DictionarySource
{
    std::vector<DictionaryEntry> entries;
    std::vector<std::string> faults;
};

/// Reads a source. Faults: a line that is no message, a key twice, a key longer than 23 bytes (a longer one in
/// the code is looked up by its first 23), a "%n".
DictionarySource parseDictionary(std::string_view source);

/// Faults between two languages: a key of both whose printf conversions or %1 places differ.
std::vector<std::string> compareDictionaries(const DictionarySource &one, const DictionarySource &other);

/// The %1 to %9 places of a Qt text, each once, in ascending order.
std::string qtPlaces(std::string_view text);

/// The two files of a dictionary.
struct CompiledDictionary
{
    std::string data;
    std::string index;
};
CompiledDictionary compileDictionary(const DictionarySource &source);
