#include "app/environment.h"

#include <QByteArray>
#include <QtGlobal>

#ifdef Q_OS_UNIX
#include <clocale>
#include <langinfo.h>
#endif

void useUtf8Paths()
{
#ifdef Q_OS_UNIX
    std::setlocale(LC_CTYPE, "");
    if (qstrcmp(nl_langinfo(CODESET), "ANSI_X3.4-1968") != 0)
        return;
    qputenv(qEnvironmentVariableIsEmpty("LC_ALL") ? "LC_CTYPE" : "LC_ALL", "C.UTF-8");
    std::setlocale(LC_CTYPE, "");
#endif
}

void useOffscreenPlatform()
{
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
}
