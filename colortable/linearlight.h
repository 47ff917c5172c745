#pragma once

// The screen's levels (sRGB, 0 to 255) and the amount of light that they stand for (0 to 1).

double linearPart(int level);
int screenLevel(double part);
