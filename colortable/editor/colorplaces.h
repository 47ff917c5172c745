#pragma once

#include <QColor>
#include <QPointF>
#include <QRectF>

/// A colour by hue (0 to 1), saturation (0 to 1) and value (0 to 1). Unlike QColor it keeps the hue of a grey.
struct HueColor
{
    double hue = 0.0;
    double saturation = 0.0;
    double value = 0.0;

    /// The colour with 8 bits a component. Qt 6 computes it in single precision, which this does with Qt 5,
    /// too.
    QColor color() const
    {
        const auto part = [](double number) { return static_cast<float>(number); };
        return {QColor::fromHsvF(part(hue), part(saturation), part(value)).rgb()};
    }
};

/// A screen colour; a grey gets the hue of `before`.
HueColor hueColor(const QColor &color, const HueColor &before);

/// The places of colours in a ring of hues around a triangle. The triangle's corners are the pure colour at the
/// top, white at the left and black at the right. The hue 0 is at the top and grows clockwise.
class ColorPlaces
{
public:
    /// area: a square.
    explicit ColorPlaces(const QRectF &area);

    bool isInRing(const QPointF &place) const;
    double hueAt(const QPointF &place) const;
    QPointF placeOfHue(double hue) const; ///< in the middle of the ring

    bool isInTriangle(const QPointF &place) const;
    /// The colour of the nearest place in the triangle, with the given hue.
    HueColor colorAt(const QPointF &place, double hue) const;
    QPointF placeOf(const HueColor &color) const;

    double outerRadius() const { return m_outer; }
    double innerRadius() const { return m_inner; }
    QPointF center() const { return m_center; }
    QPointF pure() const { return m_pure; }
    QPointF white() const { return m_white; }
    QPointF black() const { return m_black; }

private:
    /// The weights of the three corners at a place; they sum up to 1.
    struct Weights
    {
        double pure = 0.0;
        double white = 0.0;
        double black = 0.0;
    };
    Weights weightsAt(const QPointF &place) const;

    QPointF m_center;
    double m_outer;
    double m_inner;
    QPointF m_pure;
    QPointF m_white;
    QPointF m_black;
};
