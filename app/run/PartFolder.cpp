#include "app/run/PartFolder.h"

#include "app/run/outputname.h"
#include "dataset/pathencoding.h"
#include "messages/label.h"

#include <QCryptographicHash>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QRegularExpression>

#include <algorithm>
#include <filesystem>

namespace
{

const QString newFiles = QStringLiteral("/new/");
const QString oldFiles = QStringLiteral("/old/");
const QString stepFiles = QStringLiteral("/steps/");
const QString nameList = QStringLiteral("/names");
const QString partSuffix = QStringLiteral(".part-");

std::filesystem::path nativePath(const QString &path)
{
    return {encodePath(path).constData()};
}

/// Unlike QFile::rename(), replaces an existing file.
bool moveOver(const QString &from, const QString &to)
{
    std::error_code error;
    std::filesystem::rename(nativePath(from), nativePath(to), error);
    return !error;
}

/// Gives a file a second name, so that it does not miss under the first one for a moment. Moves it where the
/// file system has no second names.
bool keepAs(const QString &file, const QString &name)
{
    std::error_code error;
    std::filesystem::create_hard_link(nativePath(file), nativePath(name), error);
    return !error || moveOver(file, name);
}

bool removeFile(const QString &path)
{
    std::error_code error;
    std::filesystem::remove(nativePath(path), error); // a missing file is no error
    return !error;
}

QStringList namesIn(const QString &folder)
{
    return QDir(folder).entryList(QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot);
}

bool writeNames(const QString &part, const QStringList &names)
{
    QFile file(part + nameList);
    const QByteArray text = encodePath(names.join(QLatin1Char('\n')));
    return file.open(QIODevice::WriteOnly) && file.write(text) == text.size() && file.flush();
}

QStringList readNames(const QString &part)
{
    QFile file(part + nameList);
    return file.open(QIODevice::ReadOnly)
        ? decodePath(file.readAll().constData()).split(QLatin1Char('\n'), Qt::SkipEmptyParts)
        : QStringList();
}

/// Puts back the old files of a product that was not moved to its end, in the output's folder `place`. Returns
/// whether that folder is as it was.
bool putBack(const QString &part, const QString &place)
{
    bool whole = true;
    for (const QString &name : readNames(part)) {
        const bool isMoved = !QFile::exists(part + newFiles + name);
        if (isMoved && !QFile::exists(part + oldFiles + name))
            whole = removeFile(place + name) && whole;
    }
    for (const QString &name : namesIn(part + oldFiles))
        whole = moveOver(part + oldFiles + name, place + name) && whole;
    return whole;
}

/// Whether a folder holds nothing but what this class puts there.
bool holdsOnlyOurs(const QString &part)
{
    const QStringList names = namesIn(part);
    return std::all_of(names.begin(), names.end(), [](const QString &name) {
        const QString path = QLatin1Char('/') + name;
        const QString folder = path + QLatin1Char('/');
        return path == nameList || folder == newFiles || folder == oldFiles || folder == stepFiles;
    });
}

QString folderOf(const QString &path)
{
    return QFileInfo(path).absolutePath() + QLatin1Char('/');
}

/// Removes the old files that have no successor, and moves the files `names` of a part folder, the last of
/// which is the product.
bool moveAll(const QString &part, const QString &place, const QStringList &names, const QStringList &replaced)
{
    if (!QDir().mkpath(part + oldFiles) || !writeNames(part, names))
        return false;
    for (const QString &name : replaced) {
        if (!keepAs(place + name, part + oldFiles + name))
            return false;
    }
    const auto move = [&](const QString &name) { return moveOver(part + newFiles + name, place + name); };
    const auto isSuperseded = [&](const QString &name) {
        return names.contains(name) || removeFile(place + name);
    };
    // First the removal: where the case of letters does not count, a later one would remove a new file.
    return std::all_of(replaced.begin(), replaced.end(), isSuperseded)
        && std::all_of(names.begin(), names.end(), move);
}

} // namespace

PartFolder::PartFolder(const QString &output)
    : m_output(output)
    , m_folder(hiddenBeside(output, partSuffix + QStringLiteral("XXXXXX")))
{
    if (isValid())
        QDir().mkpath(m_folder.path() + newFiles);
}

QString PartFolder::product() const
{
    return m_folder.path() + newFiles + QFileInfo(m_output).fileName();
}

QString PartFolder::stepsFolder() const
{
    const QString folder = m_folder.path() + stepFiles;
    return QDir().mkpath(folder) ? QFileInfo(folder).absolutePath() : QString();
}

QString PartFolder::withFinalPaths(QString text) const
{
    text.replace(m_folder.path() + stepFiles, QString());
    return text.replace(m_folder.path() + newFiles, folderOf(m_output));
}

QString PartFolder::place(const QStringList &replaced)
{
    const QString place = folderOf(m_output);
    const QString main = QFileInfo(m_output).fileName();
    QStringList names = namesIn(m_folder.path() + newFiles);
    names.removeAll(main);
    names += main;
    QStringList old;
    for (const QString &file : replaced)
        old += QFileInfo(file).fileName();
    for (const QString &name : names) {
        if (isSpecialFile(place + name))
            return specialFileProblem(place + name);
        if (QFile::exists(place + name))
            old += name;
    }
    old.removeDuplicates();
    if (moveAll(m_folder.path(), place, names, old))
        return {};
    if (putBack(m_folder.path(), place))
        return labelText({"MESS_PLACE_IMPOSS",
                          "Le résultat n'a pas pu être déplacé vers « %1 », où rien n'a changé."})
            .arg(m_output);
    m_folder.setAutoRemove(false);
    return labelText({"MESS_PLACE_PERDUE",
                      "Le résultat n'a pas pu être déplacé vers « %1 », et une partie de ce qui s'y trouvait "
                      "est restée dans le dossier « %2 »."})
        .arg(m_output, m_folder.path() + oldFiles);
}

QString hiddenBeside(const QString &output, const QString &suffix)
{
    constexpr int longestName = 200; // bytes; file systems allow 255 with the suffix
    QString name = QFileInfo(output).fileName();
    const QByteArray bytes = encodePath(name);
    if (bytes.size() > longestName)
        name = QString::fromLatin1(QCryptographicHash::hash(bytes, QCryptographicHash::Sha1).toHex());
    return folderOf(output) + QLatin1Char('.') + name + suffix;
}

bool isInPartFolder(const QString &path)
{
    static const QRegularExpression partFolder(QStringLiteral("/\\.[^/]+\\.part-[A-Za-z0-9]{6}/new/[^/]+\\z"));
    return partFolder.match(QFileInfo(path).absoluteFilePath()).hasMatch();
}

QString partFolderProblem(const QString &output)
{
    return labelText({"MESS_PART_IMPOSS",
                      "Aucun dossier pour un résultat inachevé n'a pu être créé à côté de « %1 »."})
        .arg(output);
}

void sweepPartFolders(const QString &output, uint owner)
{
    static const QRegularExpression sixLetters(QStringLiteral("^[A-Za-z0-9]{6}\\z"));
    const QString place = folderOf(output);
    const QString prefix = QFileInfo(hiddenBeside(output, partSuffix)).fileName();
    for (const QString &name : QDir(place).entryList(QDir::Dirs | QDir::Hidden | QDir::NoSymLinks)) {
        const QString part = place + name;
        if (!name.startsWith(prefix) || !sixLetters.match(name.mid(prefix.size())).hasMatch()
            || QFileInfo(part).ownerId() != owner || !holdsOnlyOurs(part))
            continue;
        const bool isUnfinished = QFile::exists(part + newFiles + QFileInfo(output).fileName());
        if (!isUnfinished || putBack(part, place))
            QDir(part).removeRecursively();
    }
}
