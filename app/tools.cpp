#include "app/tools.h"

#include <QDir>
#include <QFileInfo>

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

ToolPaths findTools(const QString &programFolder)
{
    const auto existing = [&](Tool tool) {
        const QString path = toolPath(programFolder, tool);
        return QFileInfo::exists(path) ? path : QString();
    };
    return {existing(Tool::Dem), existing(Tool::Contour), existing(Tool::Intervisibility),
            existing(Tool::Translate)};
}

QString toolPath(const QString &programFolder, Tool tool)
{
    return QDir(programFolder).absoluteFilePath(toolFileName(tool));
}

QString toolProblem(const QString &programFolder, Tool tool)
{
    const QFileInfo file(toolPath(programFolder, tool));
    if (file.isFile() && file.isExecutable())
        return {};
    return labelText({"MESS_OUTIL_ABSENT",
                      "L'outil %1 est introuvable ou ne peut pas être exécuté ; il doit se trouver à côté du "
                      "programme."})
        .arg(file.absoluteFilePath());
}
