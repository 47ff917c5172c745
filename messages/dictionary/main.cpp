// dictionary_compiler <french source> <english source> <folder>
//
// Compiles both sources into geodico.fr, geodico.lc (also French) and geodico.an with their indexes in the
// folder. If a source has a fault, it is printed and nothing is written.

#include "messages/dictionary/dictionarysource.h"

#include <cstdio>
#include <fstream>
#include <sstream>
#include <stdexcept>

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
    if (argc != 4) {
        std::fputs("usage: dictionary_compiler <french source> <english source> <folder>\n", stderr);
        return 2;
    }
    const DictionarySource french = parseDictionary(readFile(argv[1]));
    const DictionarySource english = parseDictionary(readFile(argv[2]));
    const bool frenchBad = report(argv[1], french.faults);
    const bool englishBad = report(argv[2], english.faults);
    if (report(argv[2], compareDictionaries(english, french)) || frenchBad || englishBad)
        return 1;
    const std::string stem = std::string(argv[3]) + "/geodico";
    writeDictionary(french, stem + ".fr");
    writeDictionary(french, stem + ".lc");
    writeDictionary(english, stem + ".an");
    return 0;
} catch (const std::exception &fault) {
    std::fprintf(stderr, "dictionary_compiler: %s\n", fault.what());
    return 1;
}
