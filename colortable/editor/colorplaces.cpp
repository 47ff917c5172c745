#include "colortable/editor/colorplaces.h"

#include <QtMath>

#include <algorithm>
#include <cmath>

namespace
{

constexpr double ringShare = 0.8; // inner radius of the ring, of its outer one

} // namespace

HueColor hueColor(const QColor &color, const HueColor &before)
{
    const auto hue = static_cast<double>(color.hsvHueF()); // -1: a grey
    return {hue < 0.0 ? before.hue : hue, static_cast<double>(color.hsvSaturationF()),
            static_cast<double>(color.valueF())};
}

ColorPlaces::ColorPlaces(const QRectF &area)
    : m_center(area.center())
    , m_outer(area.width() / 2.0)
    , m_inner(m_outer * ringShare)
{
    const double radius = m_inner - 2.0;
    const auto corner = [&](double degrees) {
        const double angle = qDegreesToRadians(degrees);
        return m_center + QPointF(std::sin(angle), -std::cos(angle)) * radius;
    };
    m_pure = corner(0.0);
    m_black = corner(120.0);
    m_white = corner(240.0);
}

bool ColorPlaces::isInRing(const QPointF &place) const
{
    const double distance = std::hypot(place.x() - m_center.x(), place.y() - m_center.y());
    return distance >= m_inner && distance <= m_outer;
}

double ColorPlaces::hueAt(const QPointF &place) const
{
    const double turns = std::atan2(place.x() - m_center.x(), m_center.y() - place.y()) / (2.0 * M_PI);
    return turns < 0.0 ? turns + 1.0 : turns;
}

QPointF ColorPlaces::placeOfHue(double hue) const
{
    const double angle = hue * 2.0 * M_PI;
    return m_center + QPointF(std::sin(angle), -std::cos(angle)) * ((m_inner + m_outer) / 2.0);
}

ColorPlaces::Weights ColorPlaces::weightsAt(const QPointF &place) const
{
    const QPointF toWhite = m_white - m_pure;
    const QPointF toBlack = m_black - m_pure;
    const QPointF toPlace = place - m_pure;
    const double area = toWhite.x() * toBlack.y() - toBlack.x() * toWhite.y();
    Weights weights;
    weights.white = (toPlace.x() * toBlack.y() - toBlack.x() * toPlace.y()) / area;
    weights.black = (toWhite.x() * toPlace.y() - toPlace.x() * toWhite.y()) / area;
    weights.pure = 1.0 - weights.white - weights.black;
    return weights;
}

bool ColorPlaces::isInTriangle(const QPointF &place) const
{
    const Weights weights = weightsAt(place);
    return weights.pure >= 0.0 && weights.white >= 0.0 && weights.black >= 0.0;
}

HueColor ColorPlaces::colorAt(const QPointF &place, double hue) const
{
    Weights weights = weightsAt(place);
    weights.pure = std::max(0.0, weights.pure);
    weights.white = std::max(0.0, weights.white);
    weights.black = std::max(0.0, weights.black);
    const double sum = weights.pure + weights.white + weights.black;
    const double light = (weights.pure + weights.white) / sum;
    const double colored = weights.pure + weights.white;
    return {hue, colored > 0.0 ? weights.pure / colored : 0.0, light};
}

QPointF ColorPlaces::placeOf(const HueColor &color) const
{
    const double pure = color.value * color.saturation;
    const double white = color.value * (1.0 - color.saturation);
    return m_pure * pure + m_white * white + m_black * (1.0 - color.value);
}
