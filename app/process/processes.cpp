#include "app/process/processes.h"

#include <QStringList>

#include <algorithm>
#include <iterator>
#include <utility>

namespace
{

using enum Process;

// clang-format off
constexpr ProcessRow rows[] = {
    {ShadedRelief, Tool::Dem, ProductKind::Raster, 1, 1, false, "hillshade", "shadedReliefIcon.png", "shaded_relief",
     {"MESS_OMBRES", "Ombres"},
     {"MESS_CALC_OMBR_RELIEF", "Calcul d'une image ombrée du relief."}},
    {Slope, Tool::Dem, ProductKind::Raster, 1, 4, false, "slope", "slopeIcon.png", "slope",
     {"MESS_PENTES", "Pentes"},
     {"MESS_CALC_CARTE_PENTE", "Calcul d'une carte des pentes."}},
    {Aspect, Tool::Dem, ProductKind::Raster, 1, 4, false, "aspect", "aspectIcon.png", "aspect",
     {"MESS_ORIENTATIONS", "Orientations"},
     {"MESS_CALC_ORIENT_DEG", "Calcul d'une carte des orientations en degrés."}},
    {Intervisibility, Tool::Intervisibility, ProductKind::Raster, 3, 1, false, "intervisibility",
     "intervisibility.png", "intervisibility",
     {"MESS_INTERVIS", "Intervisibilité"},
     {"MESS_CALC_INTERVIS", "Calcul d'une carte d'intervisibilité"}},
    {ColorRelief, Tool::Dem, ProductKind::Raster, 3, 1, true, "color", "colorReliefIcon.png", "colour_relief",
     {"MESS_RELIEF_COUL", "Relief en couleur"},
     {"MESS_CALC_COUL_RELIEF", "Calcul d'une image en couleur du relief."}},
    {Contour, Tool::Contour, ProductKind::Vector, 0, 0, false, "contour_lines", "contoursIcon.png", "contour_lines",
     {"MESS_CN", "Courbes de niveau"},
     {"MESS_CN_GEN_FIC_VECT", "Génération d'un fichier vectoriel de courbes de niveau"}},
    {TriTpiRoughness, Tool::Dem, ProductKind::Raster, 1, 4, false, "roughness", "AnalysisIcon.png", "terrain_indices",
     {"MESS_ANALYSE", "Analysis"},
     {"MESS_CALC_RESULTAT", "Calcul du résultat"}},
};
// clang-format on
static_assert(hasRowOfEachProcess(rows), "Every process needs a row, in the order of the enumeration.");
static_assert(std::variant_size_v<ProcessOptions> == processCount, "Every process needs an option record.");

template <class Record> void addWords(QVector<NamedProcess> &processes, const Record &defaults)
{
    processes += {processOf(defaults), defaults};
}

/// Each terrain index has a word of its own.
void addWords(QVector<NamedProcess> &processes, const TerrainIndexOptions &)
{
    for (int type = 0; type < terrainIndexCount; ++type)
        processes += {TriTpiRoughness, TerrainIndexOptions{.type = type}};
}

template <std::size_t... indexes> QVector<NamedProcess> allWords(std::index_sequence<indexes...>)
{
    QVector<NamedProcess> processes;
    (addWords(processes, std::variant_alternative_t<indexes, ProcessOptions>{}), ...);
    return processes;
}

} // namespace

const ProcessRow &processRow(Process process)
{
    return rows[static_cast<std::size_t>(process)];
}

QString helpPage(std::optional<Process> process)
{
    return QString::fromLatin1(process ? processRow(*process).page : "index");
}

bool usesNeighbours(Process process)
{
    const ProcessRow &row = processRow(process);
    return row.tool == Tool::Dem && !row.takesColorTable;
}

bool mayReproject(Process process)
{
    return process == Contour || process == Intervisibility;
}

Process processOf(const ProcessOptions &options)
{
    return static_cast<Process>(options.index());
}

const QVector<NamedProcess> &namedProcesses()
{
    static const QVector<NamedProcess> processes = allWords(std::make_index_sequence<processCount>());
    return processes;
}

const NamedProcess *findProcess(const QString &word)
{
    const auto &all = namedProcesses();
    const auto found = std::find_if(all.begin(), all.end(), [&](const NamedProcess &process) {
        return word == processWord(process.defaults);
    });
    return found == all.end() ? nullptr : &*found;
}

QString unknownProcessProblem(const QString &word)
{
    QStringList words;
    for (const NamedProcess &process : namedProcesses())
        words += processWord(process.defaults);
    return labelText({"MESS_TRAIT_INCONNU", "Traitement inconnu : « %1 ». Traitements : %2."})
        .arg(word, words.join(QLatin1String(", ")));
}
