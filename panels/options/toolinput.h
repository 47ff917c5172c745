#pragma once

#include <QString>
#include <QStringList>
#include <QVector>

/// A file that the tool writes besides the product, because the user asked for it.
struct SideFile
{
    QString argument;       ///< the tool's switch that the path follows ("-Skyline")
    QString path;           ///< absolute, or relative to the product's folder
    QStringList extensions; ///< those that the tool knows, without their dot
    QString more{};         ///< further arguments, each followed by a blank

    bool operator==(const SideFile &other) const = default;
};

/// What the options of a process contribute to the command line of the tool.
struct ToolInput
{
    QString fragment;       ///< argument fragment; it carries its own blanks and is inserted unchanged
    QString colorTableFile; ///< path of the colour table that the tool reads; empty: the process has no table
    /// Whether the tool reads a file of the work folder, which is removed when this program ends.
    bool readsTemporaryFile = false;
    QString attribute{}; ///< attribute that the tool writes into a vector product; empty: none
    QVector<SideFile> sideFiles{};
    /// Argument fragment of the shaded relief that darkens the colours of the product; empty: none does.
    QString shadeFragment{};
    int shadeStrength = 100; ///< percentage of that darkening
};
