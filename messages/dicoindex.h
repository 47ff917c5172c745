#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

// The files of a message dictionary: a data file with the texts one after another, and an index of 40-byte
// records.

/// Longest key in the index, in bytes, without its NUL.
constexpr std::size_t dicoKeyLength = 23;
constexpr std::size_t dicoRecordSize = 40;

/// The kind of a message; any other number means plain text.
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
    std::int32_t number = 0; ///< printed before errors and warnings
    std::int32_t kind = 0;   ///< see DicoKind
};

/// Reads an index. An incomplete record at the end is ignored; a key without a NUL is cut to 23 bytes.
std::vector<DicoRecord> parseDicoIndex(std::string_view bytes);

/// Formats a record as 40 bytes, with big-endian integers.
std::array<char, dicoRecordSize> dicoRecordBytes(const DicoRecord &record);

/// The language that a value of GEOLANGUE names: the suffix of its dictionary (".fr") and its number.
struct DicoLanguage
{
    const char *suffix;
    int number;
};

/// The language of a name, which must be written as in the table of the function. Any other name gives ".lc"
/// and 10.
DicoLanguage dicoLanguage(std::string_view name);

/// The printf conversions of a text in their order: "%s%d" for "%s has %d". "%%" is not a conversion.
std::string printfConversions(std::string_view text);

/// Whether the text may be passed to printf as a format: without "%n", without a width or a position taken from
/// the arguments, and without a conversion of more than 4 digits.
bool isSafeFormat(std::string_view text);
