#pragma once

#include "panels/options/lightpresets.h"

/// The user's lights as recipes in a folder, one file for each. Any of them opens as settings, too.
class LightRecipes : public LightShelf
{
public:
    /// `folder` may not exist yet.
    explicit LightRecipes(const QString &folder)
        : m_folder(folder)
    { }

    /// Files that are no recipes of a shaded relief are left out.
    QVector<LightPreset> lights() const override;
    QString keep(const QString &name, const ShadedOptions &light) override;
    QString remove(const QString &name) override;

private:
    QString fileOf(const QString &name) const;

    QString m_folder;
};
