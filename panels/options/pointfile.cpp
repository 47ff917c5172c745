#include "panels/options/pointfile.h"

#include "dataset/gdalmessages.h"
#include "dataset/pathencoding.h"

#include <QDir>
#include <QVector>

#include <gdal_priv.h>
#include <ogrsf_frmts.h>

#include <algorithm>
#include <memory>

namespace
{

constexpr int longestName = 254; // bytes; a field of the format holds no more

/// The name as UTF-8, cut between two characters where it is too long.
QByteArray nameBytes(const QString &name)
{
    QByteArray bytes = name.toUtf8();
    if (bytes.size() <= longestName)
        return bytes;
    int end = longestName;
    while (end > 0 && (bytes.at(end) & 0xC0) == 0x80) // the byte continues a character
        --end;
    return bytes.left(end);
}

/// The fields of a point file that some observer needs, by their numbers in the file.
struct PointFields
{
    int distance = -1;
    int name = -1;
    QVector<QPair<int, const LimitField *>> limits;
};

/// Creates the field and returns its number; -1 after a failure.
int addField(OGRLayer &layer, const char *name, OGRFieldType type, int width, int decimals)
{
    OGRFieldDefn field(name, type);
    field.SetWidth(width);
    field.SetPrecision(decimals);
    return layer.CreateField(&field) == OGRERR_NONE ? layer.GetLayerDefn()->GetFieldCount() - 1 : -1;
}

int addNumber(OGRLayer &layer, const char *name)
{
    constexpr int decimals = 15;
    // Room for a sign and the digits of longestDistance; GDAL's own width has not.
    return addField(layer, name, OFTReal, 10 + 1 + decimals, decimals);
}

/// Creates the fields. Nothing after a failure.
std::optional<PointFields> addFields(OGRLayer &layer, const QList<ToolObserver> &observers)
{
    PointFields fields{.distance = addNumber(layer, "Max_Dist")};
    bool good = fields.distance >= 0;
    int nameWidth = 0;
    for (const ToolObserver &observer : observers)
        nameWidth = std::max(nameWidth, static_cast<int>(nameBytes(observer.name).size()));
    if (nameWidth > 0) {
        fields.name = addField(layer, "NAME", OFTString, nameWidth, 0);
        good = good && fields.name >= 0;
    }
    for (const LimitField &field : limitFields()) {
        const auto has = [&](const ToolObserver &observer) {
            return (observer.limits.*field.value).has_value();
        };
        if (std::any_of(observers.begin(), observers.end(), has)) {
            fields.limits += {addNumber(layer, field.toolField), &field};
            good = good && fields.limits.last().first >= 0;
        }
    }
    return good ? std::optional(fields) : std::nullopt;
}

bool addObserver(OGRLayer &layer, const PointFields &fields, const ToolObserver &observer)
{
    OGRFeature feature(layer.GetLayerDefn());
    OGRPoint point(observer.x, observer.y, observer.z);
    feature.SetGeometry(&point);
    feature.SetField(fields.distance, observer.maxDistance);
    if (fields.name >= 0 && !observer.name.isEmpty())
        feature.SetField(fields.name, nameBytes(observer.name).constData());
    for (const auto &[number, field] : fields.limits) {
        if (const auto &value = observer.limits.*field->value)
            feature.SetField(number, *value);
    }
    return layer.CreateFeature(&feature) == OGRERR_NONE;
}

} // namespace

QString writePointFile(const QString &folder, const QList<ToolObserver> &observers)
{
    const QString path = QDir(folder).filePath(QStringLiteral("point.shp"));
    const GdalMessages messages; // the caller learns of an error by the empty path
    GDALDriver *driver = GetGDALDriverManager()->GetDriverByName("ESRI Shapefile");
    std::unique_ptr<GDALDataset> file(
        driver ? driver->Create(encodePath(path).constData(), 0, 0, 0, GDT_Unknown, nullptr) : nullptr);
    // The format's own encoding has only the letters of western Europe.
    const bool named = std::any_of(observers.begin(), observers.end(),
                                   [](const ToolObserver &observer) { return !observer.name.isEmpty(); });
    CPLStringList options;
    if (named)
        options.SetNameValue("ENCODING", "UTF-8");
    OGRLayer *layer = file ? file->CreateLayer("point", nullptr, wkbPoint25D, options.List()) : nullptr;
    const auto fields = layer ? addFields(*layer, observers) : std::nullopt;
    if (!fields)
        return {};
    for (const ToolObserver &observer : observers) {
        if (!addObserver(*layer, *fields, observer))
            return {};
    }
    file.reset(); // writes what GDAL still holds; the disk may be full
    return messages.lastError().isEmpty() ? path : QString();
}
