#include "app/preview/map/valueramp.h"

#include "panels/options/valueclasses.h"

#include <QVector>

#include <algorithm>
#include <array>
#include <cmath>

namespace
{

constexpr double circle = 360.0;

using Stops = QVector<QRgb>;

const Stops &stopsOf(RampKind kind)
{
    static const Stops grey{0xff000000, 0xffffffff};
    static const Stops steepness{0xffffffe0, 0xfffee08b, 0xfffdae61, 0xfff46d43, 0xffc62d34, 0xff7a0c35};
    static const Stops variation{0xfff7fcf0, 0xffccebc5, 0xff7bccc4, 0xff2b8cbe, 0xff08406f};
    static const Stops position{0xff8c510a, 0xffd8b365, 0xfffafafa, 0xff7fc97f, 0xff1b6b3a};
    static const Stops direction{0xff5e7fd6, 0xff4fb3b5, 0xff86c95a, 0xfff2e35c, 0xfff0944b,
                                 0xffde5f66, 0xffb062b8, 0xff7c68cc, 0xff5e7fd6};
    switch (kind) {
    case RampKind::Steepness:
        return steepness;
    case RampKind::Variation:
    case RampKind::Count:
    case RampKind::Height:
        return variation;
    case RampKind::Position:
        return position;
    case RampKind::Direction:
        return direction;
    case RampKind::Grey:
        break;
    }
    return grey;
}

QRgb between(const Stops &stops, double place)
{
    const int last = static_cast<int>(stops.size()) - 1;
    const double at = std::clamp(place, 0.0, 1.0) * last;
    const int below = std::min(static_cast<int>(at), last - 1);
    const double share = at - below;
    const auto mix = [share](int from, int to) { return qRound(from + share * (to - from)); };
    const QRgb from = stops.at(below);
    const QRgb to = stops.at(below + 1);
    return qRgb(mix(qRed(from), qRed(to)), mix(qGreen(from), qGreen(to)), mix(qBlue(from), qBlue(to)));
}

/// An angle as degrees clockwise from the north, 0 up to 360.
double azimuthOf(double angle, bool trigonometric)
{
    const double turned = std::fmod(trigonometric ? 90.0 - angle : angle, circle);
    return turned < 0.0 ? turned + circle : turned;
}

/// Values of some cells in rising order: enough for percentiles, and few enough for every frame of a picture
/// that follows the user's hand.
QVector<float> sortedSample(const ElevationGrid &values)
{
    constexpr int most = 40000;
    const int step = std::max(1, static_cast<int>(values.cells.size()) / most);
    QVector<float> sample;
    for (int at = 0; at < values.cells.size(); at += step) {
        if (!std::isnan(values.cells.at(at)))
            sample += values.cells.at(at);
    }
    std::sort(sample.begin(), sample.end());
    return sample;
}

} // namespace

double ValueRamp::placeOf(double value) const
{
    if (kind == RampKind::Direction)
        return azimuthOf(value, trigonometric) / circle;
    if (steps.size() < 2)
        return high > low ? (value - low) / (high - low) : 0.5;
    const auto last = steps.size() - 1;
    const auto above = std::upper_bound(steps.begin() + 1, steps.end() - 1, value) - steps.begin();
    const auto at = static_cast<int>(above);
    return (at - 1 + (value - steps.at(at - 1)) / (steps.at(at) - steps.at(at - 1)))
        / static_cast<double>(last);
}

QRgb ValueRamp::color(double value) const
{
    if (!classes.classes.isEmpty())
        return classes.classes.at(classOf(classes, value)).color;
    if (kind == RampKind::Height && value <= 0.0)
        return seenGroundColor;
    return between(stops.size() > 1 ? stops : stopsOf(kind), placeOf(value));
}

QVector<double> heightSteps(double highest)
{
    const double last = std::clamp(highest, 10.0, 1000.0);
    QVector<double> steps{0.0, 2.0, 5.0};
    for (double power = 10.0; steps.last() < last; power *= 10.0) {
        for (const double factor : {1.0, 2.0, 5.0}) {
            if (steps.last() < last)
                steps += factor * power;
        }
    }
    return steps;
}

ValueRamp rampOver(const ElevationGrid &values, RampKind kind, bool trigonometric)
{
    constexpr double tail = 0.02;
    ValueRamp ramp{kind, 0.0, circle, trigonometric};
    if (kind == RampKind::Direction)
        return ramp;
    const QVector<float> sorted = sortedSample(values);
    if (kind == RampKind::Height)
        ramp.steps = heightSteps(0.0);
    if (sorted.isEmpty())
        return ramp;
    const auto last = static_cast<double>(sorted.size() - 1);
    ramp.low = sorted.at(static_cast<int>(tail * last));
    ramp.high = sorted.at(static_cast<int>((1.0 - tail) * last));
    if (kind == RampKind::Count) // a few cells that many observers see are what is looked for
        ramp.high = static_cast<double>(
            *std::max_element(values.cells.begin(), values.cells.end(), [](float one, float other) {
                return std::isnan(one) ? !std::isnan(other) : one < other;
            }));
    if (kind == RampKind::Height) {
        ramp.steps = heightSteps(ramp.high);
        ramp.low = ramp.steps.first();
        ramp.high = ramp.steps.last();
        return ramp;
    }
    if (kind == RampKind::Position) {
        ramp.high = std::max(std::abs(ramp.low), std::abs(ramp.high));
        ramp.low = -ramp.high;
    } else if (sorted.first() >= 0.0) {
        ramp.low = 0.0;
    }
    if (ramp.high <= ramp.low) // values that are all alike still have a colour and a legend
        ramp.high = ramp.low + 1.0;
    return ramp;
}

namespace
{

/// The picture of a ramp with steps or classes, whose colours are not evenly spread over the values.
QImage steppedPicture(const ElevationGrid &values, const ValueRamp &ramp)
{
    QImage picture(values.width, values.height, QImage::Format_ARGB32_Premultiplied);
    for (int row = 0; row < values.height; ++row) {
        auto pixels = reinterpret_cast<QRgb *>(picture.scanLine(row));
        const float *line = values.cells.constData() + static_cast<std::ptrdiff_t>(row) * values.width;
        for (int column = 0; column < values.width; ++column)
            pixels[column] = std::isnan(line[column]) ? 0 : ramp.color(line[column]);
    }
    return picture;
}

} // namespace

QImage rampPicture(const ElevationGrid &values, const ValueRamp &ramp)
{
    if (values.isEmpty())
        return {};
    if (!ramp.steps.isEmpty() || !ramp.classes.classes.isEmpty())
        return steppedPicture(values, ramp);
    constexpr int steps = 1024; // more colours than the ramps have
    const double first = ramp.kind == RampKind::Direction ? 0.0 : ramp.low;
    const double span = ramp.kind == RampKind::Direction ? circle : ramp.high - ramp.low;
    std::array<QRgb, steps + 1> colors{};
    for (int step = 0; step <= steps; ++step)
        colors[static_cast<std::size_t>(step)] = ramp.color(first + span * step / steps);
    const auto scale = static_cast<float>(steps / span);
    const auto origin = static_cast<float>(first);
    QImage picture(values.width, values.height, QImage::Format_ARGB32_Premultiplied);
    for (int row = 0; row < values.height; ++row) {
        auto pixels = reinterpret_cast<QRgb *>(picture.scanLine(row));
        const float *line = values.cells.constData() + static_cast<std::ptrdiff_t>(row) * values.width;
        for (int column = 0; column < values.width; ++column) {
            const float value = line[column];
            const float step = std::clamp((value - origin) * scale + 0.5f, 0.0f, static_cast<float>(steps));
            pixels[column] = std::isnan(value) ? 0 : colors[static_cast<std::size_t>(step)];
        }
    }
    return picture;
}

int compassPoint(double angle, bool trigonometric)
{
    constexpr int points = 16;
    return qRound(azimuthOf(angle, trigonometric) / circle * points) % points;
}
