#include "runner/quoting.h"

QString quotedArgument(const QString &text)
{
    QString escaped = text;
    escaped.replace(QLatin1Char('"'), QLatin1String("\"\"\""));
    return QLatin1Char('"') + escaped + QLatin1Char('"');
}
