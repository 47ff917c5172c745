// Feeds any bytes to the parser of style strings. Built as a fuzzer of its own by the preset "fuzz", and called
// with mutations of real strings by the test of the parser.

#include "vectordraw/stylestring.h"

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string_view>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size);

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    const std::string_view text(reinterpret_cast<const char *>(data), size);
    const auto anyValue = [text](std::string_view name, std::string &value) {
        value = text.substr(name.size() % (text.size() + 1));
        return true;
    };
    const vectordraw::StyleReading reading = vectordraw::parseStyle(text);
    const vectordraw::StyleReading filled = vectordraw::parseStyle(text, anyValue);
    if (reading.style.size() > 64 || reading.ignored < 0)
        std::abort();
    // The attributes' values change parameters, and never which tools there are.
    if (filled.style.size() != reading.style.size() || filled.usesFields != reading.usesFields)
        std::abort();
    const std::string expanded =
        vectordraw::expandText(text, [](std::string_view, std::string &) { return false; });
    if (expanded != text.substr(0, 4096))
        std::abort();
    return 0;
}
