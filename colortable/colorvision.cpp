#include "colortable/colorvision.h"

#include "colortable/linearlight.h"

#include <array>

namespace
{

using Triple = std::array<double, 3>;
using Matrix = std::array<Triple, 3>;

// The matrices are those of libDaltonLens (public domain).
constexpr Matrix protanopia{{{0.11238, 0.88762, 0.0}, {0.11238, 0.88762, 0.0}, {0.00401, -0.00401, 1.0}}};
constexpr Matrix deuteranopia{{{0.29275, 0.70725, 0.0}, {0.29275, 0.70725, 0.0}, {-0.02234, 0.02234, 1.0}}};
constexpr Triple tritanopiaPlane{0.03901, -0.02788, -0.01113};
constexpr Matrix tritanopiaAbove{
    {{1.01277, 0.13548, -0.14826}, {-0.01243, 0.86812, 0.14431}, {0.07589, 0.80500, 0.11911}}};
constexpr Matrix tritanopiaBelow{
    {{0.93678, 0.18979, -0.12657}, {0.06154, 0.81526, 0.12320}, {-0.37562, 1.12767, 0.24796}}};

double dot(const Triple &one, const Triple &other)
{
    return one[0] * other[0] + one[1] * other[1] + one[2] * other[2];
}

const Matrix &matrixOf(ColorVision vision, const Triple &linear)
{
    if (vision == ColorVision::Protanopia)
        return protanopia;
    if (vision == ColorVision::Deuteranopia)
        return deuteranopia;
    return dot(tritanopiaPlane, linear) >= 0.0 ? tritanopiaAbove : tritanopiaBelow;
}

} // namespace

QColor seenWith(const QColor &color, ColorVision vision)
{
    if (vision == ColorVision::Normal)
        return color;
    const Triple linear{linearPart(color.red()), linearPart(color.green()), linearPart(color.blue())};
    const Matrix &matrix = matrixOf(vision, linear);
    return {screenLevel(dot(matrix[0], linear)), screenLevel(dot(matrix[1], linear)),
            screenLevel(dot(matrix[2], linear)), color.alpha()};
}
