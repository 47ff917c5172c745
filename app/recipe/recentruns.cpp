#include "app/recipe/recentruns.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QLockFile>
#include <QSaveFile>

#include <cmath>
#include <optional>

namespace
{

constexpr qint64 largestFile = 16LL * 1024 * 1024;
constexpr const char *ends[] = {"done", "stopped", "failed"}; // in the order of RunEnd

/// An entry of the file; empty where one of its members is damaged.
std::optional<RecentRun> readRun(const QJsonObject &object)
{
    RecentRun run;
    run.started = QDateTime::fromString(object.value(QStringLiteral("started")).toString(), Qt::ISODate);
    run.seconds = object.value(QStringLiteral("seconds")).toDouble(-1.0);
    const QString end = object.value(QStringLiteral("end")).toString();
    int known = 0;
    while (known < 3 && end != QLatin1String(ends[known]))
        ++known;
    run.end = static_cast<RunEnd>(qMin(known, 2));
    const QJsonDocument settings(object.value(QStringLiteral("settings")).toObject());
    const RecipeReading reading = readRecipe(settings.toJson(QJsonDocument::Compact), QDir::rootPath());
    run.recipe = reading.recipe;
    const bool good = run.started.isValid() && run.seconds >= 0.0 && known < 3 && reading.problem.isEmpty();
    return good ? std::optional(run) : std::nullopt;
}

QJsonObject writeRun(const RecentRun &run)
{
    return {{QStringLiteral("started"), run.started.toUTC().toString(Qt::ISODate)},
            {QStringLiteral("end"), QLatin1String(ends[static_cast<int>(run.end)])},
            {QStringLiteral("seconds"), run.seconds},
            {QStringLiteral("settings"), QJsonDocument::fromJson(writeRecipe(run.recipe)).object()}};
}

/// The file's entries as they stand in it; empty where the file cannot be read.
QJsonArray entriesOf(const QString &name)
{
    QFile file(name);
    if (!QFileInfo(name).isFile() || file.size() > largestFile || !file.open(QIODevice::ReadOnly))
        return {};
    return QJsonDocument::fromJson(file.readAll()).object().value(QStringLiteral("runs")).toArray();
}

/// The text of a file with these entries, as many as fit.
QByteArray fileText(const QJsonArray &entries)
{
    constexpr qint64 margin = 100; // bytes around the list
    QJsonArray list;
    qint64 size = 0;
    for (const QJsonValue &entry : entries) {
        const qint64 length = QJsonDocument(entry.toObject()).toJson(QJsonDocument::Compact).size() + 1;
        if (list.size() == mostRecentRuns || size + length > largestFile - margin || !entry.isObject())
            continue; // an entry that is too large must not push out the others
        size += length;
        list += entry;
    }
    return QJsonDocument(QJsonObject{{QStringLiteral("runs"), list}}).toJson(QJsonDocument::Compact);
}

} // namespace

QList<RecentRun> readRecentRuns(const QString &file, int most)
{
    QList<RecentRun> runs;
    const QJsonArray entries = entriesOf(file);
    for (const QJsonValue &value : entries) {
        if (runs.size() == most)
            break;
        if (const auto run = readRun(value.toObject()))
            runs += *run;
    }
    return runs;
}

bool addRecentRun(const QString &name, const RecentRun &run)
{
    constexpr int patience = 1000; // ms; another window writes its list in far less
    QDir().mkpath(QFileInfo(name).absolutePath());
    QLockFile lock(name + QStringLiteral(".lock"));
    lock.tryLock(patience);               // goes on without the lock: at worst a run is missing from the list
    QJsonArray entries = entriesOf(name); // not parsed into recipes and back: settings may be large
    entries.prepend(writeRun(run));
    const QByteArray text = fileText(entries);
    QSaveFile file(name);
    return file.open(QIODevice::WriteOnly) && file.write(text) == text.size() && file.commit();
}

QString durationText(double seconds)
{
    const auto whole = std::llround(seconds);
    const QLatin1Char zero('0');
    const auto hours = whole / 3600;
    const QString minutes = QString::number(whole / 60 % 60);
    const QString rest = QString::number(whole % 60).rightJustified(2, zero);
    return hours > 0
        ? QStringLiteral("%1:%2:%3").arg(QString::number(hours), minutes.rightJustified(2, zero), rest)
        : QStringLiteral("%1:%2").arg(minutes, rest);
}

QString runEndText(RunEnd end)
{
    switch (end) {
    case RunEnd::Done:
        return labelText({"MESS_HIST_FINI", "Terminé"});
    case RunEnd::Stopped:
        return labelText({"MESS_HIST_ARRETE", "Arrêté"});
    case RunEnd::Failed:
        break;
    }
    return labelText({"MESS_HIST_ECHEC", "Échec"});
}
