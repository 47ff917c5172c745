#pragma once

#include "viewshed/combine.h"

#include <array>
#include <cstdint>
#include <string>
#include <vector>

namespace viewshed
{

using Color = std::array<std::uint8_t, 3>; ///< red, green, blue

/// What the command line asks for. Paths are as they were given, in whatever encoding.
struct Options
{
    enum class Request
    {
        Run,
        Help,
        Version
    };

    Request request = Request::Run;
    std::string source;
    std::string destination;
    std::string pointFile;
    int band = 1; ///< from 1
    Combination combination = Combination::Overwrite;
    double targetHeight = 0.0; ///< in the DEM's vertical unit
    Color hidden{213, 94, 0};
    Color seen{0, 158, 115};
    Color noData{0, 0, 0};
    std::vector<std::string> creationOptions; ///< NAME=VALUE
    double curvature = 0.85714;               ///< 1 is the Earth without refraction, 0 a plane
};

/// The arguments after the program's name, in any order; of a repeated one the last counts. Throws Problem.
Options parsedOptions(const std::vector<std::string> &arguments);

/// The text of --help.
std::string usage();

} // namespace viewshed
