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
    return labelText({"MESS_OUTIL_ABSENT",
                      "L'outil %1 est introuvable ou ne peut pas être exécuté ; il doit se trouver à côté du "
                      "programme."})
        .arg(toolFileName(tool));
}
