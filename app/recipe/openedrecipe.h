#pragma once

#include "app/process/commandline.h"
#include "app/recipe/recipe.h"

#include <QString>

// Recipes that the window writes and opens.

/// The recipe of the window's request and of its panel's options.
Recipe recipeOf(const ProcessingRequest &request, const ProcessOptions &options);

/// A recipe that was opened, as the window takes it.
struct OpenedRecipe
{
    Recipe recipe;        ///< an empty input: the window's own stays
    QStringList warnings; ///< what the window does not take over, in sentences
    QString problem;      ///< why it takes nothing, in a sentence; empty for a good recipe
};

/// Looks at a recipe before the window changes anything: its values, format and colour table, whether its input
/// can be read, and the observers of a vector source, which become rows. currentInput: the window's DEM, empty
/// for none.
OpenedRecipe openRecipe(const RecipeReading &reading, const QString &currentInput);
