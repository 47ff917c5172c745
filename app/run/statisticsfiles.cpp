#include "app/run/statisticsfiles.h"

#include <QFile>
#include <QFileInfo>
#include <QSaveFile>

namespace
{

QByteArray contentOf(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

bool isVirtualRaster(const QString &path)
{
    constexpr qint64 largest = 64LL * 1024 * 1024;
    QFile file(path);
    return file.size() <= largest && file.open(QIODevice::ReadOnly) && file.read(1024).contains("<VRTDataset");
}

} // namespace

StatisticsFiles::StatisticsFiles(const QStringList &demFiles)
{
    for (const QString &file : demFiles) {
        const QString statistics = file + QStringLiteral(".aux.xml");
        m_files += {statistics, QFileInfo::exists(statistics), contentOf(statistics)};
        if (isVirtualRaster(file))
            m_files += {file, true, contentOf(file)};
    }
}

void StatisticsFiles::restore() const
{
    for (const Snapshot &before : m_files) {
        if (!QFileInfo::exists(before.path))
            continue;
        if (!before.existed) {
            QFile::remove(before.path);
        } else if (!before.content.isEmpty() && contentOf(before.path) != before.content) {
            QSaveFile file(before.path);
            if (file.open(QIODevice::WriteOnly) && file.write(before.content) == before.content.size())
                file.commit();
        }
    }
}

QStringList filesWithStatistics(const QString &colorTableFile, const QStringList &demFiles)
{
    return !colorTableFile.isEmpty() && contentOf(colorTableFile).contains('%') ? demFiles : QStringList();
}
