#include "app/process/productname.h"

#include "app/process/processes.h"
#include "dataset/pathencoding.h"
#include "dataset/references.h"

#include <QDir>
#include <QFileInfo>
#include <QRegularExpression>
#include <QSet>

namespace
{

/// The file beside which an input's product stands: the input, or the archive that holds it. Empty for an input
/// on a server or in a database.
QString localPlace(const QString &input)
{
    if (!isVirtualPath(input))
        return input;
    const QString archive = localFile(input);
    return QFileInfo(archive).isFile() ? archive : QString();
}

} // namespace

QString productName(const QString &input, const QString &suffix, const QString &extension)
{
    const QString place = localPlace(input);
    const QFileInfo file(place);
    const QDir folder =
        !place.isEmpty() && QFileInfo(file.absolutePath()).isDir() ? file.absoluteDir() : QDir::current();
    return folder.filePath(
        QStringLiteral("%1_%2.%3").arg(QFileInfo(input).completeBaseName(), suffix, extension));
}

QString proposeOutputName(const QString &input, const QString &suffix, const QString &extension)
{
    const QString first = productName(input, suffix, extension);
    const QString stem = first.chopped(extension.size() + 1);
    QString name = first;
    for (int counter = 2; QFileInfo::exists(name); ++counter)
        name = QStringLiteral("%1_%2.%3").arg(stem, QString::number(counter), extension);
    return name;
}

bool isProposedName(const QString &name, const QString &input, const QString &suffix)
{
    const QFileInfo file(name);
    const QString place = localPlace(input);
    const QString folder = place.isEmpty() ? QDir::currentPath() : QFileInfo(place).absolutePath();
    const QString stem = QStringLiteral("%1_%2").arg(QFileInfo(input).completeBaseName(), suffix);
    static const QRegularExpression number(QStringLiteral("^(_[0-9]+)?$"));
    return file.absolutePath() == folder && file.completeBaseName().startsWith(stem)
        && number.match(file.completeBaseName().mid(stem.size())).hasMatch();
}

QStringList withoutProducts(const QStringList &files)
{
    QStringList suffixes;
    for (const NamedProcess &process : namedProcesses())
        suffixes += QString::fromLatin1(processRow(process.process).suffix);
    const QRegularExpression productEnd(
        QStringLiteral("(?:_mosaic)?_(?:%1)(?:_[0-9]+)?$").arg(suffixes.join(QLatin1Char('|'))));
    QSet<QString> bases;
    for (const QString &file : files)
        bases += QFileInfo(file).completeBaseName();
    QStringList dems;
    for (const QString &file : files) {
        const QString base = QFileInfo(file).completeBaseName();
        const QString demBase = QString(base).remove(productEnd);
        if (demBase == base || !bases.contains(demBase))
            dems += file;
    }
    return dems;
}

QString adaptExtension(const QString &name, const QStringList &extensions, const QStringList &knownExtensions)
{
    const QString extension = QFileInfo(name).suffix();
    if (extension.isEmpty() || extensions.isEmpty() || extensions.contains(extension, Qt::CaseInsensitive)
        || !knownExtensions.contains(extension, Qt::CaseInsensitive))
        return name;
    return name.chopped(extension.size()) + extensions.first();
}

QString besideInput(const QString &name, const QString &input)
{
    if (name.isEmpty() || QFileInfo(name).isAbsolute() || input.isEmpty() || isVirtualPath(input))
        return name;
    return QDir::cleanPath(QFileInfo(input).absoluteDir().absoluteFilePath(name));
}
