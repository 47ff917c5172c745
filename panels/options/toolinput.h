#pragma once

#include <QRgb>
#include <QString>
#include <QStringList>
#include <QVector>

/// Values from `low` up to the next class, which does not belong to it. The last class has no upper end.
struct ValueClass
{
    double low = 0.0; ///< lowest value of the class; minus infinity for the first class
    QRgb color = 0;
    QString text; ///< its bounds with their unit, in the language in use

    bool operator==(const ValueClass &other) const = default;
};

/// The classes of a product's values, in rising order.
struct ClassTable
{
    QVector<ValueClass> classes{}; ///< empty: the values are not divided into classes
    QRgb voidColor = 0;            ///< colour of the cells that belong to no class
    QString voidText{};
    QString title{};   ///< what the values are
    QString problem{}; ///< why there are no classes, in a sentence; empty otherwise

    bool operator==(const ClassTable &other) const = default;
};

/// A file that a run writes besides the product, because the user asked for it.
struct SideFile
{
    QString argument;       ///< the tool's switch that the path follows ("-Skyline"); empty: no tool gets it
    QString path;           ///< absolute, or relative to the product's folder; empty: named with `word`
    QStringList extensions; ///< those that the tool knows, without their dot
    QString more{};         ///< further arguments, each followed by a blank
    QString word{};         ///< what follows the product's name in the file's own (sideFileName())

    bool operator==(const SideFile &other) const = default;
};

/// What surrounds the contour tool in the way to a product of contours.
struct ContourSteps
{
    int smoothing = 0;       ///< radius in cells by which the DEM is smoothed first; 0: not at all
    bool isFinished = false; ///< the tool writes a file between the steps, of which the product is made
    QString linesFragment{}; ///< fragment for such a file; empty: the process draws no contours
    /// The options ("indexEvery=5") of the smoothing and of what is done with that file.
    QStringList settings{};
    bool writesStyle = false; ///< a QGIS style stands beside the product

    bool operator==(const ContourSteps &other) const = default;
};

/// What the options of a process contribute to the command line of the tool.
struct ToolInput
{
    QString fragment;       ///< argument fragment; it carries its own blanks and is inserted unchanged
    QString colorTableFile; ///< path of the colour table that the tool reads; empty: the process has no table
    /// Whether the tool reads a file of the work folder, which is removed when this program ends.
    bool readsTemporaryFile = false;
    QStringList attributes{}; ///< names of the attributes for elevations in a vector product
    QVector<SideFile> sideFiles{};
    /// Argument fragment of the shaded relief that darkens the colours of the product; empty: none does.
    QString shadeFragment{};
    int shadeStrength = 100; ///< percentage of that darkening
    ClassTable classes{};    ///< with classes, the side files are their picture and their legend
    ContourSteps contours{};
};
