#pragma once

#include "dataset/views/demfacts.h"

#include <QSizeF>
#include <QVector>

// How large the cells of a DEM are on the ground. Rows count from 0 at the file's first row.

/// Width and height in metres of the cells around a row, which may lie between two centres of rows (the centre
/// of row 0 is 0.5). On an ellipsoid a step of latitude is a piece of the meridian and a step of longitude a
/// piece of the parallel; a projection that distorts by more than 1 % is taken into account; without a CRS
/// units count as metres. Always positive.
QSizeF trueCell(const DemFacts &facts, double row);

/// Whether all cells are squares on the ground, to a thousandth.
bool areCellsSquare(const DemFacts &facts);

/// Rows that are computed with one size of cells.
struct RowStrip
{
    int first = 0; ///< first row
    int count = 0; ///< number of rows

    bool operator==(const RowStrip &other) const = default;
};

/// The row whose cells stand for those of a strip, as trueCell() takes it.
double middleRow(const RowStrip &strip);

/// Divides the rows of a DEM into strips within which the size of the cells differs from that of the middle row
/// by no more than the share `tolerance` (0.005: 0.5 %), and which are no higher than 2° of latitude. There are
/// at most 256 strips; near a pole, where that does not suffice, they are less exact.
QVector<RowStrip> rowStrips(const DemFacts &facts, double tolerance);
