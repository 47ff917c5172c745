#include "colortable/oklab.h"

#include "colortable/linearlight.h"

#include <array>
#include <cmath>

namespace
{

using Triple = std::array<double, 3>;
using Matrix = std::array<Triple, 3>;

constexpr Matrix rgbToCones{{{0.4122214708, 0.5363325363, 0.0514459929},
                             {0.2119034982, 0.6806995451, 0.1073969566},
                             {0.0883024619, 0.2817188376, 0.6299787005}}};
constexpr Matrix conesToLab{{{0.2104542553, 0.7936177850, -0.0040720468},
                             {1.9779984951, -2.4285922050, 0.4505937099},
                             {0.0259040371, 0.7827717662, -0.8086757660}}};

Triple times(const Matrix &matrix, const Triple &vector)
{
    Triple product{};
    for (std::size_t row = 0; row < 3; ++row)
        product.at(row) = matrix[row][0] * vector[0] + matrix[row][1] * vector[1] + matrix[row][2] * vector[2];
    return product;
}

/// By Cramer's rule, so that both directions come from the same numbers.
Matrix inverse(const Matrix &m)
{
    const auto minor = [&](std::size_t row, std::size_t column) {
        const std::size_t r1 = (row + 1) % 3;
        const std::size_t r2 = (row + 2) % 3;
        const std::size_t c1 = (column + 1) % 3;
        const std::size_t c2 = (column + 2) % 3;
        return m.at(r1).at(c1) * m.at(r2).at(c2) - m.at(r1).at(c2) * m.at(r2).at(c1);
    };
    const double determinant = m[0][0] * minor(0, 0) + m[0][1] * minor(0, 1) + m[0][2] * minor(0, 2);
    Matrix result{};
    for (std::size_t row = 0; row < 3; ++row) {
        for (std::size_t column = 0; column < 3; ++column)
            result.at(row).at(column) = minor(column, row) / determinant;
    }
    return result;
}

bool isWithinOneLevel(const QColor &one, const QColor &other)
{
    return std::abs(one.red() - other.red()) <= 1 && std::abs(one.green() - other.green()) <= 1
        && std::abs(one.blue() - other.blue()) <= 1 && std::abs(one.alpha() - other.alpha()) <= 1;
}

/// Halves a segment between two values.
class Halving
{
public:
    Halving(const QuvoColorDef &from, const QuvoColorDef &to, double step)
        : m_from(from)
        , m_to(to)
        , m_step(step)
    { }

    void halve(const QuvoColorDef &below, const QuvoColorDef &above)
    {
        if (isStraight(below, above))
            return;
        QuvoColorDef middle = below;
        middle.value = std::round((below.value + above.value) / 2.0 / m_step) * m_step;
        if (middle.value <= below.value || middle.value >= above.value)
            return; // no value of the file lies between them
        middle.color = colorOf(middle.value);
        halve(below, middle);
        entries += middle;
        halve(middle, above);
    }

    QList<QuvoColorDef> entries;

private:
    QColor colorOf(double value) const
    {
        return evenMixture(m_from.color, m_to.color, (value - m_from.value) / (m_to.value - m_from.value));
    }

    bool isStraight(const QuvoColorDef &below, const QuvoColorDef &above) const
    {
        constexpr int probes = 16;
        for (int probe = 1; probe < probes; ++probe) {
            const double value = below.value + (above.value - below.value) * probe / probes;
            if (!isWithinOneLevel(colorBetween(below, above, value), colorOf(value)))
                return false;
        }
        return true;
    }

    const QuvoColorDef &m_from;
    const QuvoColorDef &m_to;
    double m_step;
};

} // namespace

OkLab toOkLab(const QColor &color)
{
    const Triple linear{linearPart(color.red()), linearPart(color.green()), linearPart(color.blue())};
    Triple cones = times(rgbToCones, linear);
    for (double &cone : cones)
        cone = std::cbrt(cone);
    const Triple lab = times(conesToLab, cones);
    return {lab[0], lab[1], lab[2]};
}

QColor fromOkLab(const OkLab &color, int alpha)
{
    static const Matrix labToCones = inverse(conesToLab);
    static const Matrix conesToRgb = inverse(rgbToCones);
    Triple cones = times(labToCones, {color.lightness, color.a, color.b});
    for (double &cone : cones)
        cone = cone * cone * cone;
    const Triple linear = times(conesToRgb, cones);
    return {screenLevel(linear[0]), screenLevel(linear[1]), screenLevel(linear[2]), alpha};
}

QColor evenMixture(const QColor &from, const QColor &to, double part)
{
    const OkLab first = toOkLab(from);
    const OkLab last = toOkLab(to);
    const auto mix = [&](double begin, double end) { return begin + part * (end - begin); };
    return fromOkLab({mix(first.lightness, last.lightness), mix(first.a, last.a), mix(first.b, last.b)},
                     static_cast<int>(std::lround(mix(from.alpha(), to.alpha()))));
}

QList<QuvoColorDef> evenEntries(const QuvoColorDef &from, const QuvoColorDef &to, double step)
{
    Halving halving(from, to, step);
    if (to.value > from.value)
        halving.halve(from, to);
    return halving.entries;
}
