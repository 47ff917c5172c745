// dictionary_compiler <folder> <suffix> <source> [<suffix> <source> ...]
//
// Compiles each source into geodico.<suffix> with its index in the folder, and the first also into geodico.lc.
// The suffixes of the languages stand in messages/dicoindex.cpp. If a source has a fault, it is printed and
// nothing is written.

#include "messages/dictionary/dictionarysource.h"

#include <cstdio>
#include <fstream>
#include <sstream>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

namespace
{

std::string readFile(const std::string &path)
{
    std::ifstream file(path, std::ios::binary);
    std::ostringstream text;
    text << file.rdbuf();
    if (!file)
        throw std::runtime_error(path + " cannot be read");
    return text.str();
}

void writeFile(const std::string &path, const std::string &bytes)
{
    std::ofstream file(path, std::ios::binary);
    file << bytes;
    file.close();
    if (!file)
        throw std::runtime_error(path + " cannot be written");
}

void writeDictionary(const DictionarySource &source, const std::string &path)
{
    const CompiledDictionary compiled = compileDictionary(source);
    writeFile(path, compiled.data);
    writeFile(path + ".idx", compiled.index);
}

bool report(const std::string &name, const std::vector<std::string> &faults)
{
    for (const std::string &fault : faults)
        std::fprintf(stderr, "%s:%s\n", name.c_str(), fault.c_str());
    return !faults.empty();
}

} // namespace

int main(int argc, char *argv[])
try {
    if (argc < 4 || argc % 2 != 0) {
        std::fputs("usage: dictionary_compiler <folder> <suffix> <source> [<suffix> <source> ...]\n", stderr);
        return 2;
    }
    std::vector<std::pair<std::string, DictionarySource>> sources;
    bool bad = false;
    for (int at = 2; at < argc; at += 2) {
        const std::string path = argv[at + 1];
        const DictionarySource source = parseDictionary(readFile(path));
        bad = report(path, source.faults) || bad;
        for (const auto &[suffix, other] : sources)
            bad = report(path, compareDictionaries(source, other)) || bad;
        sources.emplace_back(argv[at], source);
    }
    if (bad)
        return 1;
    const std::string stem = std::string(argv[1]) + "/geodico.";
    writeDictionary(sources.front().second, stem + "lc");
    for (const auto &[suffix, source] : sources)
        writeDictionary(source, stem + suffix);
    return 0;
} catch (const std::exception &fault) {
    std::fprintf(stderr, "dictionary_compiler: %s\n", fault.what());
    return 1;
}
