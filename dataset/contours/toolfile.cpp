#include "dataset/contours/toolfile.h"

#include "dataset/pathencoding.h"

#include <QVector>

ToolFile openToolFile(const QString &path, const QString &layer, const QString &levelField)
{
    ToolFile file;
    file.dataset.reset(GDALDataset::Open(encodePath(path).constData(), GDAL_OF_VECTOR | GDAL_OF_VERBOSE_ERROR));
    if (!file.dataset)
        return file;
    file.layer = file.dataset->GetLayerByName(layer.toUtf8().constData());
    if (!file.layer && file.dataset->GetLayerCount() == 1)
        file.layer = file.dataset->GetLayer(0);
    if (!file.layer)
        return file;
    OGRFeatureDefn &fields = *file.layer->GetLayerDefn();
    QVector<int> others;
    for (int at = 0; at < fields.GetFieldCount(); ++at)
        if (!EQUAL(fields.GetFieldDefn(at)->GetNameRef(), "ID"))
            others += at;
    const int named = levelField.isEmpty() ? -1 : fields.GetFieldIndex(levelField.toUtf8().constData());
    file.level = named >= 0 ? named : others.value(0, -1);
    file.highest = others.value(1, -1);
    return file;
}
