#pragma once

#include "app/preview/live/LiveTerrain.h"
#include "panels/options/fragments.h"
#include "viewshed/options.h"
#include "viewshed/sweep/horizon.h"

#include <QImage>
#include <QList>
#include <QRgb>

#include <memory>
#include <vector>

/// What the tool understands of a panel's options.
struct ToolOptionsReading
{
    viewshed::Options options; ///< without files
    QString problem;           ///< why the tool refuses them, in an English sentence; empty otherwise

    viewshed::SightOptions sightOptions() const { return {options.targetHeight, options.curvature}; }
};

/// The panel's options as the tool reads them from its command line, with the digits that the command line has
/// of each number.
ToolOptionsReading toolOptions(const IntervisibilityOptions &options);

/// A viewshed to compute, all of it in plain numbers that any thread may read.
struct LiveRequest
{
    int number = 0; ///< chosen by the caller, to recognise the result
    std::shared_ptr<const LiveGround> ground;
    std::vector<viewshed::Sight> sights; ///< one at least
    viewshed::Combination combination = viewshed::Combination::Overwrite;
};

/// A request that was made of observers and options.
struct LiveRequestReading
{
    LiveRequest request;
    QString problem; ///< why the tool would refuse to run, in an English sentence; empty otherwise
};

LiveRequestReading liveRequest(int number, const LiveTerrain &terrain, const QList<ToolObserver> &observers,
                               const IntervisibilityOptions &options);

/// Number of cells that the computation looks at, for each observer those around the observer's reach; the
/// duration is about proportional to it.
double cellsToSweep(const LiveRequest &request);

/// The cells that the observers see: bit by bit what the tool paints. `progress` receives the share that is
/// done, in the calling thread and every few milliseconds; what it throws ends the computation and is thrown
/// again. The result does not depend on `threads`.
viewshed::BitGrid seenCells(const LiveRequest &request, int threads, const viewshed::Progress &progress = {});

/// The result of a request. Both grids have the size of the copy.
struct SeenCells
{
    viewshed::BitGrid seen;                   ///< 1 for each cell that is seen
    std::shared_ptr<const LiveGround> ground; ///< that of the request; its voids are painted before `seen`
    double milliseconds = 0.0;                ///< duration of the computation
};

/// The picture that the tool paints: one pixel a cell, in premultiplied colours.
QImage seenPicture(const SeenCells &cells, QRgb visible, QRgb hidden, QRgb noData);
