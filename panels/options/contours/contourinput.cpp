#include "panels/options/contours/contourinput.h"

#include "dataset/formats.h"
#include "messages/label.h"
#include "panels/options/contours/contourlevels.h"
#include "panels/options/processoptions.h"

#include <cmath>

namespace
{

bool hasIndex(const ContourOptions &options)
{
    return options.indexEvery > 0 && options.interval;
}

/// The options that differ from the defaults, as settings of a step, without those that the tool receives or
/// another step has.
QStringList settingsOf(const ContourOptions &options)
{
    ContourOptions step = options;
    step.fixedLevels.clear();
    step.threeD = false;
    const QVariantMap values = optionValues(step);
    const QVariantMap defaults = optionValues(ContourOptions());
    QStringList settings;
    for (auto value = values.begin(); value != values.end(); ++value) {
        if (value.value() != defaults.value(value.key()))
            settings += value.key() + QLatin1Char('=') + value.value().toString();
    }
    return settings;
}

QString smoothingSetting(int radius)
{
    return QStringLiteral("smoothing=%1").arg(radius);
}

/// Names that every format of files between steps takes, whatever those of the product are.
ContourOptions withPlainNames(ContourOptions options)
{
    options.attribute = QStringLiteral("level");
    options.lowestAttribute = QStringLiteral("low");
    options.highestAttribute = QStringLiteral("high");
    return options;
}

} // namespace

QStringList elevationAttributes(const ContourOptions &options)
{
    if (options.polygons)
        return {options.lowestAttribute, options.highestAttribute};
    return {options.attribute};
}

QString takenAttributeProblem(const ContourOptions &options)
{
    QStringList taken;
    if (hasIndex(options) && !options.polygons)
        taken += indexLineAttribute;
    if (options.styled)
        taken += styleAttribute;
    for (const QString &name : elevationAttributes(options)) {
        if (taken.contains(name, Qt::CaseInsensitive))
            return labelText(
                       {"MESS_CN_ATTR_PRIS", "Le produit a déjà un attribut « %1 » ; choisissez un autre nom."})
                .arg(name);
    }
    return {};
}

bool needsFinishing(const ContourOptions &options)
{
    return options.polygons || options.styled || options.qgisStyle || hasIndex(options)
        || options.shortestRing > 0.0;
}

ContourSteps inLargerCells(ContourSteps steps, double factor)
{
    if (steps.smoothing > 0) {
        steps.settings.removeAll(smoothingSetting(steps.smoothing));
        steps.smoothing = static_cast<int>(std::lround(steps.smoothing / factor));
        if (steps.smoothing > 0)
            steps.settings += smoothingSetting(steps.smoothing);
    }
    const QString styled = QStringLiteral("styled=true");
    if (steps.settings.contains(QStringLiteral("polygons=true")) && !steps.settings.contains(styled))
        steps.settings += styled; // areas without their colours would show nothing of the ground
    steps.settings.removeAll(QStringLiteral("qgisStyle=true"));
    steps.writesStyle = false;
    return steps;
}

ToolInput contourInput(const ContourOptions &options, const Extremes &extremes)
{
    const QString levels = mergedLevels(options, widened(extremes));
    ToolInput input{.fragment = contourFragment(options, levels), .attributes = elevationAttributes(options)};
    input.contours.smoothing = options.smoothing;
    input.contours.isFinished = needsFinishing(options);
    input.contours.linesFragment = contourFragment(withPlainNames(options), levels);
    input.contours.settings = settingsOf(options);
    input.contours.writesStyle = options.qgisStyle;
    return input;
}
