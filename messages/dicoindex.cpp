#include "messages/dicoindex.h"

#include <algorithm>
#include <cstring>

namespace
{

std::int32_t bigEndian(std::string_view bytes)
{
    std::uint32_t value = 0;
    for (const char byte : bytes.substr(0, 4))
        value = value << 8 | static_cast<unsigned char>(byte);
    return static_cast<std::int32_t>(value);
}

void putBigEndian(char *place, std::int32_t number)
{
    const auto value = static_cast<std::uint32_t>(number);
    for (unsigned byte = 0; byte < 4; ++byte)
        place[byte] = static_cast<char>(value >> (24 - 8 * byte) & 0xFFu);
}

} // namespace

std::vector<DicoRecord> parseDicoIndex(std::string_view bytes)
{
    std::vector<DicoRecord> records;
    for (; bytes.size() >= dicoRecordSize; bytes.remove_prefix(dicoRecordSize)) {
        DicoRecord record;
        const std::string_view key = bytes.substr(0, dicoKeyLength);
        record.key = key.substr(0, key.find('\0'));
        record.offset = bigEndian(bytes.substr(24));
        record.length = bigEndian(bytes.substr(28));
        record.number = bigEndian(bytes.substr(32));
        record.kind = bigEndian(bytes.substr(36));
        records.push_back(record);
    }
    return records;
}

std::array<char, dicoRecordSize> dicoRecordBytes(const DicoRecord &record)
{
    std::array<char, dicoRecordSize> bytes{};
    std::memcpy(bytes.data(), record.key.data(), std::min(record.key.size(), dicoKeyLength));
    putBigEndian(bytes.data() + 24, record.offset);
    putBigEndian(bytes.data() + 28, record.length);
    putBigEndian(bytes.data() + 32, record.number);
    putBigEndian(bytes.data() + 36, record.kind);
    return bytes;
}

DicoLanguage dicoLanguage(std::string_view name)
{
    // Portuguese has no English name here and Turkish no two-letter one: kept so on purpose.
    struct Row
    {
        std::string_view name;
        DicoLanguage language;
    };
    static constexpr Row rows[] = {
        {"FRANCAIS", {".fr", 0}},  {"FRENCH", {".fr", 0}},
        {"FR", {".fr", 0}},        {"ANGLAIS", {".an", 1}},
        {"ENGLISH", {".an", 1}},   {"EN", {".an", 1}},
        {"ESPAGNOL", {".es", 2}},  {"SPANISH", {".es", 2}},
        {"ES", {".es", 2}},        {"PORTUGAIS", {".po", 3}},
        {"PO", {".po", 3}},        {"ALLEMAND", {".al", 4}},
        {"DE", {".al", 4}},        {"ITALIEN", {".it", 5}},
        {"IT", {".it", 5}},        {"INDONESIEN", {".in", 6}},
        {"IN", {".in", 6}},        {"CHINESE", {".ch", 7}},
        {"CH", {".ch", 7}},        {"CHINESE_CN", {".ch_cn", 12}},
        {"CH_CN", {".ch_cn", 12}}, {"RUSSIAN", {".ru", 8}},
        {"RU", {".ru", 8}},        {"JAPANESE", {".jp", 9}},
        {"JP", {".jp", 9}},        {"TURKISH", {".tr", 11}},
    };
    for (const Row &row : rows) {
        if (row.name == name)
            return row.language;
    }
    return {".lc", 10};
}

std::string printfConversions(std::string_view text)
{
    std::string found;
    for (std::size_t at = text.find('%'); at != std::string_view::npos; at = text.find('%', at)) {
        const std::size_t end = text.find_first_not_of("-+ #0123456789.*'I$hlLqjzt", at + 1);
        if (end == std::string_view::npos)
            return found + "%";
        if (text[end] != '%' || end != at + 1)
            found += '%' + std::string(text.substr(at + 1, end - at));
        at = end + 1;
    }
    return found;
}

bool isSafeFormat(std::string_view text)
{
    constexpr std::size_t mostDigits = 4;
    for (std::size_t at = text.find('%'); at != std::string_view::npos; at = text.find('%', at)) {
        const std::size_t end = text.find_first_not_of("-+ #0123456789.hlLqjzt", at + 1);
        if (end == std::string_view::npos || text[end] == 'n' || text[end] == '*' || text[end] == '$'
            || text[end] == '\'')
            return false;
        std::size_t digits = 0; // of the width or the precision that is being read
        for (const char c : text.substr(at + 1, end - at - 1)) {
            digits = c >= '0' && c <= '9' ? digits + 1 : 0;
            if (digits > mostDigits)
                return false;
        }
        at = end + 1;
    }
    return true;
}
