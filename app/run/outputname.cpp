#include "app/run/outputname.h"

#include "dataset/pathencoding.h"

#include <QDir>
#include <QFileInfo>
#include <QLocale>

#include <algorithm>
#include <filesystem>

namespace
{

/// Whether both paths lead to one file, by hard or symbolic links, too. A file that does not exist equals no
/// other.
bool isSameFile(const QString &one, const QString &other)
{
    std::error_code error;
    return std::filesystem::equivalent(encodePath(one).constData(), encodePath(other).constData(), error);
}

bool hasControlCharacter(const QString &name)
{
    return std::any_of(name.begin(), name.end(),
                       [](QChar character) { return character.category() == QChar::Other_Control; });
}

/// The text behind the last dot of the file name; empty where there is none. A leading dot begins no extension.
QString extensionOf(const QString &path)
{
    const QString name = QFileInfo(path).fileName();
    const auto dot = name.lastIndexOf(QLatin1Char('.'));
    return dot > 0 ? name.mid(dot + 1) : QString();
}

/// The problem of the name itself.
QString nameProblem(const QString &name, const QStringList &extensions)
{
    if (name.isEmpty())
        return labelText({"MESS_SORTIE_VIDE", "Aucun fichier de sortie n'est indiqué."});
    if (hasControlCharacter(name))
        return labelText(
            {"MESS_SORTIE_CTRL", "Le nom du fichier de sortie contient un caractère de contrôle."});
    if (name.endsWith(QLatin1Char('/')) && !QFileInfo::exists(name))
        return labelText({"MESS_SORTIE_SANS_DOS", "Le dossier « %1 » n'existe pas."}).arg(name);
    if (QFileInfo(name).isDir())
        return labelText({"MESS_SORTIE_DOSSIER", "« %1 » est un dossier ; indiquez un fichier."}).arg(name);

    const QString extension = extensionOf(name);
    if (!extension.isEmpty() && !extensions.isEmpty() && !extensions.contains(extension, Qt::CaseInsensitive))
        return labelText({"MESS_SORTIE_EXTENSION",
                          "L'extension « .%1 » ne convient pas à ce format ; extensions attendues : .%2."})
            .arg(extension, extensions.join(QLatin1String(", .")));
    return {};
}

/// The problem of an absolute path's characters.
QString pathProblem(const QString &path)
{
    // Qt puts this character in the place of bytes that it cannot read, so the path leads elsewhere.
    if (path.contains(QChar::ReplacementCharacter))
        return labelText({"MESS_SORTIE_UTF8", "Le nom du fichier de sortie n'est pas en UTF-8 : « %1 »."})
            .arg(path);
#ifndef Q_OS_WIN
    // OGR takes it for the end of a folder's name, and would write into that folder.
    if (QFileInfo(path).fileName().contains(QLatin1Char('\\')))
        return labelText({"MESS_SORTIE_BARRE_INV",
                          "Le nom du fichier de sortie contient une barre oblique inverse : « %1 »."})
            .arg(path);
#endif
    return {};
}

/// The problem of the folder and the file that the name leads to.
QString placeProblem(const QFileInfo &file, const QStringList &inputFiles)
{
    const QString characters = pathProblem(file.absoluteFilePath());
    if (!characters.isEmpty())
        return characters;
    if (file.isDir())
        return labelText({"MESS_SORTIE_DOSSIER", "« %1 » est un dossier ; indiquez un fichier."})
            .arg(file.absoluteFilePath());
    if (isSpecialFile(file.absoluteFilePath()))
        return specialFileProblem(file.absoluteFilePath());
    const QFileInfo folder(file.absolutePath());
    if (!folder.isDir())
        return labelText({"MESS_SORTIE_SANS_DOS", "Le dossier « %1 » n'existe pas."}).arg(folder.filePath());
    if (!folder.isWritable())
        return labelText({"MESS_SORTIE_DOS_PROT", "Le dossier « %1 » n'est pas accessible en écriture."})
            .arg(folder.filePath());

    if (isOneOf(file.absoluteFilePath(), inputFiles))
        return partOfInputProblem(file.absoluteFilePath());
    if (file.exists() && !file.isWritable())
        return labelText({"MESS_SORTIE_PROTEGEE", "Le fichier « %1 » est protégé en écriture."})
            .arg(file.absoluteFilePath());
    return {};
}

/// The file that a path leads to through symbolic links, which may lead to a file that does not exist yet. The
/// tool would write that file, whereas deleting the path would remove only the link.
QString linkTarget(QString path)
{
    constexpr int mostLinks = 40;
    for (int link = 0; link < mostLinks && QFileInfo(path).isSymLink(); ++link)
        path = QFileInfo(path).symLinkTarget();
    return path;
}

} // namespace

bool isOneOf(const QString &path, const QStringList &files)
{
    return std::any_of(files.begin(), files.end(), [&](const QString &file) { return isSameFile(path, file); });
}

bool isSpecialFile(const QString &path)
{
    const QFileInfo file(path);
    return file.exists() && !file.isFile();
}

QString specialFileProblem(const QString &path)
{
    return labelText(
               {"MESS_SORTIE_SPECIALE", "« %1 » n'est pas un fichier ordinaire et ne peut pas être remplacé."})
        .arg(path);
}

QString partOfInputProblem(const QString &path)
{
    return labelText({"MESS_SORTIE_ENTREE", "« %1 » fait partie du MNT d'entrée ; choisissez un autre nom."})
        .arg(path);
}

QStringList wholeNameFiles(const QString &raster)
{
    QStringList files;
    for (const char *suffix : {".aux.xml", ".ovr", ".msk", ".msk.ovr"})
        files += raster + QLatin1String(suffix);
    return files;
}

QString withExtension(const QString &name, const QStringList &extensions)
{
    if (name.isEmpty() || name.endsWith(QLatin1Char('/')) || extensions.isEmpty()
        || !extensionOf(name).isEmpty())
        return name;
    return name + (name.endsWith(QLatin1Char('.')) ? QString() : QStringLiteral(".")) + extensions.first();
}

OutputName checkOutputName(const QString &name, const QStringList &extensions, const QStringList &inputFiles)
{
    OutputName output;
    output.problem = nameProblem(name, extensions);
    if (!output.problem.isEmpty())
        return output;
    output.path = linkTarget(QFileInfo(withExtension(name, extensions)).absoluteFilePath());
    output.problem = placeProblem(QFileInfo(output.path), inputFiles);
    output.isInput = isOneOf(output.path, inputFiles);
    return output;
}

qint64 expectedProductSize(const ProcessRow &process, int width, int height)
{
    return static_cast<qint64>(width) * height * process.bands * process.bytesPerCell;
}

QStringList freeSpaceWarnings(const QString &path, qint64 bytes)
{
    std::error_code error;
    const auto space = std::filesystem::space(encodePath(QFileInfo(path).absolutePath()).constData(), error);
    const auto available = static_cast<qint64>(space.available);
    if (error || available < 0 || available >= bytes)
        return {};
    const QLocale locale;
    return {labelText(
                {"MESS_PEU_DE_PLACE", "Il ne reste que %1 sur ce disque ; le résultat en demande environ %2."})
                .arg(locale.formattedDataSize(available), locale.formattedDataSize(bytes))};
}
