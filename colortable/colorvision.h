#pragma once

#include <QColor>

/// How an eye sees colours: with all three kinds of cones, or without those for red, green or blue.
enum class ColorVision
{
    Normal,
    Protanopia,
    Deuteranopia,
    Tritanopia
};

/// The colour that an eye of full colour vision would have to see, to see what the other eye sees. Alpha stays.
/// Computed on linear red, green and blue, after Viénot, Brettel and Mollon (1999) for protanopia and
/// deuteranopia, and Brettel, Viénot and Mollon (1997) for tritanopia.
QColor seenWith(const QColor &color, ColorVision vision);
