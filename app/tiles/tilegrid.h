#pragma once

#include <QRect>
#include <QSize>
#include <QString>

/// The tiles of a raster: squares of cells in rows from the upper left corner. Those in the last column and row
/// are cut off where the raster ends.
struct TileGrid
{
    QSize raster;    ///< columns and rows of cells
    int side = 4096; ///< cells of a whole tile's side

    int columns() const { return (raster.width() + side - 1) / side; }
    int rows() const { return (raster.height() + side - 1) / side; }
    qint64 count() const { return static_cast<qint64>(columns()) * rows(); }

    /// The cells of a tile. Tiles are counted row by row from 0.
    QRect window(qint64 tile) const;

    /// "r0002_c0013": row and column of the tile, from 0.
    QString name(qint64 tile) const;
};

/// The tiles that one task makes: the numbers from `begin` to `end` - 1.
struct TileShare
{
    qint64 begin = 0;
    qint64 end = 0;
};

/// Divides `tiles` tiles among `tasks` tasks and returns those of the task with number `task`, from 0. Each
/// tile belongs to one task, and the numbers of tiles differ by one at most. A task has tiles that follow one
/// another, because neighbouring tiles read the same cells.
TileShare shareOf(qint64 tiles, int task, int tasks);

/// A task and the number of tasks.
struct TaskNumber
{
    int task = 0;
    int tasks = 1;
    bool isValid = true;
};

/// Reads "i/n", such as "0/4" to "3/4".
TaskNumber readTaskNumber(const QString &text);
