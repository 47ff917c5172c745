#pragma once

#include "app/process/commandline.h"
#include "app/recipe/recipe.h"
#include "dataset/workfolder.h"

#include <QString>
#include <QStringList>

// Recipes that the window saves and opens.

/// The recipe of a request and of the options of its panel.
Recipe recipeOf(const ProcessingRequest &request, const ProcessOptions &options);

/// A recipe that was opened, adapted to what the window can show.
struct OpenedRecipe
{
    Recipe recipe;        ///< with an empty input the window keeps its own DEM
    QStringList warnings; ///< sentences about what the window cannot show
    QString problem;      ///< why the window cannot show the recipe, in a sentence; empty for a good recipe
};

/// Checks and adapts a recipe before the window changes anything. A wrong value, format, colour table or vector
/// source is a problem; an input that cannot be read and a missing band are warnings. Observers of a vector
/// source are read into the list of observers. `currentInput` is the path of the window's DEM, empty where it
/// has none. The mosaic of the recipe's tiles is made in the work folder, and is then the recipe's input.
OpenedRecipe openRecipe(const RecipeReading &reading, const QString &currentInput, WorkFolder &workFolder);
