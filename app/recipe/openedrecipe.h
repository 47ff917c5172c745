#pragma once

#include "app/process/commandline.h"
#include "app/recipe/recipe.h"

#include <QString>
#include <QStringList>

// Recipes that the window writes and opens.

/// The recipe of the window's request and of its panel's options.
Recipe recipeOf(const ProcessingRequest &request, const ProcessOptions &options);

/// A recipe that was opened, adapted to what the window can show.
struct OpenedRecipe
{
    Recipe recipe;        ///< an empty input means that the window keeps its own
    QStringList warnings; ///< what the window does not take over, in sentences
    QString problem;      ///< why the window takes nothing over, in a sentence; empty for a good recipe
};

/// Checks a recipe before the window changes anything: its values, format and colour table, and whether its
/// input can be read. Observers of a vector source become rows. `currentInput` is the window's DEM; empty:
/// there is none.
OpenedRecipe openRecipe(const RecipeReading &reading, const QString &currentInput);
