#pragma once

#include <QString>

#include <memory>

class QLockFile;
class QTemporaryDir;

/// The process's own folder inside the system's temporary directory, for files that the tools read. It is made
/// when it is asked for first, and removed with the object. Making one sweeps the folders of processes that
/// died.
class WorkFolder
{
public:
    WorkFolder();
    ~WorkFolder();
    WorkFolder(const WorkFolder &) = delete;
    WorkFolder &operator=(const WorkFolder &) = delete;

    /// Absolute; empty when none can be made.
    QString path();

    /// A new folder in it; empty when none can be made.
    QString newFolder();

    /// How many folders were made so far, and the removal of those from the n-th (counted from 0) up to the
    /// last one before `end`. For files that nobody reads any more.
    int folderCount() const { return m_folders; }
    void removeFolders(int begin, int end);

private:
    std::unique_ptr<QTemporaryDir> m_folder;
    std::unique_ptr<QLockFile> m_lock; ///< tells others that the process lives
    int m_folders = 0;                 ///< that were made in it
};
