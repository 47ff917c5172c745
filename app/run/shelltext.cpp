#include "app/run/shelltext.h"

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

/// cmd's own characters, which a caret takes for what they are.
QString caretEscaped(const QString &text)
{
    static const QRegularExpression special(QStringLiteral("([()%!^\"<>&|])"));
    return QString(text).replace(special, QStringLiteral("^\\1"));
}

/// Quoted for the C runtime, which splits a program's arguments, and then for cmd.
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

} // namespace

QString shellCommand(const QStringList &words, Shell shell)
{
    QStringList quoted;
    for (const QString &word : words)
        quoted += shell == Shell::Posix ? posixWord(word) : windowsWord(word);
    return quoted.join(QLatin1Char(' '));
}

QString shellCommandWithInput(const QStringList &words, const QByteArray &json, Shell shell)
{
    const QString command = shellCommand(words, shell);
    if (shell == Shell::Windows) {
        const QByteArray line = QJsonDocument::fromJson(json).toJson(QJsonDocument::Compact);
        return QStringLiteral("echo %1| %2").arg(caretEscaped(QString::fromUtf8(line)), command);
    }
    // An interactive shell may take "!" for a reference to its history, even here.
    QString lines = QString::fromUtf8(json);
    lines.replace(QLatin1Char('!'), QLatin1String("\\u0021"));
    return command + QStringLiteral(" <<'END'\n") + lines + QStringLiteral("END\n");
}
