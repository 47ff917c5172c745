#include "viewshed/options.h"

#include "viewshed/problem.h"

#include <charconv>
#include <cmath>
#include <functional>
#include <map>

namespace viewshed
{

namespace
{

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

    template <class Number> Number number()
    {
        const std::string &text = value();
        Number number{};
        const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
        if (error != std::errc() || end != text.data() + text.size() || !std::isfinite(double(number)))
            throw Problem("The option " + m_name + " takes a number, not \"" + text + "\".");
        return number;
    }

    Color color()
    {
        Color color{};
        for (std::uint8_t &part : color) {
            constexpr int greatest = 255;
            const int number = this->number<int>();
            if (number < 0 || number > greatest)
                throw Problem("The option " + m_name + " takes three numbers from 0 to 255.");
            part = static_cast<std::uint8_t>(number);
        }
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
        throw Problem("The option " + m_name + " takes OVERWRITE, OR or AND, not \"" + text + "\".");
    }

    std::string pair()
    {
        const std::string &text = value();
        if (text.find('=') == std::string::npos || text.front() == '=')
            throw Problem("The option " + m_name + " takes NAME=VALUE, not \"" + text + "\".");
        return text;
    }

private:
    const std::vector<std::string> &m_arguments;
    std::size_t m_next = 0;
    std::string m_name; ///< the option that next() returned last
};

void checkComplete(const Options &options)
{
    for (const auto &[value, name] : {std::pair{&options.source, "-SrcFile"},
                                      {&options.destination, "-DstFile"},
                                      {&options.pointFile, "-point_file"}}) {
        if (value->empty())
            throw Problem(std::string("The option ") + name + " is missing.");
    }
    if (options.band < 1)
        throw Problem("The option -iBand takes the number of a band, from 1.");
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
        {"-iBand", [&] { options.band = arguments.number<int>(); }},
        {"-DstOp", [&] { options.combination = arguments.combination(); }},
        {"-SH", [&] { options.targetHeight = arguments.number<double>(); }},
        {"-CNOZ", [&] { options.hidden = arguments.color(); }},
        {"-COZ", [&] { options.seen = arguments.color(); }},
        {"-CNoData", [&] { options.noData = arguments.color(); }},
        {"-co", [&] { options.creationOptions.push_back(arguments.pair()); }},
        {"-cc", [&] { options.curvature = arguments.number<double>(); }},
        {"--help", [&] { options.request = Options::Request::Help; }},
        {"--version", [&] { options.request = Options::Request::Version; }},
    };
    while (!arguments.atEnd()) {
        const std::string &name = arguments.next();
        const auto option = known.find(name);
        if (option == known.end())
            throw Problem("\"" + name + "\" is not an option of this program; see --help.");
        option->second();
        if (options.request != Options::Request::Run)
            return options;
    }
    checkComplete(options);
    return options;
}

std::string usage()
{
    return "Usage: gdal_intervisibility.exe -SrcFile <dem> -DstFile <picture.tif> -point_file <points> "
           "[options]\n"
           "\n"
           "Paints each cell of a DEM in one of three colours: seen by the observers, hidden, or without "
           "data.\n"
           "\n"
           "  -SrcFile <dem>         raster of elevations\n"
           "  -iBand <n>             its band (1)\n"
           "  -DstFile <file>        GeoTIFF to create, 3 bands of bytes\n"
           "  -point_file <file>     observers: points with z, the absolute altitude of the eye, and the "
           "field\n"
           "                         Max_Dist, the greatest distance in metres (0, negative: without limit)\n"
           "  -DstOp <operation>     several observers: OVERWRITE (each replaces those before it "
           "within\n"
           "                         its distance), OR (at least one sees the cell), AND (all see it)\n"
           "  -SH <height>           height of the target above the ground (0)\n"
           "  -COZ <r> <g> <b>       colour of visible cells (0 158 115)\n"
           "  -CNOZ <r> <g> <b>      colour of the other cells (213 94 0)\n"
           "  -CNoData <r> <g> <b>   colour of cells without data (0 0 0)\n"
           "  -co <NAME=VALUE>       creation option of GeoTIFF; may be repeated\n"
           "  -cc <coefficient>      factor on the Earth's curvature (0.85714 includes refraction, 0 is a "
           "plane)\n"
           "  --version, --help\n";
}

} // namespace viewshed
