#include "dataset/join/contourjoin.h"

#include "dataset/contours/ContourFile.h"
#include "dataset/gdalmessages.h"
#include "dataset/join/LineJoiner.h"
#include "dataset/layercrs.h"
#include "dataset/pathencoding.h"
#include "messages/label.h"

#include <QDir>
#include <QFileInfo>

#include <gdal_priv.h>
#include <ogrsf_frmts.h>

#include <algorithm>
#include <memory>

namespace
{

using Dataset = std::unique_ptr<GDALDataset>;
using Feature = std::unique_ptr<OGRFeature>;

QString withReason(const QString &sentence, const GdalMessages &messages)
{
    return messages.lastError().isEmpty() ? sentence : sentence + QLatin1Char('\n') + messages.lastError();
}

/// A tile's file while it is read.
struct OpenTile
{
    Dataset dataset;
    OGRLayer *layer = nullptr; ///< belongs to the dataset; null: the file cannot be read
};

OpenTile openTile(const QString &path, const QString &layer)
{
    OpenTile tile;
    tile.dataset.reset(GDALDataset::Open(encodePath(path).constData(), GDAL_OF_VECTOR | GDAL_OF_VERBOSE_ERROR));
    if (!tile.dataset)
        return tile;
    // Some formats name the layer after the file.
    tile.layer = tile.dataset->GetLayerByName(layer.toUtf8().constData());
    if (!tile.layer && tile.dataset->GetLayerCount() == 1)
        tile.layer = tile.dataset->GetLayer(0);
    return tile;
}

/// The elevation of a line, by which it is joined; 0 if the file does not hold it.
double levelOf(OGRFeature &feature, const OGRLineString &line, const QByteArray &attribute)
{
    if (line.Is3D() && !line.IsEmpty())
        return line.getZ(0);
    const int field = attribute.isEmpty() ? -1 : feature.GetFieldIndex(attribute.constData());
    return field >= 0 ? feature.GetFieldAsDouble(field) : 0.0;
}

QVector<QPointF> pointsOf(const OGRLineString &line)
{
    QVector<QPointF> points;
    points.reserve(line.getNumPoints());
    for (int at = 0; at < line.getNumPoints(); ++at)
        points += QPointF(line.getX(at), line.getY(at));
    return points;
}

/// The joined lines while they are written.
class JoinedLines
{
public:
    explicit JoinedLines(const ContourJoin &join)
        : m_file(join.path, join.driver, join.layer)
        , m_attribute(join.attribute)
    { }

    bool create(const OGRSpatialReference *crs, bool is3D)
    {
        m_is3D = is3D;
        QVector<ContourField> fields{ContourFile::numberField()};
        if (!m_attribute.isEmpty())
            fields += {m_attribute, OFTReal, 0};
        return m_file.create(crs, is3D ? wkbLineString25D : wkbLineString, fields);
    }

    /// Returns whether the line was written.
    bool write(const QVector<QPointF> &points, double level)
    {
        OGRLineString line;
        line.setNumPoints(static_cast<int>(points.size()));
        for (int at = 0; at < points.size(); ++at) {
            if (m_is3D)
                line.setPoint(at, points[at].x(), points[at].y(), level);
            else
                line.setPoint(at, points[at].x(), points[at].y());
        }
        OGRFeature feature(m_file.layer().GetLayerDefn());
        if (m_file.hasFields()) {
            feature.SetField(m_file.field(0), static_cast<int>(m_count));
            if (!m_attribute.isEmpty())
                feature.SetField(m_file.field(1), level);
        }
        feature.SetGeometry(&line);
        ++m_count;
        return m_file.write(feature);
    }

    long long count() const { return m_count; }
    void close() { m_file.close(); }
    void remove() { m_file.remove(); }

private:
    ContourFile m_file;
    QString m_attribute;
    bool m_is3D = false;
    long long m_count = 0;
};

/// The whole joining: its files, and what went wrong.
class Joining
{
public:
    Joining(const QVector<ContourTile> &tiles, const ContourJoin &join,
            const std::function<bool(double)> &progress)
        : m_tiles(tiles)
        , m_join(join)
        , m_progress(progress)
        , m_attribute(join.attribute.toUtf8())
        , m_file(join)
        , m_joiner(join.tolerance, [this](const QVector<QPointF> &points, double level) {
            if (mayGoOn() && !(m_file.write(points, level) && m_messages.lastError().isEmpty()))
                failWriting();
        })
    { }

    ContourJoinResult run()
    {
        createFile();
        for (int at = 0; at < m_tiles.size() && mayGoOn(); ++at)
            readTile(at);
        if (mayGoOn())
            m_result.unmatched = m_joiner.finish();
        if (mayGoOn())
            m_file.close();
        if (mayGoOn() && !m_messages.lastError().isEmpty())
            failWriting();
        if (mayGoOn())
            m_result.lines = m_file.count();
        else
            m_file.remove();
        return m_result;
    }

private:
    bool mayGoOn() const { return m_result.problem.isEmpty() && !m_result.isStopped; }

    void failWriting()
    {
        m_result.problem = withReason(labelText({"MESS_CN_ECRITURE",
                                                 "Les courbes de niveau assemblées ne peuvent pas être "
                                                 "écrites dans « %1 »."})
                                          .arg(QDir::toNativeSeparators(m_join.path)),
                                      m_messages);
    }

    void failReading(const QString &tile)
    {
        m_result.problem = withReason(
            labelText({"MESS_CN_LECTURE", "Les courbes de niveau de « %1 » ne peuvent pas être lues."})
                .arg(QDir::toNativeSeparators(tile)),
            m_messages);
    }

    /// Creates the file like the first tile that has a line; some formats lose the kind of an empty layer.
    void createFile()
    {
        for (const ContourTile &tile : m_tiles) {
            const OpenTile open = openTile(tile.path, m_join.layer);
            if (!open.layer) {
                failReading(tile.path);
                return;
            }
            const Feature feature(open.layer->GetNextFeature());
            if (!feature && &tile != &m_tiles.last())
                continue;
            const OGRGeometry *geometry = feature ? feature->GetGeometryRef() : nullptr;
            const bool is3D = geometry ? geometry->Is3D() : wkbHasZ(open.layer->GetGeomType()) != 0;
            if (!m_file.create(layerCrs(*open.layer), is3D))
                failWriting();
            return;
        }
    }

    void readTile(int index)
    {
        const ContourTile &tile = m_tiles[index];
        const OpenTile open = openTile(tile.path, m_join.layer);
        if (!open.layer) {
            failReading(tile.path);
            return;
        }
        constexpr long long linesPerReport = 1000;
        const auto total = static_cast<double>(std::max<GIntBig>(open.layer->GetFeatureCount(), 1));
        m_joiner.beginTile(tile.keep);
        long long read = 0;
        m_isNear = false;
        for (Feature feature(open.layer->GetNextFeature()); feature && mayGoOn();
             feature.reset(open.layer->GetNextFeature())) {
            addLine(*feature, tile.keep);
            if (++read % linesPerReport == 0)
                report(index + static_cast<double>(read) / total);
        }
        if (mayGoOn() && !m_messages.lastError().isEmpty())
            failReading(tile.path);
        // Lines that leave no piece continue half a cell beyond the tile, as where all of it but the edge has
        // no data; farther away the file's coordinates are not those of the DEM.
        if (mayGoOn() && read > 0 && !m_isNear)
            m_result.problem =
                labelText({"MESS_CN_AILLEURS",
                           "Les courbes de niveau de « %1 » sont hors de leur tuile ; son format en convertit "
                           "sans doute les coordonnées. Choisissez un autre format pour les tuiles."})
                    .arg(QDir::toNativeSeparators(tile.path));
        if (mayGoOn())
            m_joiner.endTile();
        if (mayGoOn())
            report(index + 1.0);
    }

    void addLine(OGRFeature &feature, const CutSides &keep)
    {
        // Some formats make a line a collection of one line.
        const std::unique_ptr<OGRGeometry> geometry(
            OGRGeometryFactory::forceToMultiLineString(feature.StealGeometry()));
        if (!geometry || wkbFlatten(geometry->getGeometryType()) != wkbMultiLineString)
            return;
        for (const OGRLineString *line : *geometry->toMultiLineString()) {
            const double level = levelOf(feature, *line, m_attribute);
            const QVector<QPointF> points = pointsOf(*line);
            const QVector<LinePiece> pieces = cutLine(points, keep, m_join.tolerance);
            m_isNear = m_isNear || !pieces.isEmpty() || isNear(points.value(0), keep);
            for (const LinePiece &piece : pieces)
                m_joiner.add(piece, level);
        }
    }

    /// Whether the place is within the sides, or about a cell away.
    bool isNear(const QPointF &place, const CutSides &sides) const
    {
        constexpr double tolerances = 1000.0; // that are about a cell
        const double cell = m_join.tolerance * tolerances;
        return place.x() >= sides.west - cell && place.x() <= sides.east + cell
            && place.y() >= sides.south - cell && place.y() <= sides.north + cell;
    }

    void report(double tiles)
    {
        if (!m_progress(tiles / static_cast<double>(m_tiles.size())))
            m_result.isStopped = true;
    }

    const QVector<ContourTile> &m_tiles;
    const ContourJoin &m_join;
    const std::function<bool(double)> &m_progress;
    QByteArray m_attribute;
    bool m_isNear = false; ///< a line of the tile lies in it or beside it
    const GdalMessages m_messages;
    ContourJoinResult m_result;
    JoinedLines m_file;
    LineJoiner m_joiner;
};

} // namespace

ContourJoinResult joinContours(const QVector<ContourTile> &tiles, const ContourJoin &join,
                               const std::function<bool(double)> &progress)
{
    return Joining(tiles, join, progress).run();
}
