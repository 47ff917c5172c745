#include "dataset/gdalmessages.h"

#include "messages/logging.h"

#include <cpl_error.h>
#include <gdal.h>
#include <ogr_api.h>

namespace
{

void CPL_STDCALL logMessage(CPLErr level, CPLErrorNum number, const char *text)
{
    const QString message = QString::fromLocal8Bit(text);
    if (level == CE_Debug)
        qCDebug(lcGdal, "%s", qUtf8Printable(message));
    else
        qCWarning(lcGdal, "%s %d: %s", level == CE_Warning ? "warning" : "error", number,
                  qUtf8Printable(message));
}

void CPL_STDCALL keepMessage(CPLErr level, CPLErrorNum number, const char *text)
{
    if (level >= CE_Failure)
        static_cast<GdalMessages *>(CPLGetErrorHandlerUserData())->keep(QString::fromLocal8Bit(text));
    else
        logMessage(level, number, text);
}

} // namespace

void setUpGdal()
{
    CPLSetErrorHandler(logMessage);
    GDALAllRegister();
    OGRRegisterAll();
}

GdalMessages::GdalMessages()
{
    CPLPushErrorHandlerEx(keepMessage, this);
}

GdalMessages::~GdalMessages()
{
    CPLPopErrorHandler();
}
