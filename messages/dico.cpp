#include "messages/dico.h"

#include "messages/dicoindex.h"

#include <algorithm>
#include <cerrno>
#include <cstdarg>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <optional>
#include <string>
#include <sys/stat.h>
#include <vector>

#ifdef _WIN32
#include <io.h>
#else
#include <unistd.h>
#endif

namespace
{

struct DicoFile
{
    char dataPath[1024];
    char indexPath[1024];
    std::vector<DicoRecord> records;
    std::int32_t recordCount;
    std::int32_t loaded; ///< 0 until the index has been read
};

/// The state of these functions, for the whole process.
struct Dico
{
    std::vector<DicoFile> files; ///< that of the language, then the added ones; empty before dico_init()
    std::string errorPrefix;
    std::string warningPrefix;
    std::string usagePrefix;
    std::FILE *stream = nullptr;
    std::int32_t exitOnError = 0;
    void (*callback)(const char *) = nullptr;
    int language = 10; ///< recorded, never read
};

Dico dico;

[[noreturn]] void giveUp(const char *format, const char *text)
{
    std::printf(format, text);
    std::fflush(stdout);
    std::exit(0);
}

bool isReadable(const std::string &path)
{
#ifdef _WIN32
    return _access(path.c_str(), 4) == 0;
#else
    return access(path.c_str(), R_OK) == 0;
#endif
}

/// The dictionary of the language, or why there is none.
struct LanguageFile
{
    std::string dataPath;
    int language = 0;
    std::string problem; ///< the line that is printed; empty where the dictionary was found
};

LanguageFile findLanguageFile()
{
    const char *variable = std::getenv("GEOLANGUE");
    const std::string name = variable ? variable : "DEFAULT";
    const DicoLanguage language = variable ? dicoLanguage(name) : DicoLanguage{".lc", 10};
    LanguageFile found;
    found.language = language.number;
    const char *home = std::getenv("LUMAGRAF_HOME");
    if (!home) {
        found.problem = "ERROR : LUMAGRAF_HOME undefined !!!\n";
        return found;
    }
    const std::string stem = std::string(home) + "/MESSAGES/geodico";
    found.dataPath = stem + language.suffix;
    if (isReadable(found.dataPath) && isReadable(found.dataPath + ".idx"))
        return found;
    found.dataPath = stem + ".lc";
    if (name == "DEFAULT")
        found.problem = "ERROR : no language file for : DEFAULT\n";
    // One of both files is enough here, whereas the language needs both: kept so on purpose.
    else if (!isReadable(found.dataPath) && !isReadable(found.dataPath + ".idx"))
        found.problem = "ERROR : no language file for : " + name + " and DEFAULT\n";
    return found;
}

/// The data file or its index, whichever cannot be read; nothing where both can. A path may be empty.
std::optional<std::string> missingFile(const std::string &dataPath)
{
    for (const std::string &needed : {dataPath, dataPath + ".idx"}) {
        if (!isReadable(needed))
            return needed;
    }
    return std::nullopt;
}

std::vector<std::string> listedFiles(const char *list)
{
    std::vector<std::string> files;
    std::string rest = list;
    while (!rest.empty()) {
        const auto end = rest.find(';');
        files.push_back(rest.substr(0, std::min(end, sizeof DicoFile::dataPath - 1)));
        rest = end == std::string::npos ? std::string() : rest.substr(end + 1);
    }
    return files;
}

void append(const std::string &dataPath, const std::string &indexPath)
{
    DicoFile file{};
    std::snprintf(file.dataPath, sizeof file.dataPath, "%s", dataPath.c_str());
    std::snprintf(file.indexPath, sizeof file.indexPath, "%s", indexPath.c_str());
    dico.files.push_back(file);
}

bool isRegular(const struct stat &status)
{
    return (status.st_mode & S_IFMT) == S_IFREG; // reading a pipe might never end
}

void load(DicoFile &file)
{
    file.loaded = 1; // also after a failure, so that it is printed once
    struct stat status
    { };
    if (stat(file.indexPath, &status) != 0) {
        std::printf("ERROR : could not stat %s\n", file.indexPath);
        std::perror("stat");
        return;
    }
    constexpr auto largestIndex = 64L * 1024 * 1024;
    std::string bytes(static_cast<std::size_t>(std::min<long long>(status.st_size, largestIndex)), '\0');
    if (std::FILE *index = isRegular(status) ? std::fopen(file.indexPath, "rb") : nullptr) {
        const std::size_t read = std::fread(bytes.data(), 1, bytes.size(), index);
        std::fclose(index);
        if (static_cast<long long>(read) < status.st_size)
            std::printf("ERROR : could not read %s\n", file.indexPath);
        bytes.resize(read);
    } else {
        std::printf("ERROR : could not read %s\n", file.indexPath);
        bytes.clear();
    }
    file.records = parseDicoIndex(bytes);
    file.recordCount = static_cast<std::int32_t>(file.records.size());
}

/// The text of a record; cut where the record reaches outside the data file.
std::string readText(const DicoFile &file, const DicoRecord &record)
{
    std::string text;
    struct stat status
    { };
    if (stat(file.dataPath, &status) != 0 || !isRegular(status) || record.offset < 0 || record.length <= 0
        || record.offset >= status.st_size)
        return text;
    std::FILE *data = std::fopen(file.dataPath, "rb");
    if (!data)
        return text;
    const auto rest = static_cast<std::size_t>(status.st_size - record.offset);
    text.resize(std::min(static_cast<std::size_t>(record.length), rest));
    if (std::fseek(data, record.offset, SEEK_SET) != 0)
        text.clear();
    text.resize(std::fread(text.data(), 1, text.size(), data));
    std::fclose(data);
    text.resize(std::min(text.find('\0'), text.size())); // printf stops at a NUL
    return text;
}

void fetchPrefixes(const DicoFile &file)
{
    for (const DicoRecord &record : file.records) {
        if (record.key == "ERREUR")
            dico.errorPrefix = readText(file, record);
        else if (record.key == "AVERTISSEMENT")
            dico.warningPrefix = readText(file, record);
        else if (record.key == "USAGE")
            dico.usagePrefix = readText(file, record);
    }
}

std::string withPrefix(const DicoRecord &record, const std::string &text)
{
    const std::string numbered = " " + std::to_string(record.number) + " : " + text;
    switch (record.kind) {
    case DicoError:
        return dico.errorPrefix + numbered;
    case DicoWarning:
        return dico.warningPrefix + numbered;
    case DicoUsage:
        return dico.usagePrefix + "\n" + text + "\n";
    default:
        return text;
    }
}

void print(const std::string &message)
{
    if (dico.stream) {
        std::fprintf(dico.stream, "%s\n", message.c_str());
        std::fflush(dico.stream);
    }
    if (dico.exitOnError == 1 && dico_is_error(message.c_str()))
        std::exit(-1);
    if (dico.callback)
        dico.callback(message.c_str());
}

void prepare()
{
    if (dico.files.empty())
        dico_init();
    if (!dico.files.front().loaded) {
        load(dico.files.front());
        fetchPrefixes(dico.files.front());
    }
}

/// Converts ASCII letters alone, whatever the locale.
char capital(char letter)
{
    return letter >= 'a' && letter <= 'z' ? static_cast<char>(letter - 'a' + 'A') : letter;
}

} // namespace

void dico_init(void)
{
    const LanguageFile found = findLanguageFile();
    if (!found.problem.empty())
        giveUp("%s", found.problem.c_str());
    dico.language = found.language;
    dico.files.clear();
    append(found.dataPath, found.dataPath + ".idx");
    dico.stream = stdout;
    dico.exitOnError = 0;
    dico.callback = nullptr;
    if (const char *list = std::getenv("MON_DICO"))
        dico_add_list(list);
}

int dico_is_available(void)
{
    if (!findLanguageFile().problem.empty())
        return 0;
    const char *list = std::getenv("MON_DICO");
    const std::vector<std::string> added = list ? listedFiles(list) : std::vector<std::string>();
    return std::all_of(added.begin(), added.end(), [](const std::string &path) { return !missingFile(path); })
        ? 1
        : 0;
}

void dico_add_file(const char *path)
{
    if (dico.files.empty())
        dico_init();
    if (const auto missing = missingFile(path))
        giveUp("ERROR : %s not found\n", missing->c_str());
    append(path, std::string(path) + ".idx");
}

void dico_add_list(const char *list)
{
    for (const std::string &path : listedFiles(list))
        dico_add_file(path.c_str());
}

void dico_message(const char *key, ...)
{
    prepare();
    for (auto file = dico.files.rbegin(); file != dico.files.rend(); ++file) {
        if (!file->loaded)
            load(*file);
        for (const DicoRecord &record : file->records) {
            if (record.key != key)
                continue;
            const std::string format = readText(*file, record);
            std::vector<char> text(format.size() + 5000);
            std::va_list arguments;
            va_start(arguments, key);
            if (isSafeFormat(format))
                std::vsnprintf(text.data(), text.size(), format.c_str(), arguments);
            else
                std::snprintf(text.data(), text.size(), "%s", format.c_str());
            va_end(arguments);
            print(withPrefix(record, text.data()));
            return;
        }
    }
}

int dico_is_error(const char *text)
{
    prepare();
    for (const char letter : dico.errorPrefix) {
        if (capital(*text) != capital(letter))
            return 0;
        ++text;
    }
    return 1;
}

void dico_set_callback(void (*callback)(const char *text))
{
    dico.callback = callback;
}

void dico_set_exit_on_error(int on)
{
    dico.exitOnError = on;
}
