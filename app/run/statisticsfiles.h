#pragma once

#include <QByteArray>
#include <QString>
#include <QStringList>
#include <QVector>

/// The files in which a tool that computes statistics leaves them: "dem.tif.aux.xml" beside each file of the
/// DEM, and virtual rasters themselves. This puts them back as they were.
class StatisticsFiles
{
public:
    StatisticsFiles() = default;

    /// Notes what stands there now. demFiles: the files that the DEM is made of (RasterInfo::files).
    explicit StatisticsFiles(const QStringList &demFiles);

    /// Removes the files that were not there, and writes what the others held.
    void restore() const;

private:
    struct Noted
    {
        QString path;
        bool existed;
        QByteArray content;
    };
    QVector<Noted> m_files;
};

/// The files of the DEM that a colour relief with this table leaves statistics in; none for a table without
/// percentages, with which the tool computes none.
QStringList filesWithStatistics(const QString &colorTableFile, const QStringList &demFiles);
