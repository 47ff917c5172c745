#include "messages/dictionary/dictionarysource.h"

#include <algorithm>
#include <map>

namespace
{

std::string trimmed(std::string_view text)
{
    const auto begin = text.find_first_not_of(" \t\r");
    if (begin == std::string_view::npos)
        return {};
    return std::string(text.substr(begin, text.find_last_not_of(" \t\r") - begin + 1));
}

std::string unescaped(const std::string &text)
{
    std::string result;
    for (std::size_t at = 0; at < text.size(); ++at) {
        if (text[at] == '\\' && at + 1 < text.size()) {
            ++at;
            result += text[at] == 'n' ? '\n' : text[at];
        } else {
            result += text[at];
        }
    }
    return result;
}

/// Moves "(warning 12)" from the end of the text before the equals sign into the entry; false when it is
/// malformed.
bool extractKind(std::string &head, DictionaryEntry &entry)
{
    if (head.empty() || head.back() != ')')
        return true;
    const auto open = head.rfind('(');
    const auto blank = head.find(' ', open == std::string::npos ? 0 : open);
    if (open == std::string::npos || blank == std::string::npos)
        return false;
    static const std::map<std::string, int> kinds{
        {"error", DicoError}, {"warning", DicoWarning}, {"usage", DicoUsage}};
    const auto kind = kinds.find(head.substr(open + 1, blank - open - 1));
    const std::string number = head.substr(blank + 1, head.size() - blank - 2);
    if (kind == kinds.end() || number.empty() || number.size() > 6
        || number.find_first_not_of("0123456789") != std::string::npos)
        return false;
    entry.kind = kind->second;
    entry.number = std::stoi(number);
    head = trimmed(head.substr(0, open));
    return true;
}

/// Reads one line. Returns what is wrong with it, or an empty text.
std::string readLine(const std::string &line, DictionaryEntry &entry)
{
    const auto equals = line.find(" =");
    std::string head = trimmed(line.substr(0, equals));
    if (equals == std::string::npos || head.empty() || !extractKind(head, entry))
        return "not a message: " + line;
    entry.key = head;
    entry.text = unescaped(trimmed(std::string_view(line).substr(equals + 2)));
    if (entry.key.size() > dicoKeyLength)
        return "the key " + entry.key + " is longer than 23 bytes";
    if (printfConversions(entry.text).find('n') != std::string::npos)
        return entry.key + " holds %n";
    return {};
}

} // namespace

DictionarySource parseDictionary(std::string_view text)
{
    DictionarySource source;
    std::map<std::string, int> lines;
    int number = 0;
    while (!text.empty()) {
        ++number;
        const auto end = text.find('\n');
        const std::string line = trimmed(text.substr(0, end));
        text.remove_prefix(end == std::string_view::npos ? text.size() : end + 1);
        if (line.empty() || line.front() == '#')
            continue;
        DictionaryEntry entry;
        entry.line = number;
        std::string fault = readLine(line, entry);
        if (fault.empty() && !lines.emplace(entry.key, number).second)
            fault = entry.key + " stands already in line " + std::to_string(lines.at(entry.key));
        if (fault.empty())
            source.entries.push_back(entry);
        else
            source.faults.push_back(std::to_string(number) + ": " + fault);
    }
    return source;
}

std::string qtPlaces(std::string_view text)
{
    std::string places;
    for (char digit = '1'; digit <= '9'; ++digit) {
        if (text.find(std::string("%") + digit) != std::string_view::npos)
            places += std::string("%") + digit;
    }
    return places;
}

std::vector<std::string> compareDictionaries(const DictionarySource &one, const DictionarySource &other)
{
    std::vector<std::string> faults;
    for (const DictionaryEntry &entry : one.entries) {
        const auto twin =
            std::find_if(other.entries.begin(), other.entries.end(),
                         [&](const DictionaryEntry &candidate) { return candidate.key == entry.key; });
        if (twin != other.entries.end()
            && (qtPlaces(entry.text) != qtPlaces(twin->text)
                || (qtPlaces(entry.text).empty()
                    && printfConversions(entry.text) != printfConversions(twin->text))))
            faults.push_back(entry.key + " has other places in the other language");
    }
    return faults;
}

CompiledDictionary compileDictionary(const DictionarySource &source)
{
    CompiledDictionary compiled;
    for (const DictionaryEntry &entry : source.entries) {
        const DicoRecord record{entry.key, static_cast<std::int32_t>(compiled.data.size()),
                                static_cast<std::int32_t>(entry.text.size()), entry.number, entry.kind};
        const auto bytes = dicoRecordBytes(record);
        compiled.index.append(bytes.begin(), bytes.end());
        compiled.data += entry.text;
    }
    return compiled;
}
