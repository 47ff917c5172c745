#include "app/dialogrules.h"

#include "dataset/pathencoding.h"

#include <QDir>
#include <QFileInfo>

bool canLaunch(bool hasInput, const QString &output, bool panelIsComplete)
{
    return hasInput && !output.isEmpty() && panelIsComplete;
}

QStringList withRecent(const QStringList &recent, const QString &path)
{
    constexpr int mostRecent = 10;
    QStringList list = recent;
    list.removeAll(path);
    list.prepend(path);
    return list.mid(0, mostRecent);
}

QString startDirectory(const StartDirectory &choices)
{
    if (!choices.lastChosenFolder.isEmpty())
        return choices.lastChosenFolder;
    if (choices.keepCurrent)
        return choices.currentDirectory;
    return choices.inputText.isEmpty() ? choices.secondRecent : choices.inputText;
}

QString proposeOutputName(const QString &input, const QString &suffix, const QString &extension)
{
    const QFileInfo file(input);
    const QDir folder =
        QFileInfo(file.absolutePath()).isDir() && !isVirtualPath(input) ? file.absoluteDir() : QDir::current();
    const QString base = file.completeBaseName();
    QString name = folder.filePath(QStringLiteral("%1_%2.%3").arg(base, suffix, extension));
    for (int counter = 2; QFileInfo::exists(name); ++counter)
        name = folder.filePath(
            QStringLiteral("%1_%2_%3.%4").arg(base, suffix, QString::number(counter), extension));
    return name;
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

bool isPreviewable(const ProcessOptions &options)
{
    const auto *colors = std::get_if<ColorReliefOptions>(&options);
    return optionsProblem(options).isEmpty() && !(colors && colors->spread && !colors->minimum);
}

std::optional<double> compassOf(const ProcessOptions &options)
{
    const auto *shaded = std::get_if<ShadedOptions>(&options);
    return shaded ? std::optional(shaded->compass) : std::nullopt;
}
