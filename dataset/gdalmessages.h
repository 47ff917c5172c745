#pragma once

#include <QString>

/// Sends what GDAL reports in this process to the log category "quvo.dataset.gdal", errors and warnings alike,
/// and registers every raster and vector driver. Called once, before the first use of GDAL.
void setUpGdal();

/// Keeps GDAL's errors of one call: while an object lives, the last one is kept instead of logged. Warnings are
/// logged as ever.
///
/// For calls whose failure is told to the user in a sentence of ours, with GDAL's own words behind it.
class GdalMessages
{
public:
    GdalMessages();
    ~GdalMessages();
    GdalMessages(const GdalMessages &) = delete;
    GdalMessages &operator=(const GdalMessages &) = delete;

    /// GDAL's last error since construction, without its number; empty when there was none.
    QString lastError() const { return m_lastError; }

    void keep(const QString &text) { m_lastError = text; }

private:
    QString m_lastError;
};
