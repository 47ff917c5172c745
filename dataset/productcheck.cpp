#include "dataset/productcheck.h"

#include "dataset/gdalmessages.h"
#include "dataset/pathencoding.h"
#include "messages/label.h"

#include <QDir>
#include <QFileInfo>
#include <QStorageInfo>
#include <QStringList>

#include <cpl_minixml.h>
#include <gdal_priv.h>
#include <ogrsf_frmts.h>

#include <memory>

namespace
{

QString withReason(const Label &label, const QString &reason)
{
    return reason.isEmpty() ? labelText(label) : labelText(label) + QLatin1Char('\n') + reason;
}

QString rasterProblem(GDALDataset &dataset, const ExpectedProduct &expected, const GdalMessages &messages)
{
    const int width = dataset.GetRasterXSize();
    const int height = dataset.GetRasterYSize();
    if (dataset.GetRasterCount() == 0 || width != expected.width || height != expected.height)
        return labelText({"MESS_PROD_TAILLE",
                          "Le résultat n'a pas la taille du MNT : %1 × %2 au lieu de %3 × %4 cellules."})
            .arg(QString::number(width), QString::number(height), QString::number(expected.width),
                 QString::number(expected.height));
    if (expected.bands > 0 && dataset.GetRasterCount() != expected.bands)
        return labelText({"MESS_PROD_BANDES", "Le résultat a %1 bandes au lieu de %2."})
            .arg(QString::number(dataset.GetRasterCount()), QString::number(expected.bands));
    for (int band = 1; band <= dataset.GetRasterCount(); ++band) {
        double cell = 0.0;
        if (dataset.GetRasterBand(band)->RasterIO(GF_Read, width - 1, height - 1, 1, 1, &cell, 1, 1,
                                                  GDT_Float64, 0, 0, nullptr)
            != CE_None)
            return withReason({"MESS_PROD_TRONQUE", "Le résultat est incomplet : sa fin ne peut pas être lue."},
                              messages.lastError());
    }
    return {};
}

/// The problem of the file beside a product in which GDAL keeps what the format itself has no place for, such
/// as the position of a PNG. GDAL reports no error when the disk has no room for it.
QString sideFileProblem(const QString &product)
{
    const QString file = product + QStringLiteral(".aux.xml");
    if (!QFileInfo::exists(file))
        return {};
    const GdalMessages messages;
    const std::unique_ptr<CPLXMLNode, decltype(&CPLDestroyXMLNode)> content(
        CPLParseXMLFile(encodePath(file).constData()), CPLDestroyXMLNode);
    if (content)
        return {};
    return labelText({"MESS_AUX_ILLISIBLE", "Le résultat est incomplet : « %1 » ne peut pas être lu."})
        .arg(file);
}

/// The layer of that name, or the only layer: formats that hold one layer name it after the file.
OGRLayer *productLayer(GDALDataset &dataset, const QString &name)
{
    OGRLayer *layer = dataset.GetLayerByName(name.toUtf8().constData());
    return layer || dataset.GetLayerCount() != 1 ? layer : dataset.GetLayer(0);
}

/// The problem of a layer that was opened and counted. `size`: bytes of its main file.
QString layerProblem(OGRLayer &layer, long long count, qint64 size, const GdalMessages &messages)
{
    constexpr qint64 quicklyRead = 64LL * 1024 * 1024;
    constexpr Label truncated{"MESS_PROD_TRONQUE", "Le résultat est incomplet : sa fin ne peut pas être lue."};
    if (layer.GetGeomType() == wkbNone)
        return labelText({"MESS_PROD_SANS_GEOM",
                          "Le format du résultat ne conserve pas les géométries ; choisissez-en un autre."});
    long long read = 0;
    layer.ResetReading();
    while (size <= quicklyRead && messages.lastError().isEmpty()
           && std::unique_ptr<OGRFeature>(layer.GetNextFeature()))
        ++read;
    if (!messages.lastError().isEmpty())
        return withReason(truncated, messages.lastError());
    return size <= quicklyRead && read != count ? labelText(truncated) : QString();
}

/// Some drivers report no error on a full disk.
QString diskProblem(const QString &path)
{
    constexpr qint64 least = 16LL * 1024; // bytes: what is left of a disk that a product has just filled
    const QStorageInfo disk(QFileInfo(path).absolutePath());
    const bool isKnown =
        disk.isValid() && disk.isReady() && disk.bytesTotal() > 0; // some network disks tell none
    if (!isKnown || disk.bytesAvailable() >= least)
        return {};
    return labelText(
               {"MESS_PROD_DISQUE", "Le disque de « %1 » est plein ; le résultat est sans doute incomplet."})
        .arg(QDir::toNativeSeparators(path));
}

} // namespace

QString firstErrorLine(const QString &standardError)
{
    // GDAL reports this of a product that lacks nothing but values, such as a tile without data.
    const QLatin1String noValues("Failed to compute statistics, no valid pixels found");
    for (const QString &line : standardError.split(QLatin1Char('\n'))) {
        if (line.startsWith(QLatin1String("ERROR")) && !line.contains(noValues))
            return line.trimmed();
    }
    return {};
}

ProductCheck checkProduct(const ExpectedProduct &expected, const QString &standardError)
{
    ProductCheck check;
    const QString diskText = diskProblem(expected.path);
    check.isDiskFull = !diskText.isEmpty();
    const QString errorLine = firstErrorLine(standardError);
    if (!errorLine.isEmpty()) {
        check.problem = withReason({"MESS_PROD_ERR_OUTIL", "L'outil a signalé une erreur."}, errorLine);
        return check;
    }

    check.problem = diskText;
    if (check.isDiskFull)
        return check;

    const GdalMessages messages;
    const unsigned flags = expected.kind == ProductKind::Raster ? GDAL_OF_RASTER : GDAL_OF_VECTOR;
    const std::unique_ptr<GDALDataset> dataset(
        GDALDataset::Open(encodePath(expected.path).constData(), flags | GDAL_OF_VERBOSE_ERROR));
    if (!dataset) {
        check.problem =
            withReason({"MESS_PROD_ILLISIBLE", "Le résultat ne peut pas être ouvert."}, messages.lastError());
    } else if (expected.kind == ProductKind::Raster) {
        check.problem = rasterProblem(*dataset, expected, messages);
        if (check.problem.isEmpty())
            check.problem = sideFileProblem(expected.path);
    } else if (OGRLayer *layer = productLayer(*dataset, expected.layer)) {
        check.featureCount = layer->GetFeatureCount();
        check.problem = layerProblem(*layer, check.featureCount, QFileInfo(expected.path).size(), messages);
    } else {
        check.problem = labelText({"MESS_PROD_SANS_COUCHE", "Le résultat ne contient pas la couche « %1 »."})
                            .arg(expected.layer);
    }
    return check;
}
