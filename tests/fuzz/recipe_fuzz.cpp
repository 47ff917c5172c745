// Feeds any bytes to the reader of recipes. Qt 5's parser loses parts of some texts that it refuses: run the
// fuzzer with ASAN_OPTIONS=detect_leaks=0.

#include "app/recipe/recipe.h"
#include "tests/fuzz/fuzzing.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    const RecipeReading reading = readRecipe(fuzzBytes(data, size), QStringLiteral("/some/folder"));
    if (!reading.problem.isEmpty())
        return 0;
    const Recipe &recipe = reading.recipe;
    require(findProcess(recipe.process) != nullptr && recipe.band >= 1,
            "a good recipe names a process and a band");
    require(!recipe.input.contains(QChar(0)) && !recipe.output.contains(QChar(0)), "no path is cut");
    const RecipeReading again = readRecipe(writeRecipe(recipe), QStringLiteral("/else"));
    require(again.problem.isEmpty(), "a recipe that was written can be read");
    require(again.recipe == recipe, "a recipe comes back as it was");
    return 0;
}
