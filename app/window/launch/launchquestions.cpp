#include "app/window/launch/launchquestions.h"

#include "app/run/replacedoutput.h"
#include "messages/Prompt.h"
#include "messages/QuvoLanguageManager.h"

void warnAboutOutput(const QString &name, const QString &problem, QWidget *parent)
{
    Prompt::warning(
        parent,
        QStringLiteral("%1\n%2\n\n%3")
            .arg(labelText({"MESS_INV_OUTPUT_FILE", "Le fichier de sortie n'est pas valide."}), name, problem));
}

void warnAboutProblem(const RunPlan &plan, QWidget *parent)
{
    if (plan.problemKind == ProblemKind::Output || plan.problemKind == ProblemKind::Replacement)
        warnAboutOutput(plan.request.output, plan.problem, parent);
    else
        Prompt::warning(parent, plan.problem);
}

bool mayOverwrite(const RunPlan &plan, QWidget *parent)
{
    const QString existing = existingOutput(plan);
    if (existing.isEmpty())
        return true;
    QString question = dico_label("MESS_FICHIER_EXISTANT", existing.toLocal8Bit().constData());
    for (const QString &side : existingSideOutputs(plan)) {
        if (side != existing)
            question += QStringLiteral("\n\n")
                + labelText({"MESS_COTE_REMPLACE", "« %1 » serait aussi remplacé."}).arg(side);
    }
    const int layers = layersReplaced(plan.outputs.first());
    if (layers > 1)
        question += QStringLiteral("\n\n")
            + labelText({"MESS_COUCHES_PERDUES", "Ses %1 couches seraient perdues."}).arg(layers);
    return Prompt::question(parent, question);
}

bool mayIgnoreWarnings(const RunPlan &plan, QWidget *parent)
{
    return plan.warnings.isEmpty()
        || Prompt::question(parent,
                            plan.warnings.join(QLatin1Char('\n')) + QStringLiteral("\n\n")
                                + labelText({"MESS_CONTINUER", "Voulez-vous continuer ?"}));
}
