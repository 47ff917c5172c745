#include "dataset/workfolder.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QLockFile>
#include <QTemporaryDir>

namespace
{

const QString prefix = QStringLiteral("quvodemtoolbox-");

QString lockName(const QString &folder)
{
    return folder + QStringLiteral("/.lock");
}

/// Removes the folders of dead processes: those of this user whose lock is free. A folder without a lock is
/// being created by another process, or belongs to another program.
void sweepDeadFolders(uint user)
{
    const QDir temporary = QDir::temp();
    for (const QString &name :
         temporary.entryList({prefix + QLatin1Char('*')}, QDir::Dirs | QDir::NoSymLinks)) {
        const QString folder = temporary.filePath(name);
        if (!QFile::exists(lockName(folder)) || QFileInfo(folder).ownerId() != user)
            continue;
        QLockFile lock(lockName(folder));
        lock.setStaleLockTime(0);
        if (!lock.tryLock(0)) // its process lives
            continue;
        lock.unlock();
        QDir(folder).removeRecursively();
    }
}

} // namespace

WorkFolder::WorkFolder() = default;

WorkFolder::~WorkFolder()
{
    if (m_lock)
        m_lock->unlock();
}

QString WorkFolder::path()
{
    if (m_folder)
        return m_folder->path();
    auto folder = std::make_unique<QTemporaryDir>(QDir::temp().filePath(prefix + QStringLiteral("XXXXXX")));
    if (!folder->isValid())
        return {};
    m_folder = std::move(folder);
    m_lock = std::make_unique<QLockFile>(lockName(m_folder->path()));
    m_lock->setStaleLockTime(0);
    m_lock->tryLock(0);
    sweepDeadFolders(QFileInfo(m_folder->path()).ownerId());
    return m_folder->path();
}

QString WorkFolder::newFolder()
{
    const QString folder = QStringLiteral("%1/%2").arg(path(), QString::number(++m_folders));
    return !path().isEmpty() && QDir().mkpath(folder) ? folder : QString();
}

void WorkFolder::removeFolders(int begin, int end)
{
    for (int folder = begin; m_folder && folder < end; ++folder)
        QDir(m_folder->filePath(QString::number(folder + 1))).removeRecursively();
}
