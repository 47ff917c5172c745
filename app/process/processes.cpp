#include "app/process/processes.h"

#include <QStringList>

#include <algorithm>
#include <iterator>

const ProcessRow &processRow(Process process)
{
    using enum Process;
    // clang-format off
    static constexpr ProcessRow rows[] = {
        {ShadedRelief, Tool::Dem, ProductKind::Raster, 1, 1, "hillshade", "shadedReliefIcon.png",
         {"MESS_OMBRES", "Ombres"},
         {"MESS_CALC_OMBR_RELIEF", "Calcul d'une image ombrée du relief."}},
        {Slope, Tool::Dem, ProductKind::Raster, 1, 4, "slope", "slopeIcon.png",
         {"MESS_PENTES", "Pentes"},
         {"MESS_CALC_CARTE_PENTE", "Calcul d'une carte des pentes."}},
        {Aspect, Tool::Dem, ProductKind::Raster, 1, 4, "aspect", "aspectIcon.png",
         {"MESS_ORIENTATIONS", "Orientations"},
         {"MESS_CALC_ORIENT_DEG", "Calcul d'une carte des orientations en degrés."}},
        {Intervisibility, Tool::Intervisibility, ProductKind::Raster, 3, 1, "intervisibility", "intervisibility.png",
         {"MESS_INTERVIS", "Intervisibilité"},
         {"MESS_CALC_INTERVIS", "Calcul d'une carte d'intervisibilité"}},
        {ColorRelief, Tool::Dem, ProductKind::Raster, 3, 1, "color", "colorReliefIcon.png",
         {"MESS_RELIEF_COUL", "Relief en couleur"},
         {"MESS_CALC_COUL_RELIEF", "Calcul d'une image en couleur du relief."}},
        {Contour, Tool::Contour, ProductKind::Vector, 0, 0, "contour_lines", "contoursIcon.png",
         {"MESS_CN", "Courbes de niveau"},
         {"MESS_CN_GEN_FIC_VECT", "Génération d'un fichier vectoriel de courbes de niveau"}},
        {TriTpiRoughness, Tool::Dem, ProductKind::Raster, 1, 4, "roughness", "AnalysisIcon.png",
         {"MESS_ANALYSE", "Analysis"},
         {"MESS_CALC_RESULTAT", "Calcul du résultat"}},
    };
    // clang-format on
    return *std::find_if(std::begin(rows), std::end(rows),
                         [&](const ProcessRow &row) { return row.process == process; });
}

const QVector<BatchProcess> &batchProcesses()
{
    static const QVector<BatchProcess> processes{
        {Process::ShadedRelief, ShadedOptions{}},
        {Process::Slope, SlopeOptions{}},
        {Process::Aspect, AspectOptions{}},
        {Process::TriTpiRoughness, TerrainIndexOptions{0}},
        {Process::TriTpiRoughness, TerrainIndexOptions{1}},
        {Process::TriTpiRoughness, TerrainIndexOptions{2}},
        {Process::Intervisibility, IntervisibilityOptions{}},
        {Process::ColorRelief, ColorReliefOptions{QStringLiteral("dtm.txt"), false, {}, {}, false, {}}},
        {Process::Contour, ContourOptions{}},
    };
    return processes;
}

const BatchProcess *findBatchProcess(const QString &word)
{
    const auto &all = batchProcesses();
    const auto found = std::find_if(all.begin(), all.end(), [&](const BatchProcess &process) {
        return word == processWord(process.defaults);
    });
    return found == all.end() ? nullptr : &*found;
}

QString unknownProcess(const QString &word)
{
    QStringList words;
    for (const BatchProcess &process : batchProcesses())
        words += processWord(process.defaults);
    return labelText({"MESS_TRAIT_INCONNU", "Traitement inconnu : « %1 ». Traitements : %2."})
        .arg(word, words.join(QLatin1String(", ")));
}
