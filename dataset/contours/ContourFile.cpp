#include "dataset/contours/ContourFile.h"

#include "dataset/pathencoding.h"

#include <QDir>
#include <QFileInfo>

#include <algorithm>

ContourFile::ContourFile(const QString &path, const QString &driver, const QString &layer)
    : m_path(path)
    , m_driver(driver)
    , m_layerName(layer)
    , m_before(filesInFolder())
{ }

bool ContourFile::create(const OGRSpatialReference *crs, OGRwkbGeometryType geometry,
                         const QVector<ContourField> &fields)
{
    GDALDriver *driver = GetGDALDriverManager()->GetDriverByName(m_driver.toUtf8().constData());
    if (!driver)
        return false;
    m_dataset.reset(driver->Create(encodePath(m_path).constData(), 0, 0, 0, GDT_Unknown, nullptr));
    if (!m_dataset)
        return false;
    if (m_dataset->TestCapability(ODsCTransactions)) // a database would make one of every feature
        m_dataset->StartTransaction();
    m_layer = m_dataset->CreateLayer(m_layerName.toUtf8().constData(), const_cast<OGRSpatialReference *>(crs),
                                     geometry);
    return m_layer && (!m_layer->TestCapability(OLCCreateField) || createFields(fields));
}

bool ContourFile::createFields(const QVector<ContourField> &fields)
{
    for (const ContourField &field : fields) {
        OGRFieldDefn definition(field.name.toUtf8().constData(), field.type);
        definition.SetWidth(field.width);
        if (m_layer->CreateField(&definition) != OGRERR_NONE)
            return false;
        m_fields += m_layer->GetLayerDefn()->GetFieldCount() - 1; // some formats begin with fields of their own
    }
    return true;
}

void ContourFile::close()
{
    if (m_dataset && m_dataset->TestCapability(ODsCTransactions))
        m_dataset->CommitTransaction();
    m_dataset.reset();
}

void ContourFile::remove()
{
    m_dataset.reset();
    const QDir folder = QFileInfo(m_path).dir();
    const QStringList files = filesInFolder();
    for (const QString &file : files) {
        if (!m_before.contains(file))
            QFileInfo(folder.filePath(file)).isDir() ? QDir(folder.filePath(file)).removeRecursively()
                                                     : QFile::remove(folder.filePath(file));
    }
}

ContourField ContourFile::numberField()
{
    constexpr int digits = 8;
    return {QStringLiteral("ID"), OFTInteger, digits};
}

/// The files beside the product that share its base name.
QStringList ContourFile::filesInFolder() const
{
    const QFileInfo product(m_path);
    QStringList files = product.dir().entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot);
    const QString base = product.completeBaseName();
    files.erase(
        std::remove_if(files.begin(), files.end(), [&](const QString &file) { return !file.startsWith(base); }),
        files.end());
    return files;
}
