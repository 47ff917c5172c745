// Feeds any bytes to the reader of colour tables.

#include "colortable/colortablefile.h"
#include "tests/fuzz/fuzzing.h"

#include <algorithm>
#include <cmath>

namespace
{

QList<QuvoColorDef> reread(const QByteArray &text)
{
    const ColorTableReading reading = parseColorTable(text);
    require(reading.problem.isEmpty() && !reading.invalidValues, "a table that was written can be read");
    return reading.entries;
}

void checkEntries(const QList<QuvoColorDef> &entries)
{
    const auto byValue = [](const QuvoColorDef &one, const QuvoColorDef &other) {
        return one.value < other.value;
    };
    require(std::is_sorted(entries.begin(), entries.end(), byValue), "a table is sorted by value");
    for (const QuvoColorDef &entry : entries) {
        require(std::isfinite(entry.value) && entry.color.isValid(), "an entry has a value and a colour");
        require(!entry.percent || (entry.value >= 0.0 && entry.value <= 100.0), "a percentage is one");
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    const ColorTableReading reading = parseColorTable(fuzzBytes(data, size));
    const QList<QuvoColorDef> &entries = reading.entries;
    checkEntries(entries);
    require(reading.invalidValues == (reading.invalidLine > 0), "a skipped line has a number");
    require(reading.problem.isEmpty() || entries.isEmpty(), "a refused table has no entries");

    const QList<QuvoColorDef> forTool = reread(toolTableText(entries));
    require(elevationEntries(forTool) == toolEntries(entries), "the tool's layout keeps the entries");
    require(!noDataEntry(entries) || *noDataEntry(forTool) == *noDataEntry(entries), "and the no-data entry");
    const auto isNextToNoData = [](const QuvoColorDef &entry) { // becomes no-data by the one decimal
        return !entry.isNoData() && std::abs(entry.value - QuvoColorDef::noDataValue) < 0.1;
    };
    const QList<QuvoColorDef> edited = reread(colorTableText(entries));
    if (std::none_of(entries.begin(), entries.end(), isNextToNoData))
        require(reread(colorTableText(edited)) == edited, "the editor's layout comes back");

    const auto spread = reread(spreadTable(entries, -11000.0, 8849.0).text);
    require(elevationEntries(spread).size() == elevationEntries(entries).size(), "a spread loses no entry");
    return 0;
}
