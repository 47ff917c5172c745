#pragma once

#include "dataset/views/demfacts.h"
#include "panels/options/celluse.h"

#include <QLocale>
#include <QString>

/// What is done with a DEM so that the product of a process is right. The user's file is never changed: the
/// tool reads a view of it (dataset/views).
struct DemTreatment
{
    bool turn = false;       ///< the rows are read from the north, the columns from the west
    bool metres = false;     ///< cells and elevations are read in metres
    bool directions = false; ///< directions are corrected for cells that are not square

    bool isNeeded() const { return turn || metres || directions; }
    bool operator==(const DemTreatment &other) const = default;
};

/// The treatment that a process needs; none for a DEM that the tools understand as it is.
DemTreatment treatmentOf(const CellUse &use, const DemFacts &facts);

/// What the treatment does, in one line for the user: "Degrees: a cell is 77.0 m × 92.6 m." Empty where nothing
/// is done.
QString treatmentText(const DemTreatment &treatment, const DemFacts &facts, const CellUse &use,
                      const QLocale &locale);

/// What a ratio of units that the user chose means for the DEM: the size that the tool gives to a cell, and its
/// true size. Empty where both are the same to half a percent. `ratio`: vertical over horizontal unit.
QString ratioText(const DemFacts &facts, double ratio, const QLocale &locale);

/// Size of a cell in the middle of the DEM, in metres: "77.0 m × 92.6 m".
QString cellSizeText(const DemFacts &facts, const QLocale &locale);
