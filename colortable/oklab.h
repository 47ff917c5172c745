#pragma once

#include "colortable/QuvoColorDef.h"

/// A colour in OKLab, a space in which equal distances look equal. Source: B. Ottosson, "A perceptual color
/// space for image processing" (2020).
struct OkLab
{
    double lightness = 0.0; ///< 0 for black, 1 for white
    double a = 0.0;         ///< negative values are greenish, positive ones reddish
    double b = 0.0;         ///< negative values are bluish, positive ones yellowish
};

OkLab toOkLab(const QColor &color);

/// The nearest colour of the screen.
QColor fromOkLab(const OkLab &color, int alpha);

/// The colour at a part (0 to 1) of the straight line between two colours in OKLab; alpha runs straight, too.
QColor evenMixture(const QColor &from, const QColor &to, double part);

/// The entries between two neighbours whose colours run evenly to the eye. The DEM tool draws straight lines in
/// red, green and blue, so the segment is halved until these lines are within one of 255 levels of the even
/// ones. Values are multiples of `step`, above 0, as the file keeps them; neither end is among the entries.
QList<QuvoColorDef> evenEntries(const QuvoColorDef &from, const QuvoColorDef &to, double step);
