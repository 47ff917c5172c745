#include "app/run/copiedcommand.h"

#include "app/recipe/tablefile.h"
#include "messages/label.h"
#include "runner/commandsplit.h"

#include <QJsonDocument>
#include <QRegularExpression>

namespace
{

QString posixWord(const QString &word)
{
    static const QRegularExpression plain(QStringLiteral("^[A-Za-z0-9_./:@%+=,-]+\\z"));
    if (plain.match(word).hasMatch())
        return word;
    QString quoted = word;
    quoted.replace(QLatin1Char('\''), QLatin1String("'\\''"));
    return QLatin1Char('\'') + quoted + QLatin1Char('\'');
}

/// Puts a caret before each character that has a meaning for cmd.
QString caretEscaped(const QString &text)
{
    static const QRegularExpression special(QStringLiteral("([()%!^\"<>&|])"));
    return QString(text).replace(special, QStringLiteral("^\\1"));
}

/// The word quoted for the C runtime, which splits the arguments of a program, and then for cmd.
QString windowsWord(const QString &word)
{
    static const QRegularExpression plain(QStringLiteral("^[A-Za-z0-9_./:\\\\@+=-]+\\z"));
    if (plain.match(word).hasMatch())
        return word;
    static const QRegularExpression beforeQuote(QStringLiteral("(\\\\*)\""));
    static const QRegularExpression atEnd(QStringLiteral("(\\\\+)$"));
    QString quoted = word;
    quoted.replace(beforeQuote, QStringLiteral("\\1\\1\\\""));
    quoted.replace(atEnd, QStringLiteral("\\1\\1"));
    return caretEscaped(QLatin1Char('"') + quoted + QLatin1Char('"'));
}

/// The command with JSON text on its standard input. No line of JSON is the lone word END.
QString shellCommandWithInput(const QStringList &words, const QByteArray &json, Shell shell)
{
    const QString command = shellCommand(words, shell);
    if (shell == Shell::Windows) {
        const QByteArray line = QJsonDocument::fromJson(json).toJson(QJsonDocument::Compact);
        return QStringLiteral("echo %1| %2").arg(caretEscaped(QString::fromUtf8(line)), command);
    }
    // An interactive shell may expand "!" from its history, even between these lines.
    QString lines = QString::fromUtf8(json);
    lines.replace(QLatin1Char('!'), QLatin1String("\\u0021"));
    return command + QStringLiteral(" <<'END'\n") + lines + QStringLiteral("END\n");
}

/// Program and arguments of a command line for the runner.
QStringList words(const QString &command)
{
    const ProcessCommand split = splitProcessCommand(command);
    return QStringList{split.program} + split.arguments;
}

} // namespace

QString shellCommand(const QStringList &words, Shell shell)
{
    QStringList quoted;
    for (const QString &word : words)
        quoted += shell == Shell::Posix ? posixWord(word) : windowsWord(word);
    return quoted.join(QLatin1Char(' '));
}

QString copiedCommand(const RunPlan &plan, const Recipe &recipe, const ToolPaths &tools, Shell shell)
{
    // Outside this program nothing removes the statistics that the tool leaves beside the DEM, and nothing
    // makes the views of a DEM that needs treatment.
    const bool touchesInput = !plan.touchedInputFiles.isEmpty();
    const bool isPlain = !plan.request.toolInput.readsTemporaryFile && plan.request.tiles.isEmpty()
        && !touchesInput && !needsSteps(plan.request, plan.dem);
    if (isPlain || tools.batch.isEmpty()) {
        QString text = shellCommand(words(plan.command), shell);
        if (processRow(*plan.request.process).tool == Tool::Contour && shell == Shell::Posix)
            text.prepend(QLatin1String("SHAPE_ENCODING= ")); // attributes are not recoded, as in this program
        if (!plan.overviewCommand.isEmpty())
            text += QStringLiteral(" && ") + shellCommand(words(plan.overviewCommand), shell);
        return text;
    }
    Recipe byValue = recipe;
    byValue.output = plan.request.output;
    holdTableByValue(byValue.options, plan.request.toolInput.colorTableFile);
    return shellCommandWithInput({tools.batch, QStringLiteral("-")}, writeRecipe(byValue), shell);
}

QString commandCopiedText()
{
    return labelText({"MESS_REGL_COPIEE", "La commande est dans le presse-papiers."});
}
