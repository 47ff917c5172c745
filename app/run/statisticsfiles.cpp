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
    for (const Noted &noted : m_files) {
        if (!QFileInfo::exists(noted.path))
            continue;
        if (!noted.existed) {
            QFile::remove(noted.path);
        } else if (!noted.content.isEmpty() && contentOf(noted.path) != noted.content) {
            QSaveFile file(noted.path);
            if (file.open(QIODevice::WriteOnly) && file.write(noted.content) == noted.content.size())
                file.commit();
        }
    }
}

QStringList filesWithStatistics(const QString &colorTableFile, const QStringList &demFiles)
{
    return !colorTableFile.isEmpty() && contentOf(colorTableFile).contains('%') ? demFiles : QStringList();
}
