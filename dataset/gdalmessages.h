#pragma once

#include <QString>

/// Sends the errors, warnings and debug messages of GDAL in this process to the log category
/// "quvo.dataset.gdal", and registers every raster and vector driver. Called once, before the first use of
/// GDAL.
void setUpGdal();

/// Collects GDAL's errors: while an object lives, the last error is kept here instead of being logged. Warnings
/// are logged as usual.
///
/// For calls whose failure the program reports in a sentence of its own, followed by GDAL's words.
class GdalMessages
{
public:
    GdalMessages();
    ~GdalMessages();
    GdalMessages(const GdalMessages &) = delete;
    GdalMessages &operator=(const GdalMessages &) = delete;

    /// GDAL's last error since construction, without its number; empty when there was none.
    QString lastError() const { return m_lastError; }

    /// Called by the error handler.
    void keep(const QString &text) { m_lastError = text; }

private:
    QString m_lastError;
};
