#pragma once

#include "dataset/contours/areaclasses.h"

#include <QByteArray>
#include <QString>

/// What a QGIS style must know of a file of contours. Fields are named as in the file.
struct QgisContours
{
    QString indexField; ///< holds 1 for index lines, else 0; empty: all lines are alike
    QString levelField; ///< elevation of a line; empty: index lines have no labels
    // Of areas:
    QString lowestField;
    QString highestField;
    QVector<AreaClass> classes; ///< the classes of the areas; empty if the features are lines

    bool operator==(const QgisContours &other) const = default;
};

/// The text of a .qml file for QGIS 3, in UTF-8: lines with thick, labelled index lines, or areas coloured by
/// elevation. The labels stand along their lines with the head to the left of the line's direction.
QByteArray qgisStyle(const QgisContours &contours);
