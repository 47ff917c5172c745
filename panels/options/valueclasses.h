#pragma once

#include "panels/options/fragments.h"

#include <QByteArray>
#include <QString>
#include <QStringList>

// Slopes and directions in classes: half-open intervals, each with a colour and a text.

/// The words of SlopeOptions::classes that name a table of this program, in the order of the list.
QStringList slopeClassWords();

/// The classes of a slope product, in the unit of the product; empty where the options ask for none. A table of
/// the user's is read anew.
ClassTable slopeClasses(const SlopeOptions &options);

/// The 8 or 16 directions of an aspect product, in the angles of the product; empty where the options ask for
/// none. The first and the last class are both the north.
ClassTable directionClasses(const AspectOptions &options);

/// The two files of the classes beside a product: the picture and its legend. Empty without classes.
QVector<SideFile> classFiles(const ClassTable &table);

/// What the options contribute to a run, with the files of their classes.
ToolInput slopeInput(const SlopeOptions &options);
ToolInput aspectInput(const AspectOptions &options);

/// A colour of a legend and what it stands for.
struct ClassRow
{
    QRgb color;
    QString text;
};

/// The rows of a legend without that of the void cells. Two classes of one text, the north at both ends of the
/// angles, share a row.
QVector<ClassRow> classRows(const ClassTable &table);

/// Number of the class that holds the value, from 0; values below the first class belong to it.
int classOf(const ClassTable &table, double value);

/// The table as a file for the DEM tool, which draws straight lines between its entries: each class ends at the
/// 32-bit number just below the next one's first, so that no cell lies between two classes.
QByteArray classTableText(const ClassTable &table);
