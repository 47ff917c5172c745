#include "app/batch/contourtasks.h"

#include "dataset/contours/contourfinish.h"
#include "dataset/contours/smoothing.h"

#include <QDir>
#include <QFileInfo>

namespace
{

/// The options of --set, and the problem of one that cannot be set.
struct ContourReading
{
    ContourOptions options;
    QString problem;
};

ContourReading readOptions(const BatchArguments &arguments)
{
    ProcessOptions options = ContourOptions();
    ContourReading reading;
    for (const auto &option : arguments.options) {
        reading.problem = setOption(options, option.first, option.second);
        if (!reading.problem.isEmpty())
            return reading;
    }
    reading.options = std::get<ContourOptions>(options);
    return reading;
}

/// A number as the contour tool received it.
std::optional<double> asTheToolHasIt(const std::optional<double> &number)
{
    return number ? std::optional(toolNumber(*number).toDouble()) : std::nullopt;
}

VoidRule voidRule(const ContourOptions &options)
{
    return {options.everyValueValid, asTheToolHasIt(options.noDataValue)};
}

ContourFinish finishOf(const ContourOptions &options, const BatchArguments &arguments)
{
    ContourFinish finish;
    finish.band = arguments.band.value_or(1);
    finish.voids = voidRule(options);
    finish.layer = outputLayer(arguments.outputOptions);
    finish.driver = outputFormat(arguments.outputOptions, ProductKind::Vector);
    finish.areas = options.polygons;
    finish.attribute = options.attribute;
    finish.lowestAttribute = options.lowestAttribute;
    finish.highestAttribute = options.highestAttribute;
    finish.index = {asTheToolHasIt(options.interval).value_or(0.0),
                    asTheToolHasIt(options.offset).value_or(0.0), options.indexEvery};
    finish.shortestRing = options.shortestRing;
    finish.styled = options.styled;
    finish.qgisStyle = options.qgisStyle;
    return finish;
}

} // namespace

TaskEnd smoothDemTask(const QString &dem, const QString &smoothed, const BatchArguments &arguments,
                      const TaskProgress &progress)
{
    const ContourReading reading = readOptions(arguments);
    if (!reading.problem.isEmpty())
        return {false, reading.problem};
    if (reading.options.smoothing < 1)
        return {false,
                labelText({"MESS_LOT_LISSAGE_NUL",
                           "--smooth-dem demande un rayon d'au moins 1 (--set smoothing=1)."})};
    const SmoothResult result = smoothDem({.dem = dem,
                                           .band = arguments.band.value_or(1),
                                           .radius = reading.options.smoothing,
                                           .voids = voidRule(reading.options),
                                           .smoothed = smoothed},
                                          progress);
    return {result.isStopped, result.problem};
}

TaskEnd finishContoursTask(const QString &dem, const QString &product, const BatchArguments &arguments,
                           const TaskProgress &progress)
{
    const ContourReading reading = readOptions(arguments);
    if (!reading.problem.isEmpty())
        return {false, reading.problem};
    if (arguments.lines.isEmpty())
        return {false,
                labelText({"MESS_LOT_SANS_COURBES",
                           "Indiquez le fichier de l'outil des courbes de niveau (--lines)."})};
    ContourFinish finish = finishOf(reading.options, arguments);
    finish.lines = QFileInfo(arguments.lines).absoluteFilePath();
    finish.dem = dem;
    finish.product = product;
    const ContourFinishResult result =
        finishContours(finish, [&progress](double share) { return progress(static_cast<int>(100.0 * share)); });
    TaskEnd end{result.isStopped, result.problem};
    if (result.leftOut > 0)
        end.notes +=
            labelText({"MESS_LOT_ANNEAUX", "Courbes fermées trop courtes, omises : %1."}).arg(result.leftOut);
    if (!result.warning.isEmpty())
        end.notes += result.warning;
    return end;
}
