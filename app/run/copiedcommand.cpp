#include "app/run/copiedcommand.h"

#include "colortable/colortablefile.h"
#include "runner/commandsplit.h"

namespace
{

QStringList words(const QString &command)
{
    const ProcessCommand split = splitProcessCommand(command);
    return QStringList{split.program} + split.arguments;
}

} // namespace

QString copiedCommand(const RunPlan &plan, const Recipe &recipe, const ToolPaths &tools,
                      const QString &workFolder, Shell shell)
{
    const bool ownTable = plan.request.colorTableFile.startsWith(workFolder + QLatin1Char('/'));
    const bool ownPoints = plan.request.process == Process::Intervisibility;
    // By itself the tool would leave its statistics beside the DEM.
    const bool touchesInput = !plan.touchedInputFiles.isEmpty();
    if ((!ownTable && !ownPoints && !touchesInput) || tools.batch.isEmpty()) {
        QString text = shellCommand(words(plan.command), shell);
        if (processRow(*plan.request.process).tool == Tool::Contour && shell == Shell::Posix)
            text.prepend(QLatin1String("SHAPE_ENCODING= ")); // as here: attributes are not recoded
        if (!plan.overviewCommand.isEmpty())
            text += QStringLiteral(" && ") + shellCommand(words(plan.overviewCommand), shell);
        return text;
    }
    Recipe byValue = recipe;
    byValue.output = plan.request.output;
    if (auto *colors = std::get_if<ColorReliefOptions>(&byValue.options)) {
        // The table as the tool gets it here: spread again, it might meet other extreme values.
        colors->colors = readColorTable(plan.request.colorTableFile).entries;
        colors->spread = false;
        colors->minimum.reset();
        colors->maximum.reset();
    }
    return shellCommandWithInput({tools.batch, QStringLiteral("-")}, writeRecipe(byValue), shell);
}
