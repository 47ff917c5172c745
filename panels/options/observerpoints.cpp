#include "panels/options/observerpoints.h"

#include "dataset/gdalmessages.h"
#include "dataset/pathencoding.h"
#include "messages/label.h"
#include "panels/options/recordfields.h"

#include <QDir>
#include <QFile>
#include <QRegularExpression>

#include <gdal_priv.h>
#include <ogrsf_frmts.h>

#include <cmath>
#include <memory>

QString altitudeModeText(AltitudeMode mode)
{
    return mode == AltitudeMode::Relative ? QStringLiteral("Relative") : QStringLiteral("Absolute");
}

std::optional<AltitudeMode> readAltitudeMode(const QString &text)
{
    for (const AltitudeMode mode : {AltitudeMode::Relative, AltitudeMode::Absolute}) {
        if (text.compare(altitudeModeText(mode), Qt::CaseInsensitive) == 0)
            return mode;
    }
    return std::nullopt;
}

bool isCoordinate(double number)
{
    return std::abs(number) <= highestCoordinate; // false for NaN
}

bool isAltitude(double number)
{
    return std::abs(number) <= highestAltitude;
}

QString pointProblem(const ObserverPoint &point)
{
    const auto problem = [](const char *name, double number, double lowest, double highest) {
        return numberProblem(QString::fromLatin1(name), number, lowest, highest, false);
    };
    if (!isCoordinate(point.x))
        return problem("x", point.x, -highestCoordinate, highestCoordinate);
    if (!isCoordinate(point.y))
        return problem("y", point.y, -highestCoordinate, highestCoordinate);
    if (!isAltitude(point.height))
        return problem("height", point.height, -highestAltitude, highestAltitude);
    if (!(point.maxDistance >= 0.0 && point.maxDistance <= longestDistance))
        return problem("distance", point.maxDistance, 0.0, longestDistance);
    return {};
}

std::optional<double> absoluteAltitude(const ObserverPoint &point, const std::optional<double> &ground)
{
    if (point.mode == AltitudeMode::Absolute)
        return point.height;
    return ground ? std::optional<double>(*ground + point.height) : std::nullopt;
}

std::optional<ToolObserver> toolObserver(const ObserverPoint &point, const std::optional<double> &copyGround,
                                         const std::optional<double> &demGround)
{
    const auto altitude = absoluteAltitude(point, copyGround ? copyGround : demGround);
    if (!point.enabled || !altitude)
        return std::nullopt;
    return ToolObserver{point.x, point.y, *altitude, point.maxDistance};
}

PointLinesReading readPointLines(const QString &text, const ObserverPoint &defaults)
{
    static const QRegularExpression separators(QStringLiteral("[\\s;]+"));
    PointLinesReading reading;
    for (const QString &line : text.split(QLatin1Char('\n'))) {
        const QStringList fields = line.split(separators, Qt::SkipEmptyParts);
        if (fields.isEmpty())
            continue;
        ObserverPoint point = defaults;
        bool good = fields.size() >= 2 && fields.size() <= 5;
        double *const numbers[] = {&point.x, &point.y, &point.height, nullptr, &point.maxDistance};
        for (int at = 0; good && at < fields.size(); ++at) {
            if (numbers[at]) {
                *numbers[at] = fields.at(at).toDouble(&good); // "nan" and "inf" are numbers, but unusable
            } else {
                const auto mode = readAltitudeMode(fields.at(at));
                good = mode.has_value();
                point.mode = mode.value_or(point.mode);
            }
        }
        if (!good)
            ++reading.invalidLines;
        else if (!pointProblem(point).isEmpty())
            ++reading.unusablePoints;
        else
            reading.points += point;
    }
    return reading;
}

namespace
{

/// A point that was read from a row.
struct PointRowReading
{
    ObserverPoint point;
    QString problem; ///< empty for a good point
};

QVariantMap pointRow(const ObserverPoint &point)
{
    return {{QStringLiteral("enabled"), point.enabled},
            {QStringLiteral("x"), point.x},
            {QStringLiteral("y"), point.y},
            {QStringLiteral("height"), point.height},
            {QStringLiteral("mode"), altitudeModeText(point.mode)},
            {QStringLiteral("distance"), point.maxDistance}};
}

PointRowReading readPointRow(const QVariantMap &row)
{
    PointRowReading reading;
    ObserverPoint &point = reading.point;
    const QList<QPair<QString, double *>> numbers{
        {"x", &point.x}, {"y", &point.y}, {"height", &point.height}, {"distance", &point.maxDistance}};
    for (const auto &[name, number] : numbers) {
        const bool required = name.size() == 1;
        const auto value = readNumber(row.value(name));
        if (value)
            *number = *value;
        else if (required || row.contains(name))
            reading.problem =
                labelText({"MESS_OBS_NOMBRE",
                           "Chaque observateur demande les nombres x et y ; %1 n'est pas un nombre."})
                    .arg(name);
    }
    if (row.contains(QStringLiteral("mode"))) {
        const auto mode = readAltitudeMode(row.value(QStringLiteral("mode")).toString());
        if (!mode)
            reading.problem = labelText({"MESS_OBS_MODE", "mode doit être Relative ou Absolute."});
        point.mode = mode.value_or(point.mode);
    }
    const QString enabled = QStringLiteral("enabled");
    if (row.contains(enabled)) {
        const auto on = readSwitch(row.value(enabled));
        point.enabled = on.value_or(point.enabled);
        if (!on)
            reading.problem = switchProblem(enabled, row.value(enabled));
    }
    const QVariantMap known = pointRow(point);
    for (auto member = row.cbegin(); member != row.cend(); ++member) {
        if (!known.contains(member.key()))
            reading.problem = labelText({"MESS_REC_INCONNU", "Membre inconnu : « %1 »."}).arg(member.key());
    }
    if (reading.problem.isEmpty())
        reading.problem = pointProblem(point);
    return reading;
}

} // namespace

PointRowsReading readPointRows(const QVariant &value)
{
    PointRowsReading reading;
    if (value.userType() != QMetaType::QVariantList)
        return {{}, labelText({"MESS_OBS_TABLEAU", "observers doit être un tableau d'observateurs."})};
    for (const QVariant &row : value.toList()) {
        const PointRowReading one = readPointRow(row.toMap());
        if (!one.problem.isEmpty())
            return {{}, one.problem};
        reading.points += one.point;
    }
    return reading;
}

QVariantList pointRows(const QList<ObserverPoint> &points)
{
    QVariantList rows;
    for (const ObserverPoint &point : points)
        rows += pointRow(point);
    return rows;
}

QString writePointFile(const QString &folder, const QList<ToolObserver> &observers)
{
    const QString path = QDir(folder).filePath(QStringLiteral("point.shp"));
    const GdalMessages messages; // the caller learns of an error by the empty path
    GDALDriver *driver = GetGDALDriverManager()->GetDriverByName("ESRI Shapefile");
    std::unique_ptr<GDALDataset> file(
        driver ? driver->Create(encodePath(path).constData(), 0, 0, 0, GDT_Unknown, nullptr) : nullptr);
    OGRLayer *layer = file ? file->CreateLayer("point", nullptr, wkbPoint25D, nullptr) : nullptr;
    OGRFieldDefn distance("Max_Dist", OFTReal);
    constexpr int decimals = 15;
    distance.SetWidth(10 + 1 + decimals); // room for the digits of longestDistance; GDAL's own width has not
    distance.SetPrecision(decimals);
    if (!layer || layer->CreateField(&distance) != OGRERR_NONE)
        return {};
    for (const ToolObserver &observer : observers) {
        OGRFeature feature(layer->GetLayerDefn());
        OGRPoint point(observer.x, observer.y, observer.z);
        feature.SetGeometry(&point);
        feature.SetField(0, observer.maxDistance);
        if (layer->CreateFeature(&feature) != OGRERR_NONE)
            return {};
    }
    file.reset(); // writes what GDAL still holds; the disk may be full
    return messages.lastError().isEmpty() ? path : QString();
}
