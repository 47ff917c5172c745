#include "panels/options/fragments.h"

#include "runner/commandsplit.h"
#include "runner/quoting.h"

#include <QColor>
#include <QDir>
#include <QFileInfo>
#include <QRegularExpression>

#include <iterator>

QString scaleRatio(int scaleIndex, const QString &scaleText)
{
    // 0.31 for feet on metres is kept so on purpose: it is neither 3.28 nor 0.3048.
    static constexpr const char *rows[] = {"1", "0.31", "111120", "370400"};
    static_assert(std::size(rows) == scaleRowCount);

    if (scaleIndex >= 0 && scaleIndex < scaleRowCount)
        return QString::fromLatin1(rows[scaleIndex]);
    return scaleText;
}

QString lightWord(Light light)
{
    static constexpr const char *words[] = {"single", "multidirectional", "combined", "igor"};
    return QString::fromLatin1(words[static_cast<std::size_t>(light)]);
}

std::optional<Light> readLight(const QString &word)
{
    for (const Light light : {Light::Single, Light::Multidirectional, Light::Combined, Light::Igor}) {
        if (word == lightWord(light))
            return light;
    }
    return std::nullopt;
}

Light lightOf(const ShadedOptions &options)
{
    return readLight(options.light).value_or(Light::Single);
}

QString shadedFragment(const ShadedOptions &options)
{
    const Light light = lightOf(options);
    QString fragment = QStringLiteral("-z %1 ").arg(options.exaggeration);
    const QString ratio = scaleRatio(options.scaleIndex, options.scaleText);
    if (!ratio.isEmpty()) // a typed ratio is followed by two blanks here, and by one in the slope's fragment
        fragment += QStringLiteral("-s ") + ratio + QLatin1String(options.scaleIndex < 0 ? "  " : " ");
    if (light != Light::Multidirectional) // the tool refuses it
        fragment += QStringLiteral("-az %1 ").arg(270.0 - options.compass);
    if (light != Light::Igor) // likewise
        fragment += QStringLiteral("-alt %1 ").arg(options.altitude);
    if (options.computeEdges)
        fragment += QStringLiteral(" -compute_edges");
    if (options.zevenbergenThorne)
        fragment += QStringLiteral(" -alg ZevenbergenThorne");
    if (light != Light::Single)
        fragment += QStringLiteral(" -") + lightWord(light);
    return fragment;
}

static const QString zeroForFlatArgument = QStringLiteral(" -zero_for_flat");

QString slopeFragment(const SlopeOptions &options)
{
    QString fragment;
    if (options.percent)
        fragment += QStringLiteral("-p ");
    if (options.computeEdges)
        fragment += QStringLiteral("-compute_edges ");
    if (options.zevenbergenThorne)
        fragment += QStringLiteral("-alg ZevenbergenThorne ");
    const QString ratio = scaleRatio(options.scaleIndex, options.scaleText);
    if (!ratio.isEmpty())
        fragment += QStringLiteral("-s ") + ratio + QLatin1Char(' ');
    return fragment;
}

QString aspectFragment(const AspectOptions &options)
{
    QString fragment;
    if (options.trigonometric)
        fragment += QStringLiteral("-trigonometric");
    if (options.zeroForFlat)
        fragment += zeroForFlatArgument;
    if (options.computeEdges)
        fragment += QStringLiteral(" -compute_edges");
    if (options.zevenbergenThorne)
        fragment += QStringLiteral(" -alg ZevenbergenThorne");
    return fragment;
}

QString withFlatMarked(QString aspectFragment)
{
    return aspectFragment.remove(zeroForFlatArgument);
}

QString terrainIndexFragment(const TerrainIndexOptions &options)
{
    QString fragment;
    if (options.computeEdges)
        fragment += QStringLiteral("-compute_edges");
    if (options.wilson && options.type == 0)
        fragment += QStringLiteral(" -alg Wilson");
    return fragment;
}

QString terrainIndexWord(int type)
{
    if (type == 0)
        return QStringLiteral("TRI");
    return type == 1 ? QStringLiteral("TPI") : QStringLiteral("roughness");
}

QString toolNumber(double number)
{
    return QString::number(number, 'g', 6);
}

QString contourFragment(const ContourOptions &options, const QString &levels)
{
    const auto number = [](const char *name, const std::optional<double> &value) {
        return value ? QLatin1String(name) + QStringLiteral(" \"%1\" ").arg(toolNumber(*value)) : QString();
    };
    QString fragment;
    if (options.polygons)
        fragment += QStringLiteral("-p -amin ") + quotedArgument(options.lowestAttribute)
            + QStringLiteral(" -amax ") + quotedArgument(options.highestAttribute) + QLatin1Char(' ');
    else if (!options.attribute.isEmpty())
        fragment += QStringLiteral("-a ") + quotedArgument(options.attribute) + QLatin1Char(' ');
    if (options.threeD && !options.polygons)
        fragment += QStringLiteral("-3d ");
    if (options.everyValueValid)
        fragment += QStringLiteral("-inodata ");
    else
        fragment += number("-snodata", options.noDataValue);
    if (!levels.isEmpty())
        return fragment + QStringLiteral("-fl ") + levels + QLatin1Char(' ');
    fragment += number("-i", options.interval);
    fragment += number("-off", options.offset);
    if (!options.fixedLevels.isEmpty())
        fragment += QStringLiteral("-fl ") + options.fixedLevels + QLatin1Char(' ');
    return fragment;
}

namespace
{

/// The path as the fragment holds it: quoted unless it is plain.
QString pointFileText(const QString &pointFile)
{
    static const QRegularExpression plainPath(QStringLiteral("^[A-Za-z0-9_./+:@-]+$"));
    return plainPath.match(pointFile).hasMatch() ? pointFile : quotedArgument(pointFile);
}

const QString pointFileOption = QStringLiteral("-point_file");

} // namespace

QString pointFileOf(const QString &fragment)
{
    const QStringList words = splitProcessCommand(fragment).arguments;
    const auto at = words.indexOf(pointFileOption);
    if (at < 0)
        return splitProcessCommand(fragment).program == pointFileOption ? words.value(0) : QString();
    return words.value(at + 1);
}

QString withPointFile(const QString &fragment, const QString &pointFile)
{
    const QString before = pointFileOption + QLatin1Char(' ') + pointFileText(pointFileOf(fragment));
    return QString(fragment).replace(before, pointFileOption + QLatin1Char(' ') + pointFileText(pointFile));
}

QString sightResultWord(SightResult result)
{
    if (result == SightResult::Count)
        return QStringLiteral("count");
    return result == SightResult::Height ? QStringLiteral("height") : QStringLiteral("picture");
}

std::optional<SightResult> readSightResult(const QString &word)
{
    for (const SightResult result : {SightResult::Picture, SightResult::Count, SightResult::Height}) {
        if (word == sightResultWord(result))
            return result;
    }
    return std::nullopt;
}

SightResult sightResult(const IntervisibilityOptions &options)
{
    return readSightResult(options.result).value_or(SightResult::Picture);
}

QString sideFileName(const QString &product, const QString &word, const QString &extension)
{
    const QFileInfo file(product);
    return file.dir().filePath(QStringLiteral("%1_%2.%3").arg(file.completeBaseName(), word, extension));
}

QVector<SideFile> sideFiles(const IntervisibilityOptions &options)
{
    QVector<SideFile> files;
    const QString step = options.skylineStep
        ? QStringLiteral("-SkylineStep %1 ").arg(toolNumber(*options.skylineStep))
        : QString();
    if (!options.skyline.isEmpty())
        files += {QStringLiteral("-Skyline"), options.skyline, {"csv", "json", "gpkg"}, step};
    if (!options.statistics.isEmpty())
        files += {statisticsArgument, options.statistics, {"csv"}};
    return files;
}

QString sideFileArguments(const QVector<SideFile> &files)
{
    QString arguments;
    for (const SideFile &file : files) {
        if (!file.argument.isEmpty())
            arguments +=
                file.argument + QLatin1Char(' ') + quotedArgument(file.path) + QLatin1Char(' ') + file.more;
    }
    return arguments;
}

QString intervisibilityFragment(const IntervisibilityOptions &options, const QString &pointFile)
{
    const auto color = [](const char *name, const QString &value) {
        const QColor parts(value);
        return QStringLiteral("%1 %2 %3 %4 ")
            .arg(QLatin1String(name), QString::number(parts.red()), QString::number(parts.green()),
                 QString::number(parts.blue()));
    };
    QString fragment;
    if (!pointFile.isEmpty())
        fragment += pointFileOption + QLatin1Char(' ') + pointFileText(pointFile) + QLatin1Char(' ');
    if (!options.combined)
        fragment += QStringLiteral("-DstOp OVERWRITE ");
    else if (!options.combination.isEmpty())
        fragment += QStringLiteral("-DstOp ") + options.combination + QLatin1Char(' ');
    if (options.groundHeight)
        fragment += QStringLiteral("-SH %1 ").arg(*options.groundHeight, 0, 'g', 6);
    fragment += color("-CNOZ", options.hiddenColor);
    fragment += color("-COZ", options.visibleColor);
    fragment += color("-CNoData", options.noDataColor);
    if (const SightResult result = sightResult(options); result != SightResult::Picture)
        fragment += QStringLiteral("-Output ") + sightResultWord(result) + QLatin1Char(' ');
    return fragment;
}

QString colorReliefFragment(const ColorReliefOptions &options)
{
    return options.alpha ? QStringLiteral("-alpha") : QString();
}

ToolInput withShade(ToolInput input, const ColorReliefOptions &options)
{
    if (!options.shaded)
        return input;
    ShadedOptions shade = options.shade;
    shade.computeEdges = true;
    input.shadeFragment = shadedFragment(shade);
    input.shadeStrength = options.shadeStrength;
    return input;
}

bool isComplete(const ShadedOptions &options)
{
    return options.scaleIndex >= 0 || !options.scaleText.isEmpty();
}

bool isComplete(const SlopeOptions &options)
{
    return options.scaleIndex >= 0 || !options.scaleText.isEmpty();
}

bool isComplete(const ContourOptions &options)
{
    return options.interval || !options.fixedLevels.isEmpty();
}
