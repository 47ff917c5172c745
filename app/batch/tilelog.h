#pragma once

#include "app/batch/terminalprogress.h"

#include <QElapsedTimer>
#include <QString>

/// What the batch program says on standard output of a product in tiles: a line of progress for each tile, or
/// JSON objects, one a line, with the members time (UTC), task ("0/4"), tile, state ("started", "progress",
/// "done", "skipped", "failed", "stopped", "joined"), seconds since the tile began, percent, product and
/// command.
class TileLog
{
public:
    /// `task`: "i/n"; empty where this program makes all tiles.
    TileLog(bool json, const QString &task);

    /// A tile, or another thing that is called `tile`, begins.
    void begin(const QString &tile, const QString &product);

    /// The commands that make it.
    void command(const QString &command) { m_command = command; }

    /// At most one object a second.
    void progress(int percent);

    /// The tile has ended in this state.
    void end(const char *state);

private:
    void write(const char *state, int percent);

    bool m_json;
    QString m_task;
    QString m_tile;
    QString m_product;
    QString m_command;
    QElapsedTimer m_clock;
    qint64 m_lastProgress = 0; ///< ms since the tile began
    TerminalProgress m_progress;
};
