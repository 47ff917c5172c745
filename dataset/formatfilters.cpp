#include "dataset/formatfilters.h"

#include "dataset/formats.h"

#include <cpl_minixml.h>
#include <gdal_priv.h>

#include <memory>

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
    return driver && formatTraits(name).raster != FormatOffer::Refused && says(driver, GDAL_DCAP_RASTER)
        && (says(driver, GDAL_DCAP_CREATE) || says(driver, GDAL_DCAP_CREATECOPY));
}

bool isVectorOutputFormat(const QString &name)
{
    GDALDriver *driver = driverNamed(name);
    return driver && formatTraits(name).vector != FormatOffer::Refused && says(driver, GDAL_DCAP_VECTOR)
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

QStringList creationOptionValues(const QString &name, const QString &option)
{
    GDALDriver *driver = driverNamed(name);
    const char *list = driver ? driver->GetMetadataItem(GDAL_DMD_CREATIONOPTIONLIST) : nullptr;
    if (!list)
        return {};
    const std::unique_ptr<CPLXMLNode, decltype(&CPLDestroyXMLNode)> root(CPLParseXMLString(list),
                                                                         CPLDestroyXMLNode);
    QStringList values;
    for (const CPLXMLNode *at = root ? root->psChild : nullptr; at; at = at->psNext) {
        if (!EQUAL(CPLGetXMLValue(at, "name", ""), option.toUtf8().constData()))
            continue;
        for (const CPLXMLNode *value = at->psChild; value; value = value->psNext) {
            if (EQUAL(value->pszValue, "Value"))
                values += QString::fromUtf8(CPLGetXMLValue(value, "", ""));
        }
    }
    return values;
}

QStringList formatExtensions(const QString &name)
{
    GDALDriver *driver = driverNamed(name);
    if (!driver)
        return {};
    const QStringList ours = extensionsOfOurs(name);
    if (!ours.isEmpty())
        return ours;
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
