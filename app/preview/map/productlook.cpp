#include "app/preview/map/productlook.h"

#include "colortable/toolcolors.h"
#include "dataset/contours/contourstyles.h"
#include "dataset/rasterpicture.h"
#include "messages/label.h"
#include "messages/shownnumber.h"
#include "panels/options/contours/contourlevels.h"
#include "panels/options/maprampcolors.h"
#include "panels/options/valueclasses.h"

#include <QStringList>

#include <algorithm>
#include <cmath>

namespace
{

constexpr int stripColors = 128;
constexpr int mostMarks = 60; // more lines would fill the histogram

QString spaced(const QString &unit)
{
    return unit.isEmpty() ? QString() : QStringLiteral(" ") + unit;
}

ProductLook lookOf(const ShadedOptions &, const QString &)
{
    return {ProductForm::Shade, RampKind::Grey, false, labelText({"MESS_ECLAIREMENT", "Éclairement"}), {}};
}

ProductLook lookOf(const SlopeOptions &options, const QString &)
{
    ProductLook look{ProductForm::Values, RampKind::Steepness, false, labelText({"MESS_PENTE", "Pente"}),
                     options.percent ? QStringLiteral(" %") : QStringLiteral("°")};
    look.classes = slopeClasses(options);
    return look;
}

ProductLook lookOf(const AspectOptions &options, const QString &)
{
    ProductLook look{ProductForm::Values, RampKind::Direction, options.trigonometric,
                     labelText({"MESS_ORIENTATION", "Orientation"}), QStringLiteral("°")};
    look.classes = directionClasses(options);
    return look;
}

ProductLook lookOf(const TerrainIndexOptions &options, const QString &unit)
{
    constexpr int position = 1;
    const QString names[] = {QStringLiteral("TRI"), QStringLiteral("TPI"),
                             labelText({"MESS_RUGOSITE", "Rugosité"})};
    return {ProductForm::Values, options.type == position ? RampKind::Position : RampKind::Variation, false,
            names[std::clamp(options.type, 0, terrainIndexCount - 1)], spaced(unit)};
}

ProductLook lookOf(const ContourOptions &, const QString &)
{
    return {ProductForm::Lines, RampKind::Grey, false, {}, {}};
}

ProductLook lookOf(const ColorReliefOptions &options, const QString &)
{
    return {.form = options.shaded ? ProductForm::ShadedColors : ProductForm::Colors};
}

ProductLook lookOf(const IntervisibilityOptions &options, const QString &unit)
{
    const SightResult sight = sightResult(options);
    if (sight == SightResult::Picture)
        return {};
    const bool isCount = sight == SightResult::Count;
    return {ProductForm::Values,
            isCount ? RampKind::Count : RampKind::Height,
            false,
            isCount ? labelText({"MESS_VAL_OBSERVATEURS", "Observateurs"})
                    : labelText({"MESS_VAL_HAUTEUR", "Hauteur visible"}),
            isCount ? QString() : spaced(unit),
            sight,
            rampColors(options.ramp)};
}

QString observersText(double count, const QLocale &locale)
{
    return qRound(count) == 1
        ? labelText({"MESS_VAL_UN_OBS", "1 observateur"})
        : labelText({"MESS_VAL_DES_OBS", "%1 observateurs"}).arg(locale.toString(qRound(count)));
}

/// The text of a cell's number of observers, or of its least visible height.
QString sightText(const ProductLook &look, double value, const QLocale &locale)
{
    if (look.sight == SightResult::Count)
        return std::isnan(value) ? labelText({"MESS_SANS_DONNEE", "sans donnée"})
                                 : observersText(value, locale);
    if (std::isnan(value))
        return labelText({"MESS_VAL_JAMAIS", "visible à aucune hauteur"});
    if (value <= 0.0)
        return labelText({"MESS_VAL_SOL_VU", "sol visible"});
    return labelText({"MESS_VAL_AU_DESSUS", "visible à partir de %1 au-dessus du sol"})
        .arg(shownNumber(value, 'f', 1, locale) + look.unit);
}

QString pointName(int point)
{
    static constexpr Label label{"MESS_ROSE_VENTS", "N NNE NE ENE E ESE SE SSE S SSO SO OSO O ONO NO NNO"};
    return labelText(label).split(QLatin1Char(' ')).value(point);
}

using Tick = MapLegend::Strip::Tick;

void addRamp(MapLegend &legend, const LegendFacts &facts, const QLocale &locale)
{
    constexpr double quarter = 90.0;
    MapLegend::Strip &strip = legend.strip;
    const ValueRamp &ramp = facts.product.ramp;
    strip.low = ramp.low;
    strip.high = ramp.high;
    for (int at = 0; at < stripColors; ++at)
        strip.colors += ramp.color(ramp.low + (ramp.high - ramp.low) * (at + 0.5) / stripColors);
    if (ramp.kind == RampKind::Grey) { // light has no unit that a reader could use
        strip.ticks = {{ramp.low, labelText({"MESS_OMBRE", "ombre"})},
                       {ramp.high, labelText({"MESS_CLARTE", "lumière"})}};
        return;
    }
    legend.unit = facts.look.unit.trimmed();
    if (ramp.kind != RampKind::Direction) {
        strip.ticks = roundStripTicks(ramp.low, ramp.high, legendStripHeight, locale);
        return;
    }
    for (int turn = 0; turn * quarter <= ramp.high; ++turn) {
        const double angle = turn * quarter;
        strip.ticks += {angle,
                        QStringLiteral("%1  %2").arg(shownNumber(angle, 'f', 0, locale),
                                                     pointName(compassPoint(angle, ramp.trigonometric)))};
    }
}

void addRampOfCounts(MapLegend &legend, const LegendFacts &facts, const QLocale &locale)
{
    addRamp(legend, facts, locale);
    legend.unit.clear(); // each tick has it
    for (auto &tick : legend.strip.ticks)
        tick.text = observersText(tick.value, locale);
}

/// Adds the strip of colours of the least visible heights, whose round steps are evenly spread, and the box
/// below it for ground that is itself seen.
void addHeights(MapLegend &legend, const LegendFacts &facts, const QLocale &locale)
{
    const ValueRamp &ramp = facts.product.ramp;
    MapLegend::Strip &strip = legend.strip;
    const auto intervals = ramp.steps.size() - 1;
    strip.low = 0.0;
    strip.high = 1.0;
    for (int at = 0; at < stripColors; ++at) {
        const double place = (at + 0.5) / stripColors * static_cast<double>(intervals);
        const int below = static_cast<int>(place);
        const double step = ramp.steps.at(below + 1) - ramp.steps.at(below);
        strip.colors += ramp.color(ramp.steps.at(below) + (place - below) * step);
    }
    for (const double height : ramp.steps) {
        // All higher ones have the colour of the last step, too.
        const QString sign = height == ramp.steps.last() ? QStringLiteral("≥ ") : QString();
        strip.ticks += {ramp.placeOf(height), sign + shownNumber(height, 'f', 0, locale) + facts.look.unit};
    }
    legend.rows +=
        {QColor::fromRgb(seenGroundColor), false, false, labelText({"MESS_ZONE_SOL_VU", "Sol visible"}), {}};
}

/// Adds a box for each number of observers that occurs, if these are few, with the area that this number of
/// observers sees.
void addCounts(MapLegend &legend, const LegendFacts &facts, const QLocale &locale)
{
    const ElevationGrid &values = facts.product.values;
    const int highest = qRound(facts.product.ramp.high);
    QVector<double> cells(highest + 1);
    QVector<double> areas(highest + 1);
    for (int at = 0; at < values.cells.size(); ++at) {
        const float value = values.cells.at(at);
        if (std::isnan(value))
            continue;
        const int count = std::clamp(qRound(value), 0, highest);
        cells[count] += 1.0;
        areas[count] += facts.cellArea ? facts.cellArea(at / values.width) : 0.0;
    }
    for (int count = highest; count >= 0; --count) {
        if (cells.at(count) > 0.0)
            legend.rows +=
                {QColor::fromRgba(facts.product.ramp.color(count)), false, false, observersText(count, locale),
                 shareText(facts.cellArea ? areas.at(count) : -1.0,
                           cells.at(count) / static_cast<double>(values.cells.size()), locale)};
    }
}

void addOptions(MapLegend &legend, const LegendFacts &facts, const ColorReliefOptions &, const QLocale &locale)
{
    const QList<QuvoColorDef> entries = elevationEntries(facts.table);
    const bool isPercent = !entries.isEmpty() && entries.first().percent;
    if (entries.size() < 2 || (isPercent && !facts.extremes.known))
        return;
    const auto elevationOf = [&](const QuvoColorDef &entry) {
        return entry.percent
            ? facts.extremes.minimum + entry.value / 100.0 * (facts.extremes.maximum - facts.extremes.minimum)
            : entry.value;
    };
    MapLegend::Strip &strip = legend.strip;
    strip.low = elevationOf(entries.first());
    strip.high = elevationOf(entries.last());
    if (facts.extremes.known && facts.extremes.minimum < strip.high && facts.extremes.maximum > strip.low) {
        strip.low = std::max(strip.low, facts.extremes.minimum);
        strip.high = std::min(strip.high, facts.extremes.maximum);
    }
    if (!(strip.high > strip.low))
        return;
    const ToolColors colors(facts.table, facts.extremes.minimum, facts.extremes.maximum);
    for (int at = 0; at < stripColors; ++at)
        strip.colors += colors.color(strip.low + (strip.high - strip.low) * (at + 0.5) / stripColors);
    strip.ticks = roundStripTicks(strip.low, strip.high, legendStripHeight, locale);
    legend.unit = facts.elevationUnit;
    for (int at = 0; at < std::min(mostMarks, static_cast<int>(entries.size())); ++at)
        legend.marks += {elevationOf(entries.at(at)), entries.at(at).color};
}

/// The cells of a zone, and their area in square metres.
struct Zone
{
    double cells = 0.0;
    double area = 0.0;
};

Zone zoneOf(const QImage &picture, QRgb color, const std::function<double(int)> &cellArea)
{
    Zone zone;
    for (int row = 0; row < picture.height(); ++row) {
        const auto pixels = reinterpret_cast<const QRgb *>(picture.constScanLine(row));
        const auto cells = static_cast<double>(std::count(pixels, pixels + picture.width(), color));
        zone.cells += cells;
        zone.area += cells * (cellArea ? cellArea(row) : 0.0);
    }
    return zone;
}

void addOptions(MapLegend &legend, const LegendFacts &facts, const IntervisibilityOptions &options,
                const QLocale &locale)
{
    constexpr double fewCounts = 6.0;
    if (facts.look.sight != SightResult::Picture) {
        if (facts.product.values.isEmpty())
            return;
        if (facts.look.sight == SightResult::Count && facts.product.ramp.high <= fewCounts)
            addCounts(legend, facts, locale);
        else if (facts.look.sight == SightResult::Height)
            addHeights(legend, facts, locale);
        else
            addRampOfCounts(legend, facts, locale);
        return;
    }
    const QImage picture = facts.product.picture.convertToFormat(QImage::Format_ARGB32);
    const double all = static_cast<double>(picture.width()) * picture.height();
    if (all <= 0.0)
        return;
    const std::pair<QString, Label> zones[] = {{options.visibleColor, {"MESS_ZONE_VUE", "Vu"}},
                                               {options.hiddenColor, {"MESS_ZONE_CACHEE", "Caché"}},
                                               {options.noDataColor, {"MESS_ZONE_INCONNUE", "Sans donnée"}}};
    for (const auto &[name, label] : zones) {
        const QColor color(name);
        const Zone zone = zoneOf(picture, color.rgb(), facts.cellArea);
        if (zone.cells > 0.0)
            legend.rows += {color, name == options.noDataColor, false, labelText(label),
                            shareText(facts.cellArea ? zone.area : -1.0, zone.cells / all, locale)};
    }
}

/// Adds the strip of the colours of areas between levels.
void addTints(MapLegend &legend, const LegendFacts &facts, QVector<double> levels, const QLocale &locale)
{
    MapLegend::Strip &strip = legend.strip;
    strip.low = facts.extremes.minimum;
    strip.high = facts.extremes.maximum;
    levels.erase(std::remove_if(levels.begin(), levels.end(),
                                [&](double level) { return level <= strip.low || level >= strip.high; }),
                 levels.end());
    for (int at = 0; at < stripColors; ++at) {
        const double value = strip.low + (strip.high - strip.low) * (at + 0.5) / stripColors;
        const auto below =
            std::count_if(levels.begin(), levels.end(), [&](double level) { return level <= value; });
        strip.colors += hypsometricTint(static_cast<int>(below), static_cast<int>(levels.size()) + 1).rgb();
    }
    strip.ticks = roundStripTicks(strip.low, strip.high, legendStripHeight, locale);
    legend.unit = facts.elevationUnit;
}

void addOptions(MapLegend &legend, const LegendFacts &facts, const ContourOptions &options,
                const QLocale &locale)
{
    const QColor lines(0x8a, 0x5a, 0x32);
    const auto equidistance = [&](double interval) {
        return labelText({"MESS_EQUIDISTANCE", "Tous les %1"})
            .arg(shownNumber(interval, 'g', 6, locale) + spaced(facts.elevationUnit));
    };
    const auto fixed = readLevels(options.fixedLevels);
    QVector<double> levels = fixed.value_or(QVector<double>());
    QString text = labelText({"MESS_NIVEAUX_FIXES", "Niveaux choisis"});
    if (options.interval && *options.interval > 0.0) {
        const double offset = options.offset.value_or(0.0);
        text = equidistance(*options.interval);
        if (levelCount(facts.extremes, *options.interval, offset) <= mostMarks) {
            const double first =
                std::ceil((facts.extremes.minimum - offset) / *options.interval) * *options.interval + offset;
            for (double level = first; facts.extremes.known && level <= facts.extremes.maximum;
                 level += *options.interval)
                levels += level;
        }
    }
    std::sort(levels.begin(), levels.end());
    levels.erase(std::unique(levels.begin(), levels.end()), levels.end());
    if (levels.isEmpty() && !(options.interval.value_or(0.0) > 0.0))
        return;
    if (options.polygons && options.styled && facts.extremes.known && levels.size() <= mostMarks)
        addTints(legend, facts, levels, locale);
    legend.rows += {lines, false, true, text, {}};
    if (options.indexEvery > 0 && options.interval && !options.polygons) {
        constexpr double thick = 3.0;
        legend.rows += {lines, false, true, equidistance(*options.interval * options.indexEvery), {}, thick};
    }
    for (int at = 0; at < std::min(mostMarks, static_cast<int>(levels.size())); ++at)
        legend.marks += {levels.at(at), lines};
}

template <class Options>
void addOptions(MapLegend &legend, const LegendFacts &facts, const Options &, const QLocale &locale)
{
    if (facts.product.picture.isNull())
        return;
    if (facts.look.classes.classes.isEmpty())
        addRamp(legend, facts, locale);
    for (const ClassRow &row : classRows(facts.look.classes))
        legend.rows += {QColor::fromRgb(row.color), false, false, row.text, {}};
}

bool hasVoids(const QImage &picture)
{
    for (int row = 0; row < picture.height(); ++row) {
        const auto pixels = reinterpret_cast<const QRgb *>(picture.constScanLine(row));
        if (std::any_of(pixels, pixels + picture.width(), [](QRgb pixel) { return qAlpha(pixel) == 0; }))
            return true;
    }
    return false;
}

} // namespace

ProductLook lookOf(const ProcessOptions &options, const QString &elevationUnit)
{
    return std::visit([&](const auto &record) { return lookOf(record, elevationUnit); }, options);
}

ValueRamp rampOf(const ProductLook &look, const ElevationGrid &values)
{
    ValueRamp ramp = rampOver(values, look.ramp, look.trigonometric);
    ramp.stops = look.rampColors;
    ramp.classes = look.classes;
    return ramp;
}

ElevationGrid readElevations(const QString &path, int band, const Mirroring &mirroring)
{
    constexpr int everyCell = 8 * longestReducedSide;
    constexpr int slice = 100; // ms
    ElevationGridReader reader(path, band, everyCell);
    while (reader.advance(slice)) { }
    return reader.problem().isEmpty() ? mirrored(reader.grid(), mirroring) : ElevationGrid();
}

ProductPicture readProduct(const QString &path, const ProductLook &look, const Mirroring &mirroring)
{
    ProductPicture product;
    if (look.form == ProductForm::Values || look.form == ProductForm::Shade)
        product.values = readElevations(path, 1, mirroring);
    if (look.form == ProductForm::Values) {
        product.ramp = rampOf(look, product.values);
        product.picture = rampPicture(product.values, product.ramp);
        return product;
    }
    const RasterPicture picture(path);
    product.picture = picture.read(QRect(QPoint(0, 0), picture.size()), picture.size())
                          .mirrored(mirroring.columns, mirroring.rows);
    return product;
}

MapLegend legendOf(const LegendFacts &facts, const QLocale &locale)
{
    MapLegend legend;
    // Three indices share a tab, and so do the results of an intervisibility.
    const bool sharesTab =
        std::holds_alternative<TerrainIndexOptions>(facts.options) || facts.look.sight != SightResult::Picture;
    legend.title = sharesTab && !facts.look.name.isEmpty() ? facts.look.name : facts.title;
    std::visit([&](const auto &options) { addOptions(legend, facts, options, locale); }, facts.options);
    const bool countsVoids = std::holds_alternative<IntervisibilityOptions>(facts.options)
        && facts.look.sight == SightResult::Picture;
    if (facts.look.form != ProductForm::Lines && !countsVoids
        && (facts.hasVoids || hasVoids(facts.product.picture.convertToFormat(QImage::Format_ARGB32))))
        legend.rows +=
            {QColor(),
             true,
             false,
             facts.look.sight == SightResult::Height ? labelText({"MESS_ZONE_JAMAIS", "Jamais visible"})
                                                     : labelText({"MESS_ZONE_INCONNUE", "Sans donnée"}),
             {}};
    legend.histogramTitle = labelText({"MESS_HISTO_TITRE", "Altitudes"})
        + (facts.elevationUnit.isEmpty() ? QString() : QStringLiteral(" (%1)").arg(facts.elevationUnit));
    legend.elevations = facts.elevations;
    return legend;
}

bool holdsRelief(ProductForm form)
{
    return form == ProductForm::Shade || form == ProductForm::ShadedColors;
}

QString valueText(const ProductLook &look, double value, const QLocale &locale)
{
    constexpr int digits = 4;
    if (look.name.isEmpty())
        return {};
    if (look.sight != SightResult::Picture)
        return sightText(look, value, locale);
    if (std::isnan(value))
        return look.name + QLatin1Char(' ') + labelText({"MESS_SANS_DONNEE", "sans donnée"});
    const bool isDirection = look.ramp == RampKind::Direction;
    const QString number = isDirection || look.form == ProductForm::Shade ? shownNumber(value, 'f', 0, locale)
        : std::abs(value) >= 10.0                                         ? shownNumber(value, 'f', 1, locale)
                                  : shownNumber(value, 'g', digits - 1, locale);
    const QString text = look.name + QLatin1Char(' ') + number + look.unit;
    return isDirection ? text + QLatin1Char(' ') + pointName(compassPoint(value, look.trigonometric)) : text;
}
