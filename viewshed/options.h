#pragma once

#include "viewshed/combine.h"

#include <array>
#include <cstdint>
#include <string>
#include <vector>

namespace viewshed
{

using Color = std::array<std::uint8_t, 3>; ///< red, green, blue

/// The greatest height of a target above or below the ground. More is no height in any unit.
inline constexpr double greatestHeight = 1e9;
/// The greatest factor on the Earth's curvature, upwards or downwards; that of light in air is below 1.
inline constexpr double greatestCurvature = 100.0;

/// What the destination shows of each cell.
enum class Output
{
    Picture, ///< whether it is seen, as a colour
    Count,   ///< how many observers see it
    Height   ///< the least height above its ground at which a target is seen
};

/// What the command line requests. Paths are the bytes of the arguments; GDAL opens them as they are.
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
    int band = 1; ///< number of the source's band with the elevations, from 1
    Output output = Output::Picture;
    Combination combination = Combination::Overwrite;
    double targetHeight = 0.0; ///< in the DEM's vertical unit; below the ground if negative
    Color hidden{213, 94, 0};
    Color seen{0, 158, 115};
    Color noData{0, 0, 0};
    std::vector<std::string> creationOptions; ///< for the driver, each as NAME=VALUE
    double curvature = 0.85714; ///< factor on the Earth's curvature: 1 without refraction, 0 for a plane
    std::string skyline;        ///< file of the observers' horizons; empty: none is written
    double skylineStep = 0.0; ///< degrees between two directions of a horizon; 0: all points at which it bends
    std::string statistics;   ///< file of the area that each observer sees; empty: none is written
};

/// Parses the arguments that follow the program's name. Their order does not matter; of a repeated option the
/// last one counts, except that each -co adds one. After --help or --version nothing else is parsed or checked.
/// Throws Problem if an option is unknown, lacks a valid value, has one out of its range or is missing.
Options parsedOptions(const std::vector<std::string> &arguments);

/// The text of --help, with its last line feed.
std::string usage();

} // namespace viewshed
