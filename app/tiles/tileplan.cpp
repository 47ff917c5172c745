#include "app/tiles/tileplan.h"

#include "dataset/extraction/cellrect.h"
#include "messages/label.h"

#include <QCryptographicHash>
#include <QDateTime>
#include <QFileInfo>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QSaveFile>

#include <algorithm>
#include <numeric>

namespace
{

constexpr int formatVersion = 1;

QJsonArray cellsArray(const QRect &cells)
{
    return {cells.x(), cells.y(), cells.width(), cells.height()};
}

QRect readCells(const QJsonValue &value)
{
    const QJsonArray cells = value.toArray();
    return {cells.at(0).toInt(), cells.at(1).toInt(), cells.at(2).toInt(), cells.at(3).toInt()};
}

QByteArray line(const QJsonObject &object)
{
    return QJsonDocument(object).toJson(QJsonDocument::Compact) + '\n';
}

QByteArray shortHash(const QByteArray &text)
{
    constexpr int digits = 16;
    return QCryptographicHash::hash(text, QCryptographicHash::Sha1).toHex().left(digits);
}

QJsonObject headerObject(const TilePlan &plan)
{
    const QByteArray recipe = writeRecipe(plan.recipe);
    return {{QStringLiteral("format"), formatVersion},
            {QStringLiteral("process"), plan.recipe.process},
            {QStringLiteral("tiles"), plan.tileCount()},
            {QStringLiteral("groups"), plan.groups.size()},
            {QStringLiteral("width"), plan.grid.raster.width()},
            {QStringLiteral("height"), plan.grid.raster.height()},
            {QStringLiteral("tileSize"), plan.grid.side},
            {QStringLiteral("margin"), plan.margin},
            {QStringLiteral("inputs"), plan.inputs.size()},
            {QStringLiteral("program"), plan.program},
            {QStringLiteral("tool"), plan.tool},
            {QStringLiteral("recipeHash"), QString::fromLatin1(shortHash(recipe))},
            {QStringLiteral("recipe"), QJsonDocument::fromJson(recipe).object()}};
}

QJsonObject inputObject(int number, const PlannedInput &input)
{
    return {{QStringLiteral("input"), number},
            {QStringLiteral("path"), input.path},
            {QStringLiteral("size"), input.size},
            {QStringLiteral("time"), input.time},
            {QStringLiteral("cells"), cellsArray(input.cells)}};
}

QJsonObject groupObject(int number, const SightGroup &group)
{
    return {{QStringLiteral("group"), number},
            {QStringLiteral("tile"), group.tile},
            {QStringLiteral("observers"), QJsonArray{group.first, group.count}},
            {QStringLiteral("cells"), cellsArray(group.window)}};
}

QJsonObject tileObject(const PlannedTile &tile)
{
    QJsonArray inputs;
    for (const int input : tile.inputs)
        inputs += input;
    return {{QStringLiteral("tile"), tile.number},
            {QStringLiteral("name"), tile.name},
            {QStringLiteral("window"), cellsArray(tile.window)},
            {QStringLiteral("inputs"), inputs},
            {QStringLiteral("stamp"), tile.stamp}};
}

/// Writes every line of the plan. Returns false where the device does not take one.
template <class Take> bool writeLines(const TilePlan &plan, Take take)
{
    if (!take(line(headerObject(plan))))
        return false;
    for (int at = 0; at < plan.inputs.size(); ++at) {
        if (!take(line(inputObject(at, plan.inputs.at(at)))))
            return false;
    }
    for (int at = 0; at < plan.groups.size(); ++at) {
        if (!take(line(groupObject(at, plan.groups.at(at)))))
            return false;
    }
    PlannedTiles tiles(plan);
    for (qint64 tile = 0; tile < plan.tileCount(); ++tile) {
        if (!take(line(tileObject(tiles.tile(tile)))))
            return false;
    }
    return true;
}

/// Whether the file holds exactly this plan.
bool holdsPlan(const QString &name, const TilePlan &plan)
{
    QFile file(name);
    if (!file.open(QIODevice::ReadOnly))
        return false;
    const bool isSame = writeLines(plan, [&](const QByteArray &line) { return file.readLine() == line; });
    return isSame && file.atEnd();
}

/// The recipe without the observers, which belong to single tiles.
Recipe withoutObservers(Recipe recipe)
{
    if (auto *sight = std::get_if<IntervisibilityOptions>(&recipe.options))
        sight->observers.clear();
    return recipe;
}

QString damagedProblem(const QString &file)
{
    return labelText({"MESS_PLAN_ABIME", "Le plan « %1 » n'est pas lisible ; refaites-le avec --plan."})
        .arg(file);
}

} // namespace

bool TilePlan::operator==(const TilePlan &other) const
{
    return recipe == other.recipe && grid.raster == other.grid.raster && grid.side == other.grid.side
        && margin == other.margin && program == other.program && tool == other.tool && inputs == other.inputs
        && groups == other.groups;
}

QString planFile(const QString &folder)
{
    return folder + QStringLiteral("/plan.jsonl");
}

PlannedTiles::PlannedTiles(const TilePlan &plan)
    : m_plan(plan)
    , m_common(shortHash(writeRecipe(withoutObservers(plan.recipe)) + plan.program.toUtf8() + '\n'
                         + plan.tool.toUtf8() + '\n' + QByteArray::number(plan.margin)))
    , m_byTop(plan.inputs.size())
{
    std::iota(m_byTop.begin(), m_byTop.end(), 0);
    std::sort(m_byTop.begin(), m_byTop.end(), [&plan](int one, int other) {
        return plan.inputs.at(one).cells.top() < plan.inputs.at(other).cells.top();
    });
}

void PlannedTiles::enterRow(int row)
{
    if (row == m_row)
        return;
    m_row = row;
    m_inRow.clear();
    const QRect rows =
        withMargin(QRect(0, row * m_plan.grid.side, m_plan.grid.raster.width(), m_plan.grid.side),
                   m_plan.margin, m_plan.grid.raster);
    for (const int input : qAsConst(m_byTop)) {
        const QRect &cells = m_plan.inputs.at(input).cells;
        if (cells.top() > rows.bottom())
            break;
        if (cells.bottom() >= rows.top())
            m_inRow += input;
    }
    std::sort(m_inRow.begin(), m_inRow.end(), [this](int one, int other) {
        return m_plan.inputs.at(one).cells.left() < m_plan.inputs.at(other).cells.left();
    });
}

/// The inputs of the row of tiles that hold some of the cells.
QVector<int> PlannedTiles::inputsOf(const QRect &read) const
{
    QVector<int> inputs;
    for (const int input : m_inRow) {
        if (m_plan.inputs.at(input).cells.left() > read.right())
            break;
        if (m_plan.inputs.at(input).cells.intersects(read))
            inputs += input;
    }
    std::sort(inputs.begin(), inputs.end()); // where inputs overlap, the later one counts
    return inputs;
}

PlannedTile PlannedTiles::tile(qint64 number)
{
    PlannedTile tile;
    tile.number = number;
    QByteArray text = m_common;
    if (m_plan.groups.isEmpty()) {
        tile.name = m_plan.grid.name(number);
        tile.window = m_plan.grid.window(number);
        enterRow(static_cast<int>(number / m_plan.grid.columns()));
        tile.inputs = inputsOf(withMargin(tile.window, m_plan.margin, m_plan.grid.raster));
    } else {
        const SightGroup &group = m_plan.groups.at(static_cast<int>(number));
        tile.name = m_plan.grid.name(group.tile);
        tile.window = group.window;
        for (int input = 0; input < m_plan.inputs.size(); ++input) {
            if (m_plan.inputs.at(input).cells.intersects(tile.window))
                tile.inputs += input;
        }
        text += writeRecipe(tileRecipe(m_plan, tile));
    }
    text += tile.name.toLatin1() + line({{QStringLiteral("w"), cellsArray(tile.window)}});
    for (const int input : qAsConst(tile.inputs))
        text += line(inputObject(0, m_plan.inputs.at(input)));
    tile.stamp = QString::fromLatin1(shortHash(text));
    return tile;
}

Recipe tileRecipe(const TilePlan &plan, const PlannedTile &tile)
{
    Recipe recipe = plan.recipe;
    auto *sight = std::get_if<IntervisibilityOptions>(&recipe.options);
    if (!sight)
        return recipe;
    const SightGroup &group = plan.groups.at(static_cast<int>(tile.number));
    sight->observers = sight->observers.mid(group.first, group.count);
    sight->result =
        sightResultWord(sightResult(*sight) == SightResult::Height ? SightResult::Height : SightResult::Count);
    return recipe;
}

QString writePlan(const QString &name, const TilePlan &plan)
{
    if (holdsPlan(name, plan))
        return {};
    QSaveFile file(name);
    const bool isWritten = file.open(QIODevice::WriteOnly)
        && writeLines(plan, [&file](const QByteArray &line) { return file.write(line) == line.size(); })
        && file.commit();
    if (isWritten)
        return {};
    return labelText({"MESS_TC_NON_ECRITE", "« %1 » ne peut pas être écrit : %2"})
        .arg(name, file.errorString());
}

PlanReading readPlan(const QString &name)
{
    PlanReading reading;
    TilePlan &plan = reading.plan;
    QFile file(name);
    if (!file.open(QIODevice::ReadOnly)) {
        reading.problem =
            labelText({"MESS_PLAN_ABSENT", "Il n'y a pas de plan « %1 » ; faites-le d'abord avec --plan."})
                .arg(name);
        return reading;
    }
    const QJsonObject header = QJsonDocument::fromJson(file.readLine()).object();
    const RecipeReading recipe =
        readRecipe(QJsonDocument(header.value(QStringLiteral("recipe")).toObject()).toJson(),
                   QFileInfo(name).absolutePath());
    plan.recipe = recipe.recipe;
    plan.grid.raster = {header.value(QStringLiteral("width")).toInt(),
                        header.value(QStringLiteral("height")).toInt()};
    plan.grid.side = header.value(QStringLiteral("tileSize")).toInt();
    plan.margin = header.value(QStringLiteral("margin")).toInt();
    plan.program = header.value(QStringLiteral("program")).toString();
    plan.tool = header.value(QStringLiteral("tool")).toString();
    bool isGood = header.value(QStringLiteral("format")).toInt() == formatVersion && recipe.problem.isEmpty()
        && plan.grid.side > 0 && !plan.grid.raster.isEmpty();
    const int inputs = header.value(QStringLiteral("inputs")).toInt();
    for (int at = 0; isGood && at < inputs; ++at) {
        const QJsonObject object = QJsonDocument::fromJson(file.readLine()).object();
        plan.inputs +=
            {object.value(QStringLiteral("path")).toString(),
             static_cast<qint64>(object.value(QStringLiteral("size")).toDouble()),
             object.value(QStringLiteral("time")).toString(), readCells(object.value(QStringLiteral("cells")))};
        isGood = !plan.inputs.last().path.isEmpty();
    }
    const int groups = header.value(QStringLiteral("groups")).toInt();
    for (int at = 0; isGood && at < groups; ++at) {
        const QJsonObject object = QJsonDocument::fromJson(file.readLine()).object();
        const QJsonArray observers = object.value(QStringLiteral("observers")).toArray();
        plan.groups +=
            {static_cast<qint64>(object.value(QStringLiteral("tile")).toDouble()), observers.at(0).toInt(),
             observers.at(1).toInt(), readCells(object.value(QStringLiteral("cells")))};
        isGood = !plan.groups.last().window.isEmpty();
    }
    if (!isGood || inputs < 1)
        reading.problem = damagedProblem(name);
    return reading;
}

PlannedInput inputNow(const QString &path)
{
    const QFileInfo file(path);
    PlannedInput input;
    input.path = path;
    if (file.isFile()) {
        input.size = file.size();
        input.time = file.lastModified().toUTC().toString(Qt::ISODateWithMs);
    }
    return input;
}

QString changedInputProblem(const TilePlan &plan, const QVector<int> &inputs)
{
    for (const int at : inputs) {
        const PlannedInput &planned = plan.inputs.at(at);
        const PlannedInput now = inputNow(planned.path);
        if (now.size != planned.size || now.time != planned.time)
            return labelText({"MESS_PLAN_CHANGE",
                              "« %1 » a changé depuis que le plan a été fait ; refaites-le avec --plan."})
                .arg(planned.path);
    }
    return {};
}
