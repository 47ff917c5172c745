#include "app/run/replacedoutput.h"

#include "app/run/outputname.h"
#include "dataset/gdalmessages.h"
#include "dataset/pathencoding.h"
#include "messages/QuvoLanguageManager.h"

#include <QFile>
#include <QFileInfo>

#include <gdal_priv.h>

#include <memory>

namespace
{

using VectorDataSet = std::unique_ptr<GDALDataset>;

/// The product, opened by the driver of its format; null when that driver cannot open it.
VectorDataSet openedByItsDriver(const QuvoOutputFile &product)
{
    if (product.kind != QuvoOutputFileKind::Vector || !QFileInfo(product.path).isFile())
        return nullptr;
    const GdalMessages messages; // a broken product is expected here, so GDAL's messages are dropped
    const QByteArray driver = product.driver.toUtf8();
    const char *const drivers[] = {driver.constData(), nullptr};
    return VectorDataSet(
        GDALDataset::Open(encodePath(product.path).constData(), GDAL_OF_VECTOR | GDAL_OF_READONLY, drivers));
}

/// Whether all files of the data set have the product's name and folder.
bool keepsToItsName(GDALDataset &dataset, const QFileInfo &product)
{
    char **list = dataset.GetFileList();
    bool own = true;
    for (char **name = list; name && *name; ++name) {
        const QFileInfo file(decodePath(*name));
        own = own && file.absolutePath() == product.absolutePath()
            && (file.completeBaseName() == product.completeBaseName()
                || file.fileName().startsWith(product.fileName()));
    }
    CSLDestroy(list);
    return own;
}

} // namespace

QString removeReplaced(const QuvoOutputFile &product)
{
    const QFileInfo file(product.path);
    VectorDataSet dataset = openedByItsDriver(product);
    if (dataset && keepsToItsName(*dataset, file)) {
        GDALDriver *driver = dataset->GetDriver();
        dataset.reset();
        const GdalMessages messages; // dropped: a failure shows in the file that still exists
        driver->Delete(encodePath(product.path).constData());
    } else {
        dataset.reset();
        QFile::remove(product.path);
        for (const QString &other : wholeNameFiles(product.path))
            QFile::remove(other);
    }
    return QFile::exists(product.path) ? dico_label("MESS_ERR_ECR_FICH", product.path.toLocal8Bit().constData())
                                       : QString();
}

int layersReplaced(const QuvoOutputFile &product)
{
    const VectorDataSet dataset = openedByItsDriver(product);
    return dataset ? dataset->GetLayerCount() : 0;
}
