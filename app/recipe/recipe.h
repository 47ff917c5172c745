#pragma once

#include "app/process/processes.h"

#include <QByteArray>
#include <QString>

/// Everything that one run is asked to do, as a recipe file holds it. The window's settings and the batch
/// program's arguments say the same.
struct Recipe
{
    QString process;      ///< word of the process (BatchProcess::word)
    QString input;        ///< empty where it is given elsewhere
    QString output;       ///< likewise
    int band = 1;         ///< of the input, counted from 1
    QString outputFormat; ///< GDAL's short driver name; empty: the product's usual one
    QString layerName;    ///< of a vector product; empty: the usual one
    bool overviews = false;
    bool tiled = false;
    bool worldFile = false;
    ProcessOptions options;

    bool operator==(const Recipe &other) const = default;
};

/// A recipe that was read, or why it could not be.
struct RecipeReading
{
    Recipe recipe;
    QString problem; ///< what is wrong and where, in a sentence; empty for a good recipe
};

/// Reads a recipe, a JSON object (UTF-8):
///
///     {"format": 1, "process": "hillshade", "input": "dem.tif", "output": "relief.tif",
///      "band": 1, "outputFormat": "GTiff", "layerName": "contour", "tiled": false, "worldFile": false,
///      "overviews": false,
///      "options": {"altitude": 60}}
///
/// "format" and "process" are required. The members of "options" are the fields of the process's option record.
/// A member that is not known is an error, so that a slip of the pen is noticed. Relative paths are relative to
/// `folder`.
RecipeReading readRecipe(const QByteArray &json, const QString &folder);

/// Reads the recipe of a file of at most 64 MiB; the error names it.
RecipeReading readRecipeFile(const QString &name);

/// The recipe as such an object, with every option; colours and observers by value. A text of ASCII and UTF-8
/// lines that ends in a line feed.
QByteArray writeRecipe(const Recipe &recipe);
