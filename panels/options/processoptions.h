#pragma once

#include "panels/options/fragments.h"
#include "panels/options/recordfields.h"

#include <variant>

/// The option record of any process. A new process adds its record here, and in the .cpp file a block with its
/// fields, a word and a fragment.
using ProcessOptions = std::variant<ShadedOptions, SlopeOptions, AspectOptions, IntervisibilityOptions,
                                    ColorReliefOptions, ContourOptions, TerrainIndexOptions>;

/// The process's word in recipes and on the command line, and the mode of the DEM tool ("hillshade", "TPI").
QString processWord(const ProcessOptions &options);

/// The argument fragment of the options (panels/options/fragments.h). The intervisibility's fragment lacks the
/// file of the observers.
QString argumentFragment(const ProcessOptions &options);

/// Why the process cannot run with the options, in a sentence; empty for good options.
QString optionsProblem(const ProcessOptions &options);

/// Why a ratio of units cannot be used, in a sentence; empty for a row of the scale list and for a typed
/// positive number.
QString scaleProblem(int scaleIndex, const QString &scaleText);

/// What a ratio of units lacks that is neither chosen nor typed, as a sentence that says what to do; empty
/// where it is one of both.
QString missingScale(int scaleIndex, const QString &scaleText);

/// The ratio of units that the user chose, vertical over horizontal; nothing where the first row of the scale
/// list is chosen, the ratio cannot be used, or the process has none.
std::optional<double> chosenRatio(const ProcessOptions &options);

/// Why a field holds a wrong value, in a sentence; empty for good values. Unlike optionsProblem() it accepts
/// options that are not complete yet.
QString valuesProblem(const ProcessOptions &options);

/// Completes options after setOption() has set the fields `givenFields`. A typed ratio that was given is used.
/// A table and colours replace each other: the one that was not given is cleared. Relative names of given files
/// count from `folder`.
void completeOptions(ProcessOptions &options, const QStringList &givenFields, const QString &folder);

/// Sets a field by its name, to a text or a JSON value. Returns the problem in a sentence, which lists the
/// known fields for an unknown name; empty when the field is set.
QString setOption(ProcessOptions &options, const QString &name, const QVariant &value);

/// The record as JSON values that setOption() accepts: every field by its name. Null stands for a number that
/// is not given; observers and colours are rows.
QVariantMap optionValues(const ProcessOptions &options);

/// The options without the files that the tool writes besides the product.
ProcessOptions withoutSideFiles(ProcessOptions options);

/// The fields of the record, with its values as their defaults.
QVector<FieldDescription> describeOptions(const ProcessOptions &options);

/// Whether the product depends on the DEM's extreme elevations: they decide the number of contour lines, and
/// the elevations that a colour table is spread over.
bool needsExtremes(const ProcessOptions &options);

/// The compass reading of a shaded relief in degrees; nothing for several suns and for any other process.
std::optional<double> compassOf(const ProcessOptions &options);
