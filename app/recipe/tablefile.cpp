#include "app/recipe/tablefile.h"

#include "colortable/colortablefile.h"
#include "dataset/extremes.h"
#include "messages/label.h"
#include "panels/options/maprampcolors.h"

#include <QDir>
#include <QFileInfo>

namespace
{

/// Reads the colours of the options or, where there are none, the file. Colours of the options are never plain:
/// the tool has no file of them yet.
ColorTableReading readTable(const ColorReliefOptions &options, const QString &file)
{
    if (options.colors.isEmpty())
        return readColorTable(file);
    ColorTableReading reading = parseColorTable(exactTableText(options.colors));
    reading.plain = false;
    return reading;
}

QString readingProblem(const ColorTableReading &reading, const QString &file, bool spread)
{
    if (!reading.problem.isEmpty())
        return reading.problem;
    if (reading.invalidValues)
        return labelText({"MESS_TC_LIGNE_INV", "La ligne %1 de la table couleur « %2 » n'est pas valable."})
            .arg(QString::number(reading.invalidLine), file);
    if (elevationEntries(reading.entries).isEmpty())
        return labelText({"MESS_TC_VIDE", "La table couleur « %1 » ne contient aucune couleur."}).arg(file);
    return spread ? spreadProblem(file, reading) : QString();
}

/// The text of a table file.
struct TableText
{
    QByteArray text;
    QString problem; ///< why there is no text, in a sentence; empty for a good text
};

/// The table spread over the elevations that the options name, or over those of every cell of the band.
TableText spreadText(const QList<QuvoColorDef> &entries, const ColorReliefOptions &options, const QString &dem,
                     int band, const StopCheck &isStopped)
{
    Extremes extremes;
    if (!options.minimum || !options.maximum)
        extremes = exactExtremes(dem, band, isStopped);
    const double minimum = options.minimum.value_or(extremes.minimum);
    const double maximum = options.maximum.value_or(extremes.maximum);
    if (!(options.minimum && options.maximum) && !extremes.known)
        return {{},
                labelText({"MESS_TC_SANS_ALTITUDE",
                           "Le MNT n'a pas d'altitudes lisibles sur lesquelles étaler la table couleur."})};
    if (minimum > maximum)
        return {{}, labelText({"MESS_TC_BORNES", "minimum ne doit pas dépasser maximum."})};
    return {spreadTable(entries, minimum, maximum).text, {}};
}

} // namespace

Extremes exactExtremes(const QString &dem, int band, const StopCheck &isStopped)
{
    constexpr int slice = 200; // milliseconds
    ExtremesReader reader(dem, band, ExtremesReader::Exact);
    while (!isStopped() && reader.advance(slice)) { }
    return reader.extremes();
}

QString colorTableFile(const QString &name)
{
    const ColorReliefOptions defaults;
    if (name != defaults.table && QFileInfo::exists(name))
        return name;
    const QDir library(tableLibraryFolder());
    const QString wanted = name.isEmpty() ? defaults.table : name;
    for (const QString &file : {wanted, wanted + QStringLiteral(".txt")}) {
        if (library.exists(file))
            return library.filePath(file);
    }
    return name;
}

QString colorTableProblem(const ColorReliefOptions &options)
{
    const QString file = colorTableFile(options.table);
    return readingProblem(readTable(options, file), file, options.spread);
}

bool mixesUnits(const ColorReliefOptions &options)
{
    return readTable(options, colorTableFile(options.table)).mixedUnits;
}

ToolTable prepareTable(const ColorReliefOptions &options, const QString &dem, int band, WorkFolder &workFolder,
                       const StopCheck &isStopped)
{
    ToolTable table;
    table.file = colorTableFile(options.table);
    const ColorTableReading reading = readTable(options, table.file);
    table.notes = reading.notes;
    table.problem = readingProblem(reading, table.file, options.spread);
    if (!table.problem.isEmpty() || (!options.spread && reading.plain))
        return table;

    const TableText text = options.spread ? spreadText(reading.entries, options, dem, band, isStopped)
                                          : TableText{toolTableText(reading.entries), {}};
    table.problem = text.problem;
    if (!table.problem.isEmpty())
        return table;
    table.isTemporary = true;
    table.file = freeTableName(workFolder.path(), QStringLiteral("quvoColorTable"));
    const QString problem = writeTableFile(table.file, text.text);
    if (!problem.isEmpty())
        table.problem =
            labelText({"MESS_TC_NON_ECRITE", "« %1 » ne peut pas être écrit : %2"}).arg(table.file, problem);
    return table;
}

void holdTableByValue(ProcessOptions &options, const QString &file)
{
    auto *colors = std::get_if<ColorReliefOptions>(&options);
    if (!colors)
        return;
    colors->colors = readColorTable(file).entries;
    colors->spread = false;
    colors->minimum.reset();
    colors->maximum.reset();
}
