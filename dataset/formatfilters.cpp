#include "dataset/formatfilters.h"

#include <gdal_priv.h>

namespace
{

GDALDriver *driverNamed(const QString &name)
{
    return GetGDALDriverManager()->GetDriverByName(name.toUtf8().constData());
}

bool says(GDALDriver *driver, const char *item)
{
    const char *value = driver->GetMetadataItem(item);
    return value && EQUAL(value, "YES");
}

} // namespace

bool isRasterOutputFormat(const QString &name)
{
    GDALDriver *driver = driverNamed(name);
    // A virtual raster would refer to the input instead of holding the product; the others leave files and
    // folders of other names behind.
    static const QStringList others{"VRT", "KMLSUPEROVERLAY", "MRF", "ILWIS"};
    return driver && !others.contains(name, Qt::CaseInsensitive) && says(driver, GDAL_DCAP_RASTER)
        && (says(driver, GDAL_DCAP_CREATE) || says(driver, GDAL_DCAP_CREATECOPY));
}

bool isVectorOutputFormat(const QString &name)
{
    GDALDriver *driver = driverNamed(name);
    // Tables without geometries, formats of fixed layers, and those that want settings of their own.
    static const QStringList others{"OGR_VRT",    "BAG", "CSV", "DGN",    "DXF", "FITS", "GPSBabel", "GPX",
                                    "Interlis 2", "MVT", "ODS", "PGDUMP", "S57", "VDV",  "XLSX"};
    return driver && !others.contains(name, Qt::CaseInsensitive) && says(driver, GDAL_DCAP_VECTOR)
        && says(driver, GDAL_DCAP_CREATE) && !formatExtensions(name).isEmpty();
}

bool storesCells(const QString &name, const QString &type)
{
    GDALDriver *driver = driverNamed(name);
    const char *types = driver ? driver->GetMetadataItem(GDAL_DMD_CREATIONDATATYPES) : nullptr;
    return driver && (!types || QString::fromUtf8(types).split(QLatin1Char(' ')).contains(type));
}

bool hasCreationOption(const QString &name, const QString &option)
{
    GDALDriver *driver = driverNamed(name);
    const char *list = driver ? driver->GetMetadataItem(GDAL_DMD_CREATIONOPTIONLIST) : nullptr;
    if (!list)
        return false;
    const QString text = QString::fromUtf8(list);
    return text.contains(QStringLiteral("name='%1'").arg(option), Qt::CaseInsensitive)
        || text.contains(QStringLiteral("name=\"%1\"").arg(option), Qt::CaseInsensitive);
}

QStringList formatExtensions(const QString &name)
{
    GDALDriver *driver = driverNamed(name);
    if (!driver)
        return {};
    // Under its other extensions the driver would make an archive, or a table without shapes.
    if (EQUAL(driver->GetDescription(), "ESRI Shapefile"))
        return {QStringLiteral("shp")};
    if (EQUAL(driver->GetDescription(), "MapInfo File"))
        return {QStringLiteral("tab"), QStringLiteral("mif")};
    const char *list = driver->GetMetadataItem(GDAL_DMD_EXTENSIONS);
    if (!list)
        list = driver->GetMetadataItem(GDAL_DMD_EXTENSION);
    return QString::fromUtf8(list).split(QLatin1Char(' '), Qt::SkipEmptyParts);
}

QStringList driverNames()
{
    QStringList names;
    GDALDriverManager *manager = GetGDALDriverManager();
    for (int at = 0; at < manager->GetDriverCount(); ++at)
        names += QString::fromUtf8(manager->GetDriver(at)->GetDescription());
    names.sort(Qt::CaseInsensitive);
    return names;
}

QString formatTitle(const QString &name)
{
    GDALDriver *driver = driverNamed(name);
    const char *title = driver ? driver->GetMetadataItem(GDAL_DMD_LONGNAME) : nullptr;
    return title ? QString::fromUtf8(title) : name;
}

QStringList vectorFilePatterns()
{
    QStringList patterns;
    for (const QString &name : driverNames()) {
        if (!says(driverNamed(name), GDAL_DCAP_VECTOR))
            continue;
        for (const QString &extension : formatExtensions(name))
            patterns += QStringLiteral("*.") + extension;
    }
    patterns.sort();
    patterns.removeDuplicates();
    return patterns;
}
