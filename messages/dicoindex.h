#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

// The message dictionaries on disk: a data file with the texts back to back, and an index of 40-byte records
// beside it.

/// How many bytes of a key the index holds, without its NUL.
constexpr std::size_t dicoKeyLength = 23;
constexpr std::size_t dicoRecordSize = 40;

/// What a message is; any other number means plain text.
enum DicoKind : std::int32_t
{
    DicoError = 1,
    DicoWarning = 2,
    DicoUsage = 4
};

/// One record of an index.
struct DicoRecord
{
    std::string key;         ///< at most 23 bytes
    std::int32_t offset = 0; ///< of the text in the data file, in bytes
    std::int32_t length = 0; ///< of the text, in bytes
    std::int32_t number = 0; ///< printed in front of errors and warnings
    std::int32_t kind = 0;   ///< see DicoKind
};

/// Reads an index. A part of a record at the end is ignored; a key that fills its 24 bytes is cut to 23.
std::vector<DicoRecord> parseDicoIndex(std::string_view bytes);

/// The record's 40 bytes, integers big-endian.
std::array<char, dicoRecordSize> dicoRecordBytes(const DicoRecord &record);

/// Language of a GEOLANGUE value: the suffix of its dictionary (".fr") and its number. A value that stands for
/// none, or in other letters than the table's, gets ".lc" and 10.
struct DicoLanguage
{
    const char *suffix;
    int number;
};
DicoLanguage dicoLanguage(std::string_view name);

/// The printf conversions of a text in their order ("%s%d" for "%s has %d"); "%%" is none.
std::string printfConversions(std::string_view text);

/// Whether printf may have the text as a format: no "%n", no width from the arguments, no conversion of great
/// width.
bool isSafeFormat(std::string_view text);
