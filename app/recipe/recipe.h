#pragma once

#include "app/process/commandline.h"

#include <QByteArray>
#include <QRect>
#include <QString>
#include <QStringList>

/// The settings of one run: what a recipe file, the window and the batch program's arguments describe.
struct Recipe
{
    QString process; ///< word of the process (processWord())
    QString input;   ///< path of the DEM; empty: the window or the command line names it
    /// At least two files that are one DEM together; empty: the DEM is one file. The input is then the
    /// temporary mosaic of them, or empty while there is none; a recipe does not hold its path.
    QStringList tiles = {};
    QString output; ///< path of the product; empty: the window or the command line names it
    int band = 1;   ///< band of the DEM, counted from 1
    QRect part{};   ///< cells of the DEM that the product covers (partText()); a null rectangle: the whole DEM
    OutputOptions outputOptions;
    ProcessOptions options;

    bool operator==(const Recipe &other) const = default;
};

/// The result of reading a recipe.
struct RecipeReading
{
    Recipe recipe;
    QString problem; ///< what in the recipe is not valid, in a sentence; empty for a good recipe
};

/// Reads a recipe, a JSON object (UTF-8):
///
///     {"format": 1, "process": "hillshade", "input": "dem.tif", "output": "relief.tif",
///      "band": 1, "tiled": true, "options": {"altitude": 60}}
///
/// "format" and "process" are required. The names of the output options, such as "tiled", are those of
/// outputOptionFields(), the members of "options" are the fields of the process's option record. An unknown
/// member is a problem, so that typing mistakes are noticed. Relative paths are relative to `folder`. In place
/// of "input", "tiles" is a list of at least two files that are one DEM together: ["a.hgt", "b.hgt"].
RecipeReading readRecipe(const QByteArray &json, const QString &folder);

/// The file whose folder and base name name the products of the recipe's DEM: the input, or mosaicName().
QString namingInput(const Recipe &recipe);

/// Returns the options for one DEM of a series: each file that the tool is to write besides the product gets a
/// name made from `product`, the product's file. Other options are not changed.
ProcessOptions withOwnSideFiles(ProcessOptions options, const QString &product);

/// Reads a recipe file of at most 64 MiB. The problem begins with the file's name.
RecipeReading readRecipeFile(const QString &name);

/// Formats the recipe as such an object with every option of the process, including its colours and observers.
/// The text is UTF-8 and ends in a line feed.
QByteArray writeRecipe(const Recipe &recipe);
