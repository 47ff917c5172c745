#pragma once

#include <QByteArray>
#include <QString>

/// The file of statistics beside a DEM ("dem.tif.aux.xml"). A tool that computes some leaves them there; this
/// puts things back as they were.
class SideFile
{
public:
    SideFile() = default;

    /// Notes what stands beside the DEM now.
    explicit SideFile(const QString &dem);

    /// Removes the file if there was none, or writes what it held.
    void restore() const;

private:
    QString m_path; ///< empty: nothing was noted
    bool m_existed = false;
    QByteArray m_content;
};
