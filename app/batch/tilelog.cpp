#include "app/batch/tilelog.h"

#include "app/startup/console.h"
#include "messages/label.h"

#include <QDateTime>
#include <QJsonDocument>
#include <QJsonObject>

#include <cstring>

TileLog::TileLog(bool json, const QString &task)
    : m_json(json)
    , m_task(task)
{ }

void TileLog::begin(const QString &tile, const QString &product)
{
    m_tile = tile;
    m_product = product;
    m_command.clear();
    m_clock.start();
    m_lastProgress = 0;
    m_progress = {};
    if (m_json)
        write("started", -1);
    else
        printOutput(withColon(tile) + QLatin1Char(' '));
}

void TileLog::progress(int percent)
{
    constexpr qint64 second = 1000;
    if (!m_json) {
        printOutput(m_progress.advance(percent));
    } else if (m_clock.elapsed() - m_lastProgress >= second) {
        m_lastProgress = m_clock.elapsed();
        write("progress", percent);
    }
}

void TileLog::end(const char *state)
{
    if (m_json)
        write(state, -1);
    else if (std::strcmp(state, "done") == 0 || std::strcmp(state, "joined") == 0)
        printOutput(m_progress.finish());
    else if (std::strcmp(state, "skipped") == 0)
        printOutput(labelText({"MESS_LOT_DEJA_FAIT", "déjà fait"}) + QLatin1Char('\n'));
    else
        printOutput(QStringLiteral(" %1\n").arg(labelText({"MESS_LOT_ECHEC", "échec"})));
}

void TileLog::write(const char *state, int percent)
{
    constexpr double msPerSecond = 1000.0;
    QJsonObject object{{QStringLiteral("time"), QDateTime::currentDateTimeUtc().toString(Qt::ISODateWithMs)},
                       {QStringLiteral("tile"), m_tile},
                       {QStringLiteral("state"), QString::fromLatin1(state)},
                       {QStringLiteral("seconds"), static_cast<double>(m_clock.elapsed()) / msPerSecond},
                       {QStringLiteral("product"), m_product}};
    if (!m_task.isEmpty())
        object.insert(QStringLiteral("task"), m_task);
    if (percent >= 0)
        object.insert(QStringLiteral("percent"), percent);
    if (!m_command.isEmpty())
        object.insert(QStringLiteral("command"), m_command);
    printOutput(QString::fromUtf8(QJsonDocument(object).toJson(QJsonDocument::Compact)) + QLatin1Char('\n'));
}
