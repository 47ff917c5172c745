#pragma once

#include <QString>

#include <memory>

class QLockFile;
class QTemporaryDir;

/// The folder of this process inside the system's temporary directory, for files that the tools read. It is
/// created on first use and removed with the object. Its creation also removes the folders of processes that
/// died.
class WorkFolder
{
public:
    WorkFolder();
    ~WorkFolder();
    WorkFolder(const WorkFolder &) = delete;
    WorkFolder &operator=(const WorkFolder &) = delete;

    /// Absolute path of the folder; empty when it cannot be created.
    QString path();

    /// Creates another folder inside it and returns its path; empty when it cannot be created.
    QString newFolder();

    /// Number of calls of newFolder() so far.
    int folderCount() const { return m_folders; }
    /// Removes the folders that the calls of newFolder() with index `begin` to `end` - 1 (from 0) created. For
    /// files that no tool reads any more.
    void removeFolders(int begin, int end);

private:
    std::unique_ptr<QTemporaryDir> m_folder;
    std::unique_ptr<QLockFile>
        m_lock;        ///< held while the process lives: others remove a folder with a free lock
    int m_folders = 0; ///< number of calls of newFolder()
};
