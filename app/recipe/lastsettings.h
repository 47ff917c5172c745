#pragma once

#include "app/recipe/recipe.h"

#include <QList>

// The settings that the window takes up at its next start: a JSON file in the folder of the user's settings.

/// One recipe of each process, that of the current tab last. Damaged recipes are skipped; an unreadable file
/// gives an empty list.
QList<Recipe> readLastSettings(const QString &file);

/// Writes the file anew. Returns whether that succeeded; if not, the file is as it was.
bool writeLastSettings(const QString &file, const QList<Recipe> &recipes);
