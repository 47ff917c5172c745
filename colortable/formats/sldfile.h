#pragma once

#include "colortable/colortablefile.h"

/// Reads the first colour map of a Styled Layer Descriptor 1.0 (ColorMap of type "ramp", "intervals" or
/// "values") or a Symbology Encoding 1.1 style (Interpolate, Categorize). The quantity of an interval is the
/// bound above it and not part of it; above the last bound nothing is painted.
ColorTableReading readSld(const QByteArray &xml);
