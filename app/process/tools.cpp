#include "app/process/tools.h"

#include <QDir>
#include <QFileInfo>

namespace
{

QString batchFileName()
{
#ifdef Q_OS_WIN
    return QStringLiteral("QuvoDemBatch.exe");
#else
    return QStringLiteral("QuvoDemBatch");
#endif
}

} // namespace

QString toolFileName(Tool tool)
{
    switch (tool) {
    case Tool::Dem:
        return QStringLiteral("gdal_dem.exe");
    case Tool::Contour:
        return QStringLiteral("gdal_contour.exe");
    case Tool::Intervisibility:
        return QStringLiteral("gdal_intervisibility.exe");
    case Tool::Translate:
        break;
    }
    return QStringLiteral("gdal_translate.exe");
}

const QString &ToolPaths::path(Tool tool) const
{
    switch (tool) {
    case Tool::Dem:
        return dem;
    case Tool::Contour:
        return contour;
    case Tool::Intervisibility:
        return intervisibility;
    case Tool::Translate:
        break;
    }
    return translate;
}

ToolPaths findTools(const QString &programFolder)
{
    const auto existing = [&](Tool tool) {
        const QFileInfo file(QDir(programFolder), toolFileName(tool));
        return file.exists() ? file.absoluteFilePath() : QString();
    };
    return {existing(Tool::Dem), existing(Tool::Contour), existing(Tool::Intervisibility),
            existing(Tool::Translate), QDir(programFolder).absoluteFilePath(batchFileName())};
}

QString toolProblem(const ToolPaths &tools, Tool tool)
{
    const QFileInfo file(tools.path(tool));
    if (!tools.path(tool).isEmpty() && file.isFile() && file.isExecutable())
        return {};
    const QFileInfo link(QFileInfo(tools.batch).dir(), toolFileName(tool));
    if (link.isSymLink() && !link.exists())
        return labelText({"MESS_OUTIL_LIEN",
                          "L'outil %1 est un lien vers « %2 », qui n'existe pas. Installez les outils de GDAL "
                          "(sous Debian, le paquet gdal-bin) ou dirigez le lien « %3 » vers les vôtres."})
            .arg(toolFileName(tool), link.symLinkTarget(), link.absoluteFilePath());
    return labelText({"MESS_OUTIL_ABSENT",
                      "L'outil %1 est introuvable ou ne peut pas être exécuté ; il doit se trouver à côté du "
                      "programme."})
        .arg(toolFileName(tool));
}

QString startProblems(const ToolPaths &tools)
{
    QStringList problems;
    for (const Tool tool : {Tool::Dem, Tool::Contour, Tool::Translate}) {
        if (tools.path(tool).isEmpty())
            problems += toolProblem(tools, tool);
    }
    return problems.join(QLatin1Char('\n'));
}
