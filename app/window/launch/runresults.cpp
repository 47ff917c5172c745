#include "app/window/launch/runresults.h"

#include "messages/label.h"

#include <QDir>
#include <QRegularExpression>

namespace
{

ProcessResult resultOf(const ProductRun &run, const Label &title, const QString &picture, const Label &text)
{
    ProcessResult result;
    result.title = labelText(title);
    result.picture = QStringLiteral(":/QuvoGdalUtilities/images/") + picture;
    result.text = labelText(text);
    result.command = run.commands().join(QLatin1Char('\n'));
    result.exitCode = run.outcome().exitCode;
    result.toolText = run.outcome().toolText;
    return result;
}

constexpr Label ended{"MESS_FIN_TRAIT", "Fin du traitement"};

} // namespace

ProductSource productSource(const Recipe &recipe)
{
    return {recipe.options, recipe.input, recipe.band, labelText(processRow(processOf(recipe.options)).title)};
}

ProcessResult finishedResult(const ProductRun &run)
{
    ProcessResult result = resultOf(
        run, {"MESS_OP_TERMINEE", "Opération terminée"}, QStringLiteral("ok2.png"),
        {"MESS_TRAIT_FINI_RES", "Le traitement s'est déroulé avec succès et le résultat est disponible."});
    result.file = run.plan().request.output;
    QStringList sides;
    for (const QuvoOutputFile &side : run.plan().sideOutputs)
        sides += QDir::toNativeSeparators(side.path);
    if (!sides.isEmpty())
        result.text += QStringLiteral("\n\n") + labelText({"MESS_COTE_ECRITS", "Fichiers écrits aussi :"})
            + QLatin1Char('\n') + sides.join(QLatin1Char('\n'));
    for (const QString &warning : run.outcome().warnings)
        result.text += QStringLiteral("\n\n") + warning;
    return result;
}

ProcessResult abortedResult(const ProductRun &run)
{
    return resultOf(run, ended, QStringLiteral("cancel2.png"),
                    {"MESS_TRAIT_ANNULE", "Le traitement a été annulé."});
}

ProcessResult failedResult(const ProductRun &run)
{
    ProcessResult result =
        resultOf(run, ended, QStringLiteral("cancel2.png"),
                 {"MESS_ERR_CREAT_IMG", "Une erreur est survenue lors de la création de l'image de sortie."});
    const QString problem = run.outcome().problem;
    const QString reason = problem.isEmpty() ? toolReason(run.outcome().toolText) : problem;
    if (!reason.isEmpty())
        result.text += QStringLiteral("\n\n") + reason;
    return result;
}

QString toolReason(const QString &toolText)
{
    constexpr int longest = 300; // characters that a window shows well
    static const QRegularExpression errorLine(QStringLiteral("^ERROR \\d+: *(.+)$"),
                                              QRegularExpression::MultilineOption);
    const QRegularExpressionMatch error = errorLine.match(toolText);
    const QString line =
        (error.hasMatch() ? error.captured(1) : toolText.trimmed().section(QLatin1Char('\n'), 0, 0)).trimmed();
    return line.size() > longest ? line.left(longest) + QStringLiteral("…") : line;
}

QString resultDetails(const ProcessResult &result)
{
    QString text = labelText({"MESS_DET_COMMANDE", "Commande :"}) + QLatin1Char('\n') + result.command;
    if (result.exitCode)
        text += QStringLiteral("\n\n") + labelText({"MESS_DET_CODE", "Code de retour :"}) + QLatin1Char(' ')
            + QString::number(*result.exitCode);
    const QString toolText = result.toolText.trimmed();
    if (!toolText.isEmpty())
        text += QStringLiteral("\n\n") + labelText({"MESS_DET_TEXTE", "Texte de l'outil :"}) + QLatin1Char('\n')
            + toolText;
    return text;
}
