#include "app/launchquestions.h"

#include "app/replacedoutput.h"
#include "messages/Prompt.h"
#include "messages/QuvoLanguageManager.h"

bool mayOverwrite(const RunPlan &plan, QWidget *parent)
{
    const QString existing = existingOutput(plan);
    if (existing.isEmpty())
        return true;
    QString question = dico_label("MESS_FICHIER_EXISTANT", existing.toLocal8Bit().constData());
    const int layers = layersReplaced(plan.outputs.first());
    if (layers > 1)
        question += QStringLiteral("\n\n")
            + labelText({"MESS_COUCHES_PERDUES", "Ses %1 couches seraient perdues."}).arg(layers);
    return Prompt::question(parent, question);
}

bool mayGoOn(const RunPlan &plan, QWidget *parent)
{
    return plan.warnings.isEmpty()
        || Prompt::question(parent,
                            plan.warnings.join(QLatin1Char('\n')) + QStringLiteral("\n\n")
                                + labelText({"MESS_CONTINUER", "Voulez-vous continuer ?"}));
}
