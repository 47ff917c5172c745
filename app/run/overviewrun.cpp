#include "app/run/overviewrun.h"

#include "app/run/PartFolder.h"
#include "app/run/outputlock.h"
#include "dataset/pathencoding.h"
#include "dataset/rasterinfo.h"
#include "messages/label.h"

#include <QFile>
#include <QFileInfo>

#include <filesystem>

namespace
{

/// Links in the part folder to the files of the raster in its own folder, except for its overviews. Through the
/// links GDAL reads the raster and writes overviews beside them.
class Links
{
public:
    Links(const QStringList &files, const QString &raster, const QString &folder)
    {
        const QString ownFolder = QFileInfo(raster).absolutePath();
        QStringList sources{QFileInfo(raster).absoluteFilePath()};
        for (const QString &file : files) {
            const bool isOverview = file.endsWith(QLatin1String(".ovr"), Qt::CaseInsensitive);
            if (QFileInfo(file).absolutePath() == ownFolder && !isOverview)
                sources += QFileInfo(file).absoluteFilePath();
        }
        sources.removeDuplicates();
        for (const QString &source : qAsConst(sources)) {
            const QString link = folder + QLatin1Char('/') + QFileInfo(source).fileName();
            std::error_code error;
            std::filesystem::create_symlink(encodePath(source).constData(), encodePath(link).constData(),
                                            error);
            m_isComplete = m_isComplete && !error;
            m_links += link;
        }
    }

    bool isComplete() const { return m_isComplete; }

    void remove() const
    {
        for (const QString &link : m_links)
            QFile::remove(link);
    }

private:
    QStringList m_links;
    bool m_isComplete = true;
};

} // namespace

OverviewResult runOverviews(const QString &raster, const OverviewProgress &progress)
{
    if (!QFileInfo(raster).isFile() || isInPartFolder(raster))
        return buildOverviews(raster, progress);
    const RasterInfo info = readRasterInfo(raster);
    if (!info.problem.isEmpty())
        return {OverviewResult::Failed, info.problem};
    const QString source = QFileInfo(raster).canonicalFilePath();
    const QString output = overviewFile(source);
    const OutputLock lock(output);
    if (!lock.problem().isEmpty())
        return {OverviewResult::Failed, lock.problem()};
    PartFolder part(output);
    if (!part.isValid())
        return {OverviewResult::Failed, partFolderProblem(output)};
    const QString folder = QFileInfo(part.product()).path();
    const Links links(info.files, source, folder);
    if (!links.isComplete()) // the file system knows no links
        return buildOverviews(raster, progress);
    OverviewResult result = buildOverviews(folder + QLatin1Char('/') + QFileInfo(source).fileName(), progress);
    links.remove();
    result.problem =
        result.state == OverviewResult::Built ? part.place({}) : part.withFinalPaths(result.problem);
    if (!result.problem.isEmpty())
        result.state = OverviewResult::Failed;
    return result;
}
