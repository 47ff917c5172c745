#include "app/preview/live/liverequest.h"

#include "viewshed/problem.h"

ToolOptionsReading toolOptions(const IntervisibilityOptions &options)
{
    IntervisibilityOptions picture = options; // only zones are computed here
    picture.result = sightResultWord(SightResult::Picture);
    // Without the paths of files, the fragment has no blanks but those between its arguments.
    std::vector<std::string> arguments{"-SrcFile", "-", "-DstFile", "-", "-point_file", "-"};
    for (const QString &argument :
         intervisibilityFragment(picture, {}).split(QLatin1Char(' '), Qt::SkipEmptyParts))
        arguments.push_back(argument.toStdString());
    try {
        return {viewshed::parsedOptions(arguments), {}};
    } catch (const viewshed::Problem &problem) {
        return {{}, QString::fromUtf8(problem.what())};
    }
}

LiveRequestReading liveRequest(int number, const LiveTerrain &terrain, const QList<ToolObserver> &observers,
                               const IntervisibilityOptions &options)
{
    const ToolOptionsReading reading = toolOptions(options);
    if (!reading.problem.isEmpty())
        return {{}, reading.problem};
    if (observers.isEmpty())
        return {{}, QStringLiteral("There is no observer.")};
    LiveRequest request{number, terrain.ground(), {}, reading.options.combination};
    try {
        for (const ToolObserver &observer : observers)
            request.sights.push_back(terrain.sight(observer, reading.sightOptions()));
    } catch (const viewshed::Problem &problem) {
        return {{}, QString::fromUtf8(problem.what())};
    }
    return {std::move(request), {}};
}

double cellsToSweep(const LiveRequest &request)
{
    const viewshed::Terrain &terrain = request.ground->terrain;
    double cells = 0.0;
    for (const viewshed::Sight &sight : request.sights) {
        const viewshed::Window window = viewshed::windowOf(sight, terrain.width(), terrain.height());
        cells += static_cast<double>(window.width) * window.height;
    }
    return cells;
}

viewshed::BitGrid seenCells(const LiveRequest &request, int threads, const viewshed::Progress &progress)
{
    const viewshed::Terrain &terrain = request.ground->terrain;
    const viewshed::BlockMaxima &maxima = request.ground->maxima;
    const viewshed::Window whole{.left = 0, .top = 0, .width = terrain.width(), .height = terrain.height()};
    viewshed::BitGrid picture(terrain.width(), terrain.height());
    for (std::size_t index = 0; index < request.sights.size(); ++index) {
        const viewshed::Sight &sight = request.sights[index];
        const auto report = [&](double done) {
            if (progress)
                progress((static_cast<double>(index) + done) / static_cast<double>(request.sights.size()));
        };
        if (index == 0 || request.combination == viewshed::Combination::Or)
            viewshed::addHorizonViewshed(picture, terrain, maxima, sight, threads, report);
        else
            viewshed::combine(picture, viewshed::horizonViewshed(terrain, maxima, sight, threads, report),
                              whole, sight, request.combination);
    }
    return picture;
}

QImage seenPicture(const SeenCells &cells, QRgb visible, QRgb hidden, QRgb noData)
{
    const viewshed::BitGrid &seen = cells.seen;
    const viewshed::BitGrid &voids = cells.ground->voids;
    QImage image(seen.width(), seen.height(), QImage::Format_ARGB32_Premultiplied);
    if (image.isNull())
        return image;
    const std::array<QRgb, 4> colors{qPremultiply(hidden), qPremultiply(visible), qPremultiply(noData),
                                     qPremultiply(noData)};
    for (int row = 0; row < seen.height(); ++row) {
        auto *pixels = reinterpret_cast<QRgb *>(image.scanLine(row));
        const std::uint64_t *seenWords = seen.row(row);
        const std::uint64_t *voidWords = voids.row(row);
        for (int column = 0; column < seen.width(); ++column) {
            const int word = column / viewshed::BitGrid::bitsPerWord;
            const int bit = column % viewshed::BitGrid::bitsPerWord;
            pixels[column] = colors[(seenWords[word] >> bit & 1U) | (voidWords[word] >> bit & 1U) << 1U];
        }
    }
    return image;
}
