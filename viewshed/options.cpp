#include "viewshed/options.h"

#include "viewshed/problem.h"

#include <algorithm>
#include <cctype>
#include <charconv>
#include <cmath>
#include <functional>
#include <iomanip>
#include <limits>
#include <map>
#include <sstream>

namespace viewshed
{

namespace
{

/// Degrees between two directions of a horizon.
constexpr double leastStep = 0.001;
constexpr double greatestStep = 180.0;

constexpr int lastBand = std::numeric_limits<int>::max();

/// The argument for a problem of one line: shortened, and with spaces for control characters.
std::string quoted(const std::string &text)
{
    constexpr std::size_t longest = 100;
    std::string shown = text.size() > longest ? text.substr(0, longest) + "..." : text;
    std::replace_if(
        shown.begin(), shown.end(), [](unsigned char c) { return c < ' '; }, ' ');
    return '"' + shown + '"';
}

/// The number in digits, without trailing zeros.
template <class Number> std::string words(Number number)
{
    std::ostringstream text;
    text << std::setprecision(std::numeric_limits<double>::digits10) << number;
    return text.str();
}

bool hasSuffix(const std::string &name, const std::string &suffix)
{
    const auto same = [](unsigned char one, unsigned char other) { return std::tolower(one) == other; };
    return name.size() > suffix.size()
        && std::equal(name.end() - static_cast<std::ptrdiff_t>(suffix.size()), name.end(), suffix.begin(),
                      same);
}

/// Reads the arguments one after the other. Each function for a value throws Problem with the option's name.
class Arguments
{
public:
    explicit Arguments(const std::vector<std::string> &arguments)
        : m_arguments(arguments)
    { }

    bool atEnd() const { return m_next == m_arguments.size(); }
    const std::string &next()
    {
        m_name = m_arguments[m_next++];
        return m_name;
    }

    const std::string &value()
    {
        if (atEnd())
            throw Problem("The option " + m_name + " lacks a value.");
        return m_arguments[m_next++];
    }

    template <class Number> Number number(Number least, Number greatest)
    {
        const std::string &text = value();
        Number number{};
        const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
        if (error == std::errc::invalid_argument || end != text.data() + text.size()
            || std::isnan(double(number)))
            throw Problem("The option " + m_name + " takes a number, not " + quoted(text) + ".");
        if (error != std::errc() || number < least || number > greatest)
            throw Problem("The option " + m_name + " takes a number from " + words(least) + " to "
                          + words(greatest) + ", not " + quoted(text) + ".");
        return number;
    }

    Color color()
    {
        Color color{};
        constexpr int greatest = 255;
        for (std::uint8_t &part : color)
            part = static_cast<std::uint8_t>(number(0, greatest));
        return color;
    }

    Combination combination()
    {
        const std::string &text = value();
        if (text == "OVERWRITE")
            return Combination::Overwrite;
        if (text == "OR")
            return Combination::Or;
        if (text == "AND")
            return Combination::And;
        throw Problem("The option " + m_name + " takes OVERWRITE, OR or AND, not " + quoted(text) + ".");
    }

    Output output()
    {
        const std::string &text = value();
        if (text == "picture")
            return Output::Picture;
        if (text == "count")
            return Output::Count;
        if (text == "height")
            return Output::Height;
        throw Problem("The option " + m_name + " takes picture, count or height, not " + quoted(text) + ".");
    }

    /// A file whose name ends in one of the suffixes, whatever their case.
    std::string file(const std::vector<std::string> &suffixes)
    {
        const std::string &text = value();
        std::string list;
        for (const std::string &suffix : suffixes) {
            if (hasSuffix(text, suffix))
                return text;
            list += (list.empty() ? "" : " or ") + suffix;
        }
        throw Problem("The option " + m_name + " takes a file whose name ends in " + list + ", not "
                      + quoted(text) + ".");
    }

    std::string pair()
    {
        const std::string &text = value();
        if (text.find('=') == std::string::npos || text.front() == '=')
            throw Problem("The option " + m_name + " takes NAME=VALUE, not " + quoted(text) + ".");
        return text;
    }

private:
    const std::vector<std::string> &m_arguments;
    std::size_t m_next = 0;
    std::string m_name; ///< the option that next() returned last
};

/// Two of the files that a run writes must not be the same one.
void checkDifferent(const Options &options)
{
    const std::pair<const std::string *, const char *> files[] = {{&options.destination, "-DstFile"},
                                                                  {&options.skyline, "-Skyline"},
                                                                  {&options.statistics, "-Statistics"}};
    for (const auto &[one, name] : files) {
        for (const auto &[other, otherName] : files) {
            if (one != other && !one->empty() && *one == *other)
                throw Problem(std::string("The options ") + name + " and " + otherName
                              + " name the same file.");
        }
    }
}

void checkComplete(const Options &options)
{
    checkDifferent(options);
    if (options.skylineStep > 0.0 && options.skyline.empty())
        throw Problem("The option -SkylineStep needs -Skyline.");

    for (const auto &[value, name] : {std::pair{&options.source, "-SrcFile"},
                                      {&options.destination, "-DstFile"},
                                      {&options.pointFile, "-point_file"}}) {
        if (value->empty())
            throw Problem(std::string("The option ") + name + " is missing.");
    }
}

} // namespace

Options parsedOptions(const std::vector<std::string> &given)
{
    Options options;
    Arguments arguments(given);
    const std::map<std::string, std::function<void()>, std::less<>> known{
        {"-SrcFile", [&] { options.source = arguments.value(); }},
        {"-DstFile", [&] { options.destination = arguments.value(); }},
        {"-point_file", [&] { options.pointFile = arguments.value(); }},
        {"-iBand", [&] { options.band = arguments.number(1, lastBand); }},
        {"-DstOp", [&] { options.combination = arguments.combination(); }},
        {"-SH", [&] { options.targetHeight = arguments.number(-greatestHeight, greatestHeight); }},
        {"-CNOZ", [&] { options.hidden = arguments.color(); }},
        {"-COZ", [&] { options.seen = arguments.color(); }},
        {"-CNoData", [&] { options.noData = arguments.color(); }},
        {"-co", [&] { options.creationOptions.push_back(arguments.pair()); }},
        {"-Output", [&] { options.output = arguments.output(); }},
        {"-Skyline",
         [&] {
             options.skyline = arguments.file({".csv", ".json", ".gpkg"});
         }},
        {"-SkylineStep", [&] { options.skylineStep = arguments.number(leastStep, greatestStep); }},
        {"-Statistics", [&] { options.statistics = arguments.file({".csv"}); }},
        {"-cc", [&] { options.curvature = arguments.number(-greatestCurvature, greatestCurvature); }},
        {"--help", [&] { options.request = Options::Request::Help; }},
        {"--version", [&] { options.request = Options::Request::Version; }},
    };
    while (!arguments.atEnd()) {
        const std::string &name = arguments.next();
        const auto option = known.find(name);
        if (option == known.end())
            throw Problem(quoted(name) + " is not an option of this program; see --help.");
        option->second();
        if (options.request != Options::Request::Run)
            return options;
    }
    checkComplete(options);
    return options;
}

std::string usage()
{
    return "Usage: gdal_intervisibility.exe -SrcFile <dem> -DstFile <file.tif> -point_file <points> "
           "[options]\n"
           "\n"
           "Computes what observers see of a DEM: a picture in three colours (seen, hidden, without data), "
           "the\n"
           "number of observers that see each cell, or the least height at which something would be seen.\n"
           "\n"
           "  -SrcFile <dem>         raster of elevations\n"
           "  -iBand <n>             its band (1)\n"
           "  -DstFile <file>        GeoTIFF to create\n"
           "  -point_file <file>     observers: points with z, the absolute altitude of the eye, and the "
           "fields\n"
           "                         below\n"
           "  -Output <what>         picture: 3 bands of bytes, the colours (default). count: how many "
           "observers\n"
           "                         see the cell, UInt16 or UInt32. height: the least height above the ground "
           "at\n"
           "                         which a target is seen by at least one observer (by all with AND), "
           "Float32;\n"
           "                         0 where the ground is seen, -9999 without data and where no height helps\n"
           "  -DstOp <operation>     several observers: OVERWRITE (each replaces those before it "
           "within\n"
           "                         its distance), OR (at least one sees the cell), AND (all see it)\n"
           "  -SH <height>           height of the target above the ground (0); not for -Output height\n"
           "  -COZ <r> <g> <b>       colour of visible cells (0 158 115)\n"
           "  -CNOZ <r> <g> <b>      colour of the other cells (213 94 0)\n"
           "  -CNoData <r> <g> <b>   colour of cells without data (0 0 0)\n"
           "  -co <NAME=VALUE>       creation option of GeoTIFF; may be repeated\n"
           "  -cc <coefficient>      factor on the Earth's curvature (0.85714 includes refraction, 0 is a "
           "plane)\n"
           "  -Skyline <file>        writes the horizon of each observer: .csv or .json (azimuth and angle in\n"
           "                         degrees, distance in metres), or .gpkg (lines, and the outline of the "
           "area\n"
           "                         seen)\n"
           "  -SkylineStep <step>    degrees from one direction of the horizon to the next; without it, every\n"
           "                         point at which the horizon bends is written\n"
           "  -Statistics <file>     writes the area that each observer sees, .csv\n"
           "  --version, --help\n"
           "\n"
           "Fields of the observers, all of them optional; a missing value is as if there were no such field:\n"
           "  Max_Dist, RADIUS2      greatest distance of a target in metres; 0, negative: without limit\n"
           "  RADIUS1                least distance of a target in metres\n"
           "  OFFSETA                is added to the altitude of the eye\n"
           "  OFFSETB                height of this observer's targets, in the place of -SH\n"
           "  AZIMUTH1, AZIMUTH2     sector that is seen, in degrees clockwise from north: from AZIMUTH1 on, "
           "up\n"
           "                         to but not including AZIMUTH2\n"
           "  VERT1, VERT2           greatest and least angle of sight above the horizontal, in degrees\n"
           "  NAME                   name of the observer\n";
}

} // namespace viewshed
