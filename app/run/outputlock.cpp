#include "app/run/outputlock.h"

#include "app/run/PartFolder.h"
#include "app/run/outputname.h"
#include "messages/label.h"

#include <QDateTime>
#include <QDir>
#include <QFileInfo>
#include <QThread>

namespace
{

/// Resolves the links in the output's path. The output may not exist yet; its folder does.
QString canonicalOutput(const QString &output)
{
    const QFileInfo file(output);
    if (file.exists())
        return file.canonicalFilePath();
    return QDir(QFileInfo(file.absolutePath()).canonicalFilePath()).filePath(file.fileName());
}

/// Removes a lock file that names no process, because its process died while it created the file. Such a lock
/// would never become stale. Waits for a process that may be about to write its number. Returns whether the
/// file is gone.
bool removeNamelessLock(QLockFile &lock, const QString &file)
{
    constexpr qint64 longestCreation = 1000; // ms
    const auto namesProcess = [&lock] {
        qint64 process = 0;
        QString host;
        QString program;
        return lock.getLockInfo(&process, &host, &program);
    };
    if (!QFileInfo::exists(file)) // its run has just ended
        return true;
    if (namesProcess())
        return false;
    const qint64 age = QFileInfo(file).lastModified().msecsTo(QDateTime::currentDateTime());
    if (age < longestCreation)
        QThread::msleep(static_cast<unsigned long>(longestCreation - qMax<qint64>(age, 0)));
    return !namesProcess() && lock.removeStaleLockFile(); // false for a file that a living process holds
}

} // namespace

OutputLock::OutputLock(const QStringList &outputs)
{
    for (const QString &output : outputs) {
        if (m_problem.isEmpty())
            lock(output);
    }
}

void OutputLock::lock(const QString &output)
{
    const QString canonical = canonicalOutput(output);
    const QString file = hiddenBeside(canonical, QStringLiteral(".lock"));
    if (isSpecialFile(file)) { // reading it might never end
        m_problem = specialFileProblem(file);
        return;
    }
    m_locks.push_back(std::make_unique<QLockFile>(file));
    QLockFile &held = *m_locks.back();
    held.setStaleLockTime(0); // a lock never becomes stale by its age, only by the end of its process
    if (held.tryLock() || (removeNamelessLock(held, file) && held.tryLock())) {
        sweepPartFolders(canonical, QFileInfo(file).ownerId());
        return;
    }
    m_isHeldByOther = held.error() == QLockFile::LockFailedError;
    if (m_isHeldByOther)
        m_problem =
            labelText({"MESS_SORTIE_OCCUPEE", "Un autre traitement écrit déjà dans « %1 » (verrou : %2)."})
                .arg(output, file);
    else
        m_problem =
            labelText({"MESS_VERROU_IMPOSS", "Le fichier de verrou « %1 » ne peut pas être créé."}).arg(file);
}
