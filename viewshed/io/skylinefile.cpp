#include "viewshed/io/skylinefile.h"

#include "viewshed/io/sidefile.h"
#include "viewshed/io/skylinelayers.h"
#include "viewshed/io/skylinepoints.h"

namespace viewshed
{

namespace
{

/// The text as a string of JSON, in quotes.
std::string jsonString(const std::string &text)
{
    constexpr const char *hexadecimal = "0123456789abcdef";
    std::string string = "\"";
    for (const char c : text) {
        const auto byte = static_cast<unsigned char>(c);
        if (byte < ' ')
            string += std::string("\\u00") + hexadecimal[byte >> 4U] + hexadecimal[byte & 0xFU];
        else
            string += c == '"' || c == '\\' ? std::string("\\") + c : std::string(1, c);
    }
    return string + '"';
}

class CsvSkyline : public SkylineFile
{
public:
    CsvSkyline(const SkylineOptions &options, const Georeference &georeference)
        : m_text(options.path)
        , m_step(options.step)
        , m_georeference(georeference)
    {
        m_text.write("observer,name,azimuth,angle,distance,x,y,z\n");
    }

    void write(const ObserverHorizon &horizon) override
    {
        const std::string observer =
            std::to_string(horizon.number) + ',' + csvField(horizon.observer.ownName) + ',';
        std::string rows;
        for (const SkylinePoint &point : skylinePoints(horizon, m_step, m_georeference)) {
            rows += observer;
            for (const double number : {point.azimuth, point.angle, point.distance, point.x, point.y})
                rows += digitsOf(number) + ',';
            rows += digitsOf(point.z) + '\n';
        }
        m_text.write(rows);
    }
    void keep() override { m_text.keep(); }

private:
    SideText m_text;
    double m_step;
    const Georeference &m_georeference;
};

class JsonSkyline : public SkylineFile
{
public:
    JsonSkyline(const SkylineOptions &options, const Georeference &georeference)
        : m_text(options.path)
        , m_step(options.step)
        , m_georeference(georeference)
    { }

    void write(const ObserverHorizon &horizon) override
    {
        const std::vector<SkylinePoint> points = skylinePoints(horizon, m_step, m_georeference);
        const Observer &observer = horizon.observer;
        std::string text = m_empty ? "[\n" : ",\n";
        text += "  {\"observer\": " + std::to_string(horizon.number)
            + ", \"name\": " + jsonString(observer.ownName) + ", \"x\": " + digitsOf(observer.x)
            + ", \"y\": " + digitsOf(observer.y) + ", \"z\": " + digitsOf(observer.z);
        text += list("azimuth", points, &SkylinePoint::azimuth);
        text += list("horizon_height", points, &SkylinePoint::angle);
        text += list("horizon_distance", points, &SkylinePoint::distance) + '}';
        m_text.write(text);
        m_empty = false;
    }
    void keep() override
    {
        m_text.write(m_empty ? "[]\n" : "\n]\n");
        m_text.keep();
    }

private:
    static std::string list(const char *name, const std::vector<SkylinePoint> &points,
                            double SkylinePoint::*member)
    {
        std::string text = std::string(",\n   \"") + name + "\": [";
        for (const SkylinePoint &point : points)
            text += (&point == points.data() ? "" : ", ") + digitsOf(point.*member);
        return text + ']';
    }

    SideText m_text;
    double m_step;
    const Georeference &m_georeference;
    bool m_empty = true;
};

} // namespace

std::unique_ptr<SkylineFile> createSkylineFile(const SkylineOptions &options, GDALDataset &raster,
                                               const Georeference &georeference)
{
    switch (std::tolower(static_cast<unsigned char>(options.path.back()))) {
    case 'v':
        return std::make_unique<CsvSkyline>(options, georeference);
    case 'n':
        return std::make_unique<JsonSkyline>(options, georeference);
    default:
        return std::make_unique<SkylineLayers>(options, raster, georeference);
    }
}

} // namespace viewshed
