#pragma once

#include "app/process/outputoptions.h"

#include <QByteArray>
#include <QString>

/// The description of one run, as a recipe file, the window's settings and the batch program's arguments hold
/// it.
struct Recipe
{
    QString process; ///< word of the process (processWord())
    QString input;   ///< path of the DEM; empty: it is named elsewhere
    QString output;  ///< path of the product; empty: it is named elsewhere
    int band = 1;    ///< band of the DEM, counted from 1
    OutputOptions outputOptions;
    ProcessOptions options;

    bool operator==(const Recipe &other) const = default;
};

/// A recipe that was read.
struct RecipeReading
{
    Recipe recipe;
    QString problem; ///< what is not valid, and where, in a sentence; empty for a good recipe
};

/// Reads a recipe, a JSON object (UTF-8):
///
///     {"format": 1, "process": "hillshade", "input": "dem.tif", "output": "relief.tif",
///      "band": 1, "outputFormat": "GTiff", "layerName": "contour", "tiled": false, "worldFile": false,
///      "overviews": false,
///      "options": {"altitude": 60}}
///
/// "format" and "process" are required. The output options are the names of outputOptionFields(), the members
/// of "options" the fields of the process's option record. A member that is not known is a problem, so that a
/// typing mistake is noticed. Relative paths are taken as relative to `folder`.
RecipeReading readRecipe(const QByteArray &json, const QString &folder);

/// Reads a recipe file of at most 64 MiB. The problem begins with the file's name.
RecipeReading readRecipeFile(const QString &name);

/// Writes the recipe as such an object, with every option of the process; colours and observers are held by
/// value. The text is UTF-8 and ends in a line feed.
QByteArray writeRecipe(const Recipe &recipe);
