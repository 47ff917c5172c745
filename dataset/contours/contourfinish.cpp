#include "dataset/contours/contourfinish.h"

#include "dataset/contours/ContourFile.h"
#include "dataset/contours/contourstyles.h"
#include "dataset/contours/linecourse.h"
#include "dataset/contours/qgisstyle.h"
#include "dataset/contours/toolfile.h"
#include "dataset/demground.h"
#include "dataset/formats.h"
#include "dataset/gdalmessages.h"
#include "dataset/layercrs.h"
#include "dataset/pathencoding.h"
#include "messages/label.h"
#include "messages/shownnumber.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QLocale>

#include <algorithm>
#include <cmath>
#include <memory>
#include <numbers>

namespace
{

using Feature = std::unique_ptr<OGRFeature>;

/// Numbers of the product's fields; -1: it has no such field.
struct ProductFields
{
    int number = -1;
    int level = -1; ///< elevation of the line, or the lowest elevation of the area
    int highest = -1;
    int index = -1;
    int name = -1;
    int style = -1;
};

/// The whole finishing: its files, and what went wrong.
class Finishing
{
public:
    Finishing(const ContourFinish &finish, const std::function<bool(double)> &progress)
        : m_finish(finish)
        , m_progress(progress)
        , m_file(finish.product, finish.driver, finish.layer)
        , m_ground(finish.dem, finish.band)
        , m_hasNames(finish.styled && !finish.areas && !nameAttribute(finish.driver).isEmpty()
                     && nameAttribute(finish.driver).compare(finish.attribute, Qt::CaseInsensitive) != 0)
    { }

    ContourFinishResult run()
    {
        m_tool = openToolFile(m_finish.lines, m_finish.layer, m_finish.areas ? QString() : m_finish.attribute);
        if (!m_tool.layer || (m_finish.areas && m_tool.highest < 0))
            failReading(m_finish.lines);
        if (mayGoOn() && !m_ground.isOpen())
            failReading(m_finish.dem);
        if (mayGoOn() && m_finish.areas)
            readClasses();
        if (mayGoOn() && !createFile())
            failWriting();
        if (mayGoOn())
            writeFeatures();
        if (mayGoOn() && m_finish.qgisStyle && !writeQgisStyle())
            failWriting();
        if (mayGoOn())
            m_file.close();
        if (mayGoOn() && !m_messages.lastError().isEmpty())
            failWriting();
        if (mayGoOn() && m_finish.areas)
            compareAreas();
        if (!mayGoOn())
            m_file.remove();
        return m_result;
    }

private:
    bool mayGoOn() const { return m_result.problem.isEmpty() && !m_result.isStopped; }

    void fail(const Label &sentence, const QString &file)
    {
        m_result.problem = labelText(sentence).arg(QDir::toNativeSeparators(file));
        if (!m_messages.lastError().isEmpty())
            m_result.problem += QLatin1Char('\n') + m_messages.lastError();
    }

    void failReading(const QString &file)
    {
        fail({"MESS_CN_FINIR_LECTURE", "« %1 » ne peut pas être lu."}, file);
    }

    void failWriting()
    {
        fail({"MESS_CN_FINIR_ECR", "Les courbes de niveau ne peuvent pas être écrites dans « %1 »."},
             m_finish.product);
    }

    void report(double share)
    {
        if (!m_progress(share))
            m_result.isStopped = true;
    }

    bool hasIndex() const { return !m_finish.areas && m_finish.index.exist(); }

    /// Reads the elevations that the DEM really has, and all areas' bounds.
    void readClasses()
    {
        m_cells = cellRange(m_finish.dem, m_finish.band, m_finish.voids, [this](double share) {
            report(share * cellsShare);
            return mayGoOn();
        });
        if (mayGoOn() && !m_cells.isRead)
            failReading(m_finish.dem);
        const char *geometry[] = {"OGR_GEOMETRY", nullptr};
        m_tool.layer->SetIgnoredFields(const_cast<const char **>(geometry));
        QVector<AreaBounds> written;
        for (Feature feature(m_tool.layer->GetNextFeature()); feature;
             feature.reset(m_tool.layer->GetNextFeature()))
            written += {feature->GetFieldAsDouble(m_tool.level), feature->GetFieldAsDouble(m_tool.highest)};
        m_tool.layer->SetIgnoredFields(nullptr);
        m_tool.layer->ResetReading();
        m_classes = areaClasses(written, {m_cells.lowest, m_cells.highest});
    }

    bool createFile()
    {
        QVector<ContourField> fields;
        const auto add = [&fields](const ContourField &field) {
            fields += field;
            return static_cast<int>(fields.size()) - 1;
        };
        m_fields.number = add(ContourFile::numberField());
        if (m_finish.areas) {
            m_fields.level = add({m_finish.lowestAttribute, OFTReal});
            m_fields.highest = add({m_finish.highestAttribute, OFTReal});
        } else if (!m_finish.attribute.isEmpty()) {
            m_fields.level = add({m_finish.attribute, OFTReal});
        }
        if (hasIndex())
            m_fields.index = add({indexLineAttribute, OFTInteger, 1});
        if (m_hasNames)
            m_fields.name = add({nameAttribute(m_finish.driver), OFTString});
        constexpr int longestText = 254; // of a shapefile, whose usual width would cut a style
        if (m_finish.styled && stylePlace(m_finish.driver) == StylePlace::Attribute)
            m_fields.style = add({styleAttribute, OFTString, longestText});
        OGRLayer &layer = *m_tool.layer;
        if (!m_file.create(layerCrs(layer), layer.GetGeomType(), fields))
            return false;
        for (int *field : {&m_fields.number, &m_fields.level, &m_fields.highest, &m_fields.index,
                           &m_fields.name, &m_fields.style})
            *field = m_file.field(*field);
        return true;
    }

    void writeFeatures()
    {
        constexpr long long featuresPerReport = 1000;
        const auto total = static_cast<double>(std::max<GIntBig>(m_tool.layer->GetFeatureCount(), 1));
        const double begin = m_finish.areas ? cellsShare : 0.0;
        long long read = 0;
        for (Feature feature(m_tool.layer->GetNextFeature()); feature && mayGoOn();
             feature.reset(m_tool.layer->GetNextFeature())) {
            if (m_finish.areas)
                writeArea(*feature, m_classes[static_cast<int>(read)]);
            else
                writeLine(*feature);
            ++read;
            if (mayGoOn() && (m_finish.areas || read % featuresPerReport == 0))
                report(begin + (1.0 - begin) * static_cast<double>(read) / total);
        }
        if (mayGoOn() && !m_messages.lastError().isEmpty())
            failReading(m_finish.lines);
        if (mayGoOn())
            report(1.0);
    }

    double levelOf(OGRFeature &feature, const OGRLineString &line) const
    {
        if (m_tool.level >= 0)
            return feature.GetFieldAsDouble(m_tool.level);
        return line.Is3D() && !line.IsEmpty() ? line.getZ(0) : 0.0;
    }

    bool isTooShort(const OGRLineString &line) const
    {
        if (m_finish.shortestRing <= 0.0 || line.IsEmpty() || !line.get_IsClosed())
            return false;
        const bool isInDegrees = m_ground.unit() == QStringLiteral("°");
        const QSizeF scale =
            isInDegrees ? m_ground.metresPerUnit(QPointF(line.getX(0), line.getY(0))) : QSizeF(1.0, 1.0);
        return lengthOf(line, scale) < m_finish.shortestRing;
    }

    /// Whether the tool draws the lines of the DEM with the higher ground on their right. It goes by columns
    /// and rows, so that a DEM whose rows run north mirrors it.
    bool isLabelUpsideDown() const
    {
        const QPointF origin = m_ground.toGround({0.0, 0.0});
        const QPointF column = m_ground.toGround({1.0, 0.0}) - origin;
        const QPointF row = m_ground.toGround({0.0, 1.0}) - origin;
        return column.x() * row.y() - column.y() * row.x() < 0.0;
    }

    void writeLine(OGRFeature &feature)
    {
        const std::unique_ptr<OGRGeometry> geometry(feature.StealGeometry());
        if (!geometry || wkbFlatten(geometry->getGeometryType()) != wkbLineString)
            return;
        OGRLineString &line = *geometry->toLineString();
        if (isTooShort(line)) {
            ++m_result.leftOut;
            return;
        }
        if ((m_finish.styled || m_finish.qgisStyle) && isLabelUpsideDown())
            line.reversePoints();
        const double level = levelOf(feature, line);
        const bool isIndexLine = hasIndex() && m_finish.index.hold(level);
        const QString label = isIndexLine ? levelText(level) : QString();
        Feature written = featureOf(level, isIndexLine);
        written->SetGeometry(&line);
        setStyle(*written, lineStyle(m_finish.driver, label));
        add(*written);
        if (mayGoOn() && m_finish.styled && isIndexLine && labelsArePoints(m_finish.driver))
            writeLabel(line, level, label);
        ++m_result.features;
    }

    /// A feature with the attributes of a line.
    Feature featureOf(double level, bool isIndexLine)
    {
        Feature feature = numberedFeature();
        if (m_fields.level >= 0)
            feature->SetField(m_fields.level, level);
        if (m_fields.index >= 0)
            feature->SetField(m_fields.index, isIndexLine ? 1 : 0);
        if (m_fields.name >= 0)
            feature->SetField(m_fields.name, levelText(level).toUtf8().constData());
        return feature;
    }

    Feature numberedFeature()
    {
        Feature feature(new OGRFeature(m_file.layer().GetLayerDefn()));
        if (m_fields.number >= 0)
            feature->SetField(m_fields.number, static_cast<int>(m_result.features));
        else if (const int layer = feature->GetFieldIndex("Layer");
                 layer >= 0) // a drawing has layers of its own
            feature->SetField(layer, m_finish.layer.toUtf8().constData());
        return feature;
    }

    void writeLabel(const OGRLineString &line, double level, const QString &label)
    {
        // Two millimetres where the DEM's longer side is printed on 30 centimetres.
        constexpr double textsPerSide = 150.0;
        const double height =
            m_ground.cellSize() * std::max(m_ground.width(), m_ground.height()) / textsPerSide;
        // The text stands beside the line on its uphill side: these formats would draw the line through it.
        constexpr double distance = 0.3; // of the text's foot from the line, in heights of the text
        const LinePlace middle = middleOf(line);
        const double direction = middle.angle * std::numbers::pi / 180.0;
        OGRPoint point(middle.point.x() - std::sin(direction) * distance * height,
                       middle.point.y() + std::cos(direction) * distance * height);
        if (line.Is3D())
            point.setZ(level);
        Feature feature = featureOf(level, true);
        feature->SetGeometry(&point);
        setStyle(*feature, labelStyle(label, middle.angle, height));
        add(*feature);
    }

    void writeArea(OGRFeature &area, const AreaClass &areaClass)
    {
        const std::unique_ptr<OGRGeometry> geometry(area.StealGeometry());
        if (!geometry)
            return;
        measure(*geometry);
        Feature written = numberedFeature();
        if (m_fields.level >= 0) {
            written->SetField(m_fields.level, areaClass.bounds.lowest);
            written->SetField(m_fields.highest, areaClass.bounds.highest);
        }
        written->SetGeometry(geometry.get());
        setStyle(*written, areaStyle(hypsometricTint(areaClass.rank, static_cast<int>(m_classes.size()))));
        add(*written);
        ++m_result.features;
    }

    void measure(const OGRGeometry &area)
    {
        const CPLErrorHandlerPusher quiet(CPLQuietErrorHandler); // an invalid area is reported in a sentence
        if (wkbFlatten(area.getGeometryType()) == wkbMultiPolygon)
            m_area += area.toMultiPolygon()->get_Area();
        else if (wkbFlatten(area.getGeometryType()) == wkbPolygon)
            m_area += area.toPolygon()->get_Area();
        if (OGRGeometryFactory::haveGEOS() && !area.IsValid())
            ++m_invalid;
    }

    void setStyle(OGRFeature &feature, const QString &style) const
    {
        if (!m_finish.styled)
            return;
        if (stylePlace(m_finish.driver) == StylePlace::Feature)
            feature.SetStyleString(style.toUtf8().constData());
        else if (m_fields.style >= 0)
            feature.SetField(m_fields.style, style.toUtf8().constData());
    }

    void add(OGRFeature &feature)
    {
        if (!m_file.write(feature) || !m_messages.lastError().isEmpty())
            failWriting();
    }

    /// The name that a field has in the product: some formats change it.
    QString fieldName(int field)
    {
        return field < 0 ? QString()
                         : QString::fromUtf8(m_file.layer().GetLayerDefn()->GetFieldDefn(field)->GetNameRef());
    }

    bool writeQgisStyle()
    {
        QgisContours contours;
        if (m_finish.areas) {
            contours.lowestField = fieldName(m_fields.level);
            contours.highestField = fieldName(m_fields.highest);
            contours.classes = m_classes;
        } else {
            contours.indexField = fieldName(m_fields.index);
            contours.levelField = fieldName(m_fields.level);
        }
        const QFileInfo product(m_finish.product);
        QFile file(product.dir().filePath(product.completeBaseName() + QLatin1String(".qml")));
        const QByteArray text = qgisStyle(contours);
        return file.open(QIODevice::WriteOnly) && file.write(text) == text.size() && file.flush();
    }

    /// Warns where the areas are not what the DEM has.
    void compareAreas()
    {
        constexpr double tolerance = 0.005; // share of the cells; around odd voids the tool cuts corners
        const double expected = static_cast<double>(m_cells.count) * m_cells.cellArea;
        const double lack = expected > 0.0 ? 1.0 - m_area / expected : 0.0;
        if (std::abs(lack) > tolerance)
            m_result.warning =
                labelText({"MESS_CN_SURF_ECART",
                           "Les surfaces ne recouvrent pas exactement les cellules valides du MNT : il y "
                           "manque %1 % de leur étendue (un nombre négatif en compte trop)."})
                    .arg(shownNumber(100.0 * lack, 'g', 3));
        else if (m_invalid > 0)
            m_result.warning =
                labelText({"MESS_CN_SURF_INVALIDE",
                           "%1 surfaces se recoupent elles-mêmes ; certains logiciels les refusent."})
                    .arg(m_invalid);
    }

    static constexpr double cellsShare = 0.3; ///< part of the progress that the reading of the DEM takes

    const ContourFinish &m_finish;
    const std::function<bool(double)> &m_progress;
    const GdalMessages m_messages;
    ContourFinishResult m_result;
    ContourFile m_file;
    const DemGround m_ground;
    const bool m_hasNames; ///< each line's elevation is the name of its feature, too
    ToolFile m_tool;
    ProductFields m_fields;
    CellRange m_cells;
    QVector<AreaClass> m_classes; ///< in the order of the tool's file
    double m_area = 0.0;          ///< sum of the surfaces of all areas
    long long m_invalid = 0;      ///< number of areas that are invalid geometries
};

} // namespace

ContourFinishResult finishContours(const ContourFinish &finish, const std::function<bool(double)> &progress)
{
    return Finishing(finish, progress).run();
}
