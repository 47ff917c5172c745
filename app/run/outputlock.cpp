#include "app/run/outputlock.h"

#include "app/run/PartFolder.h"
#include "messages/label.h"

#include <QDir>
#include <QFileInfo>

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

} // namespace

OutputLock::OutputLock(const QString &output)
{
    const QString canonical = canonicalOutput(output);
    const QString file = hiddenBeside(canonical, QStringLiteral(".lock"));
    m_lock = std::make_unique<QLockFile>(file);
    m_lock->setStaleLockTime(0); // a lock never becomes stale by its age, only by the end of its process
    if (m_lock->tryLock()) {
        sweepPartFolders(canonical, QFileInfo(file).ownerId());
        return;
    }
    if (m_lock->error() == QLockFile::LockFailedError)
        m_problem =
            labelText({"MESS_SORTIE_OCCUPEE", "Un autre traitement écrit déjà dans « %1 » (verrou : %2)."})
                .arg(output, file);
    else
        m_problem =
            labelText({"MESS_VERROU_IMPOSS", "Le fichier de verrou « %1 » ne peut pas être créé."}).arg(file);
}
