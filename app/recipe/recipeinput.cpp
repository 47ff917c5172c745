#include "app/recipe/recipeinput.h"

#include "app/recipe/observerfile.h"
#include "panels/options/contours/contourinput.h"
#include "panels/options/contours/contourlevels.h"
#include "panels/options/valueclasses.h"

namespace
{

/// Adds the tool's input besides the argument fragment: colour table, observers, warnings. Each process with
/// such an input has an overload.
class Preparation
{
public:
    Preparation(RecipeInput &input, const QString &dem, int band, WorkFolder &workFolder,
                const StopCheck &isStopped)
        : m_input(input)
        , m_dem(dem)
        , m_band(band)
        , m_workFolder(workFolder)
        , m_isStopped(isStopped)
    { }

    template <class Record> void operator()(const Record &) const { }

    void operator()(const ColorReliefOptions &options) const
    {
        const ToolTable table = prepareTable(options, m_dem, m_band, m_workFolder, m_isStopped);
        m_input.toolInput.colorTableFile = table.file;
        m_input.toolInput.readsTemporaryFile = table.isTemporary;
        m_input.toolInput = withShade(m_input.toolInput, options);
        m_input.warnings = table.notes;
        m_input.problem = table.problem;
    }

    void operator()(const IntervisibilityOptions &options) const
    {
        const ToolObservers observers = prepareObservers(options, m_dem, m_band, m_workFolder);
        m_input.toolInput.fragment = observers.fragment;
        m_input.toolInput.sideFiles = sideFiles(options);
        m_input.toolInput.readsTemporaryFile = true;
        m_input.sourceFiles = observers.sourceFiles;
        m_input.warnings = observers.warnings;
        m_input.problem = observers.problem;
    }

    void operator()(const SlopeOptions &options) const { m_input.toolInput = slopeInput(options); }
    void operator()(const AspectOptions &options) const { m_input.toolInput = aspectInput(options); }

    void operator()(const ContourOptions &options) const
    {
        const Extremes extremes =
            hasBothLevels(options) ? exactExtremes(m_dem, m_band, m_isStopped) : Extremes();
        m_input.toolInput = contourInput(options, extremes);
        m_input.problem = mergedLevelsProblem(options, extremes);
        m_input.warnings = roundedNumberWarnings(options);
        if (options.interval)
            m_input.warnings += manyLevelsWarnings(options, estimatedExtremes(m_dem, m_band));
    }

private:
    RecipeInput &m_input;
    const QString &m_dem;
    int m_band;
    WorkFolder &m_workFolder;
    const StopCheck &m_isStopped;
};

} // namespace

ProcessingRequest requestOf(const Recipe &recipe, const ToolInput &toolInput)
{
    return {.process = processOf(recipe.options),
            .mode = recipe.process,
            .input = recipe.input,
            .tiles = recipe.tiles,
            .band = recipe.band,
            .part = recipe.part,
            .output = recipe.output,
            .outputOptions = recipe.outputOptions,
            .toolInput = toolInput,
            .cellUse = cellUse(recipe.options)};
}

RecipeInput prepareInput(const ProcessOptions &options, const QString &dem, int band, WorkFolder &workFolder,
                         const StopCheck &isStopped)
{
    RecipeInput input;
    input.toolInput.fragment = argumentFragment(options);
    std::visit(Preparation(input, dem, band, workFolder, isStopped), options);
    return input;
}
