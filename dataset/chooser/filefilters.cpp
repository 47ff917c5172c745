#include "dataset/chooser/filefilters.h"

#include "messages/label.h"

#include <QRegularExpression>

#include <gdal_priv.h>

#include <algorithm>
#include <functional>

namespace
{

/// A row of a filter. Qt takes what stands between the last parentheses of a row for its patterns, and ";;" for
/// the end of a row, so that neither may stand in a title.
QString filterRow(QString title, const QStringList &patterns)
{
    title.replace(QLatin1Char('('), QLatin1Char('[')).replace(QLatin1Char(')'), QLatin1Char(']'));
    title.replace(QStringLiteral(";;"), QStringLiteral(";"));
    return QStringLiteral("%1 (%2)").arg(title, patterns.join(QLatin1Char(' ')));
}

QStringList patternsOf(const FileFormat &format)
{
    QStringList patterns;
    for (const QString &extension : format.extensions)
        patterns += QStringLiteral("*.") + extension;
    return patterns;
}

QString item(GDALDriver &driver, const char *name)
{
    return QString::fromUtf8(driver.GetMetadataItem(name));
}

/// The extensions of a driver. Some drivers write a dot before them or letters of both cases, or name one that
/// no file dialog can match.
QStringList extensionsOf(GDALDriver &driver)
{
    static const QRegularExpression plain(QStringLiteral("^[a-z0-9_.+-]+$"));
    QStringList extensions;
    const QString all = item(driver, GDAL_DMD_EXTENSIONS) + QLatin1Char(' ') + item(driver, GDAL_DMD_EXTENSION);
    for (QString extension : all.toLower().split(QLatin1Char(' '), Qt::SkipEmptyParts)) {
        while (extension.startsWith(QLatin1Char('.')))
            extension.remove(0, 1);
        if (plain.match(extension).hasMatch() && !extensions.contains(extension))
            extensions += extension;
    }
    return extensions;
}

QVector<FileFormat> formatsOf(const std::function<bool(GDALDriver &)> &wanted)
{
    QVector<FileFormat> formats;
    GDALDriverManager *manager = GetGDALDriverManager();
    for (int at = 0; at < manager->GetDriverCount(); ++at) {
        GDALDriver &driver = *manager->GetDriver(at);
        const FileFormat format{item(driver, GDAL_DMD_LONGNAME), extensionsOf(driver)};
        if (item(driver, GDAL_DCAP_OPEN) == QLatin1String("YES") && wanted(driver) && !format.title.isEmpty()
            && !format.extensions.isEmpty())
            formats += format;
    }
    std::sort(formats.begin(), formats.end(), [](const FileFormat &left, const FileFormat &right) {
        return left.title.compare(right.title, Qt::CaseInsensitive) < 0;
    });
    return formats;
}

bool reads(GDALDriver &driver, const char *kind)
{
    return item(driver, kind) == QLatin1String("YES");
}

} // namespace

QString fileFilter(const QVector<FileFormat> &formats)
{
    QStringList all;
    QStringList rows;
    for (const FileFormat &format : formats) {
        if (!format.extensions.isEmpty())
            rows += filterRow(format.title, patternsOf(format));
        all += patternsOf(format);
    }
    all.sort();
    all.removeDuplicates();
    if (!all.isEmpty())
        rows.prepend(filterRow(labelText({"MESS_FILTRE_CONNUS", "Tous les formats reconnus"}), all));
    rows += filterRow(labelText({"MESS_FICH_TOUS", "Tous les fichiers"}), {QStringLiteral("*")});
    return rows.join(QStringLiteral(";;"));
}

QVector<FileFormat> rasterFileFormats()
{
    return formatsOf([](GDALDriver &driver) { return reads(driver, GDAL_DCAP_RASTER); });
}

QVector<FileFormat> vectorFileFormats()
{
    return formatsOf([](GDALDriver &driver) { return reads(driver, GDAL_DCAP_VECTOR); });
}

QVector<FileFormat> allFileFormats()
{
    return formatsOf(
        [](GDALDriver &driver) { return reads(driver, GDAL_DCAP_RASTER) || reads(driver, GDAL_DCAP_VECTOR); });
}
