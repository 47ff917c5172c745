#include "app/run/copiedcommand.h"

#include "app/recipe/tablefile.h"
#include "runner/commandsplit.h"

namespace
{

QStringList words(const QString &command)
{
    const ProcessCommand split = splitProcessCommand(command);
    return QStringList{split.program} + split.arguments;
}

} // namespace

QString copiedCommand(const RunPlan &plan, const Recipe &recipe, const ToolPaths &tools, Shell shell)
{
    // By itself the tool would leave its statistics beside the DEM.
    const bool touchesInput = !plan.touchedInputFiles.isEmpty();
    if ((!plan.request.toolInput.readsTemporaryFile && !touchesInput) || tools.batch.isEmpty()) {
        QString text = shellCommand(words(plan.command), shell);
        if (processRow(*plan.request.process).tool == Tool::Contour && shell == Shell::Posix)
            text.prepend(QLatin1String("SHAPE_ENCODING= ")); // as in this program, attributes are not recoded
        if (!plan.overviewCommand.isEmpty())
            text += QStringLiteral(" && ") + shellCommand(words(plan.overviewCommand), shell);
        return text;
    }
    Recipe byValue = recipe;
    byValue.output = plan.request.output;
    holdTableByValue(byValue.options, plan.request.toolInput.colorTableFile);
    return shellCommandWithInput({tools.batch, QStringLiteral("-")}, writeRecipe(byValue), shell);
}
