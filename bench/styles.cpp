// styles
//
// Draws styles whose cost once ran away into 1000 x 1000 pixels, each against a plain one, in turn within one
// run. Goals: a turned hatch at most 2.5 times as long as the straight one; a label stretched along a line of
// eight times as many vertices at most 3 times as long, and one of eight times as many letters at most 10 times
// as long.

#include "vectordraw/labelpainter.h"
#include "vectordraw/painter.h"

#include <algorithm>
#include <chrono>
#include <cmath>
#include <cstdio>
#include <string>
#include <vector>

namespace
{

using namespace vectordraw;

constexpr int side = 1000; // pixels
constexpr int rounds = 5;

double secondsToHatch(double angle)
{
    Surface surface = Surface::image(side, side);
    Painter painter(surface, {});
    Brush brush = std::get<Brush>(parseStyle("BRUSH(fc:#204080,id:ogr-brush-6)").style.at(0));
    brush.angle = angle;
    const std::vector<Point> ring{{0.0, 0.0}, {side, 0.0}, {side, side}, {0.0, side}, {0.0, 0.0}};
    constexpr int areas = 20; // of a file share a brush
    const auto begin = std::chrono::steady_clock::now();
    for (int area = 0; area < areas; ++area) {
        painter.beginArea();
        painter.addRing(ring);
        painter.fillArea(brush);
    }
    surface.flush();
    return std::chrono::duration<double>(std::chrono::steady_clock::now() - begin).count();
}

double secondsToStretch(int vertices, int letters)
{
    Surface surface = Surface::image(side, side);
    std::vector<Point> line;
    line.reserve(static_cast<std::size_t>(vertices));
    for (int at = 0; at < vertices; ++at)
        line.push_back({side * static_cast<double>(at) / vertices, side / 2.0 + 100.0 * std::sin(at * 0.001)});
    LabelText label;
    label.placement = Placement::Stretched;
    const std::string text(static_cast<std::size_t>(letters), 'e');
    const auto begin = std::chrono::steady_clock::now();
    drawLabel(surface, {}, label, text, line);
    surface.flush();
    return std::chrono::duration<double>(std::chrono::steady_clock::now() - begin).count();
}

} // namespace

int main()
{
    double straight = 1e9;
    double turned = 1e9;
    double label = 1e9;
    double longLine = 1e9;
    double longText = 1e9;
    for (int round = 0; round < rounds; ++round) {
        straight = std::min(straight, secondsToHatch(0.0));
        turned = std::min(turned, secondsToHatch(33.0));
        label = std::min(label, secondsToStretch(100000, 500));
        longLine = std::min(longLine, secondsToStretch(800000, 500));
        longText = std::min(longText, secondsToStretch(100000, 4000));
    }
    std::printf("turned / straight hatch:        %.1f (at most 2.5)\n", turned / straight);
    std::printf("stretched, 8 times the vertices: %.1f (at most 3)\n", longLine / label);
    std::printf("stretched, 8 times the letters:  %.1f (at most 10)\n", longText / label);
    std::printf("seconds: hatch %.4f and %.4f, label %.3f, %.3f and %.3f\n", straight, turned, label, longLine,
                longText);
    return 0;
}
