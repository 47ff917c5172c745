#pragma once

#include "panels/options/fragments.h"
#include "panels/options/recordfields.h"

#include <variant>

/// The option record of any process, in the order of the enumeration in app/process/processes. A new process
/// adds its record here, and its table of fields, its word and its fragment in the .cpp file.
using ProcessOptions = std::variant<ShadedOptions, SlopeOptions, AspectOptions, IntervisibilityOptions,
                                    ColorReliefOptions, ContourOptions, TerrainIndexOptions>;

/// The process's word in recipes and on the command line, and the mode of the DEM tool ("hillshade", "TPI").
QString processWord(const ProcessOptions &options);

/// Why the process would not understand the options, in a sentence; empty when they are good.
QString optionsProblem(const ProcessOptions &options);

/// Why a field holds what is none of its values, in a sentence; empty for options that may lack something yet.
QString valuesProblem(const ProcessOptions &options);

/// What a field that was given implies for one that was not: a typed ratio is used, and another
/// table takes the place of one by value.
void settle(ProcessOptions &options, const QStringList &givenFields);

/// Takes the names of files in the options for names in that folder where they are relative.
void resolveFiles(ProcessOptions &options, const QString &folder);

/// The argument fragment of the options (panels/options/fragments.h); without the file of the observers, which
/// whoever writes it adds.
QString argumentFragment(const ProcessOptions &options);

/// Sets the field of that name. Returns why it could not, in a sentence that names the fields there are where
/// the name is unknown; empty when it did.
QString setOption(ProcessOptions &options, const QString &name, const QVariant &value);

/// The record as setOption() takes it back and a recipe holds it: every field by its name, a number that is not
/// given as null, observers and colours as rows.
QVariantMap optionValues(const ProcessOptions &options);

/// Whether the product depends on the DEM's extreme elevations: the number of contour lines, or the elevations
/// that a colour table is spread over.
bool needsExtremes(const ProcessOptions &options);

/// The compass reading of a shaded relief in degrees; nothing for any other process.
std::optional<double> compassOf(const ProcessOptions &options);

/// The fields of the record, with its values as defaults.
QVector<FieldDescription> describeOptions(const ProcessOptions &options);
