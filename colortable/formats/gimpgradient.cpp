#include "colortable/formats/gimpgradient.h"

#include "colortable/formats/tableparts.h"

#include <QRegularExpression>

#include <cmath>

namespace
{

// The numbers of a segment in the file.
enum Blending
{
    Linear,
    Curved,
    Sinusoidal,
    SphereIncreasing,
    SphereDecreasing,
    Step
};
enum Mixing
{
    Rgb,
    HsvCounterClockwise,
    HsvClockwise
};

struct Segment
{
    double left = 0.0; ///< from 0 to 1, as middle and right
    double middle = 0.0;
    double right = 0.0;
    QColor from;
    QColor to;
    int blending = Linear;
    int mixing = Rgb;
};

constexpr double pi = 3.14159265358979323846;

/// How much of the second colour a place holds; both from 0 to 1. middle: the place where both are mixed evenly
/// in a linear segment. (GIMP's blending functions, as its gradients are documented)
double partOf(const Segment &segment, double place)
{
    const double width = segment.right - segment.left;
    const double middle = width > 0.0 ? (segment.middle - segment.left) / width : 0.5;
    double linear = 0.0;
    if (place <= middle)
        linear = middle > 0.0 ? 0.5 * place / middle : 0.0;
    else
        linear = middle < 1.0 ? 0.5 + 0.5 * (place - middle) / (1.0 - middle) : 1.0;
    switch (segment.blending) {
    case Curved: {
        constexpr double least = 1e-6; // a middle on an end has no logarithm
        return std::pow(place, std::log(0.5) / std::log(std::min(std::max(middle, least), 1.0 - least)));
    }
    case Sinusoidal:
        return (std::sin(pi * (linear - 0.5)) + 1.0) / 2.0;
    case SphereIncreasing:
        return std::sqrt(1.0 - (linear - 1.0) * (linear - 1.0));
    case SphereDecreasing:
        return 1.0 - std::sqrt(1.0 - linear * linear);
    default:
        return linear;
    }
}

QColor colorAtPlace(const Segment &segment, double place)
{
    const double part = partOf(segment, place);
    const auto mix = [&](double from, double to) { return from + part * (to - from); };
    const double alpha = mix(segment.from.alphaF(), segment.to.alphaF());
    if (segment.mixing == Rgb)
        return colorOfParts(mix(segment.from.redF(), segment.to.redF()),
                            mix(segment.from.greenF(), segment.to.greenF()),
                            mix(segment.from.blueF(), segment.to.blueF()), alpha);
    double from = std::max<double>(segment.from.hsvHueF(), 0.0); // a grey has hue 0 in GIMP
    double to = std::max<double>(segment.to.hsvHueF(), 0.0);
    if (segment.mixing == HsvCounterClockwise && to <= from)
        to += 1.0;
    else if (segment.mixing == HsvClockwise && from <= to)
        from += 1.0;
    return colorOfHsv(mix(from, to) * 360.0, mix(segment.from.hsvSaturationF(), segment.to.hsvSaturationF()),
                      mix(segment.from.valueF(), segment.to.valueF()), alpha);
}

void addSegment(ColorTableReading &reading, const Segment &segment)
{
    const double from = segment.left * 100.0;
    const double to = segment.right * 100.0;
    if (segment.blending == Step) {
        addPoint(reading.entries, from, segment.from, true);
        addPoint(reading.entries, segment.middle * 100.0, segment.from, true);
        addPoint(reading.entries, segment.middle * 100.0, segment.to, true);
        addPoint(reading.entries, to, segment.to, true);
    } else if (segment.blending == Linear && segment.mixing == Rgb) {
        addPoint(reading.entries, from, segment.from, true);
        const double middle = (segment.middle - segment.left) / (segment.right - segment.left);
        addPoint(reading.entries, segment.middle * 100.0, colorAtPlace(segment, middle), true);
        addPoint(reading.entries, to, segment.to, true);
    } else {
        addCurve(reading.entries, from, to, true, [&](double place) { return colorAtPlace(segment, place); });
    }
}

/// Reads "left middle right, r g b a, r g b a, blending mixing [end types]". Returns false for anything else.
bool readSegment(Segment &segment, const QStringList &fields)
{
    QVector<double> numbers;
    for (const QString &field : fields) {
        const std::optional<double> number = finiteNumber(field);
        if (!number || *number < 0.0)
            return false;
        numbers += *number;
    }
    const bool partsFit = (numbers.size() == 13 || numbers.size() == 15)
        && std::all_of(numbers.begin(), numbers.begin() + 11, [](double number) { return number <= 1.0; });
    if (!partsFit || numbers.at(0) >= numbers.at(2) || numbers.at(1) < numbers.at(0)
        || numbers.at(1) > numbers.at(2))
        return false;
    const auto color = [&](int at) {
        return colorOfParts(numbers.at(at), numbers.at(at + 1), numbers.at(at + 2), numbers.at(at + 3));
    };
    segment = {numbers.at(0), numbers.at(1), numbers.at(2), color(3), color(7), 0, 0};
    segment.blending = static_cast<int>(numbers.at(11));
    segment.mixing = static_cast<int>(numbers.at(12));
    return segment.blending <= Step && segment.mixing <= HsvClockwise;
}

} // namespace

bool isGimpGradient(const QStringList &lines)
{
    return lines.first().trimmed() == QLatin1String("GIMP Gradient");
}

ColorTableReading readGimpGradient(const QStringList &lines)
{
    ColorTableReading reading = foreignReading(QStringLiteral("GIMP Gradient"));
    static const QRegularExpression blanks(QStringLiteral("\\s+"));
    int announced = -1;
    int found = 0;
    double end = 0.0;
    for (int at = 1; at < lines.size() && reading.problem.isEmpty(); ++at) {
        const QStringList fields = lines.at(at).split(blanks, Qt::SkipEmptyParts);
        if (fields.isEmpty() || lines.at(at).startsWith(QLatin1String("Name:")))
            continue;
        Segment segment;
        if (announced < 0) {
            announced = fields.first().toInt();
        } else if (!readSegment(segment, fields) || std::abs(segment.left - end) > 1e-4) {
            refuseLine(reading, at + 1, badFields());
        } else if (fields.mid(13).count(QStringLiteral("0")) != fields.mid(13).size()) {
            refuseLine(reading, at + 1,
                       notSupported(fields.mid(13).join(QLatin1Char(' ')))); // the painter's colours
        } else {
            segment.left = end; // rounded in the file
            end = segment.right;
            addSegment(reading, segment);
            ++found;
        }
    }
    if (found != announced)
        refuse(reading, badCount(announced, found));
    return reading;
}
