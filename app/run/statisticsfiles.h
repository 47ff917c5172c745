#pragma once

#include <QByteArray>
#include <QString>
#include <QStringList>
#include <QVector>

/// Restores the files in which a tool stores the statistics that it computes: "dem.tif.aux.xml" beside each
/// file of the DEM, and virtual rasters themselves.
class StatisticsFiles
{
public:
    StatisticsFiles() = default;

    /// Reads the present contents. demFiles: the files that the DEM is made of (RasterInfo::files).
    explicit StatisticsFiles(const QStringList &demFiles);

    /// Removes the files that did not exist, and restores the contents of the others.
    void restore() const;

private:
    struct Snapshot
    {
        QString path;
        bool existed;
        QByteArray content;
    };
    QVector<Snapshot> m_files;
};

/// The files of the DEM that a colour relief with this table leaves statistics in or beside. Empty for a table
/// without percentages: the tool computes statistics only for those.
QStringList filesWithStatistics(const QString &colorTableFile, const QStringList &demFiles);
