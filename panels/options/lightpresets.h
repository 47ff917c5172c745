#pragma once

#include "panels/options/fragments.h"

#include <QString>
#include <QVector>

/// A light under a name: direction and height of the sun, kind of light, exaggeration and method.
struct LightPreset
{
    QString name; ///< as the user reads it
    ShadedOptions options;
    bool isOwn = false; ///< the user saved it and may delete it
};

/// The program's own lights, the usual one first, with their names in the current language.
QVector<LightPreset> builtInLights();

/// The options in the light of a preset. What depends on the DEM, the units and the edges, stays.
ShadedOptions withLight(ShadedOptions options, const ShadedOptions &light);

/// Whether both have the same light; units and edges do not count.
bool isSameLight(const ShadedOptions &one, const ShadedOptions &other);

/// Where the user's own lights are kept.
class LightShelf
{
public:
    virtual ~LightShelf() = default;
    /// The user's lights by their names, in alphabetical order.
    virtual QVector<LightPreset> lights() const = 0;
    /// Keeps a light under a name, in place of one that had it. Returns the problem in a sentence, or nothing.
    virtual QString keep(const QString &name, const ShadedOptions &light) = 0;
    /// Likewise; a light that is not there is no problem.
    virtual QString remove(const QString &name) = 0;
};
