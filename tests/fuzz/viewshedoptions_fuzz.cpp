// Feeds any bytes to the parser of the viewshed tool's arguments; each line is an argument. Built as a fuzzer
// of its own by the preset "fuzz", and called with mutations of real arguments by the test of the parser.

#include "viewshed/options.h"
#include "viewshed/problem.h"

#include <cmath>
#include <cstddef>
#include <cstdint>
#include <cstdlib>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size);

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    std::vector<std::string> arguments(1);
    for (std::size_t byte = 0; byte < size; ++byte) {
        if (data[byte] == '\n')
            arguments.emplace_back();
        else
            arguments.back() += static_cast<char>(data[byte]);
    }
    try {
        const viewshed::Options options = viewshed::parsedOptions(arguments);
        if (options.request != viewshed::Options::Request::Run)
            return 0;
        const bool inRange = std::abs(options.targetHeight) <= viewshed::greatestHeight
            && std::abs(options.curvature) <= viewshed::greatestCurvature && options.band >= 1;
        if (!inRange || options.source.empty() || options.destination.empty() || options.pointFile.empty())
            std::abort();
    } catch (const viewshed::Problem &problem) {
        const std::string text = problem.what();
        if (text.size() > 300 || text.back() != '.' || text.find('\n') != std::string::npos)
            std::abort();
    }
    return 0;
}
