#pragma once

#include "app/process/commandline.h"
#include "dataset/extremes.h"
#include "dataset/views/demfacts.h"

#include <QLocale>
#include <QString>
#include <QVector>

#include <optional>

/// What is known of a DEM.
struct DemFindings
{
    DemFacts facts;
    Extremes extremes;           ///< lowest and highest elevation of the band
    std::optional<double> voids; ///< share of the cells without data, 0 to 1, estimated; empty: not known yet
};

/// A sentence about a DEM.
struct DemRemark
{
    QString text;
    bool isUrgent = false; ///< the product is probably wrong
};

/// Size and CRS of a DEM: "1201 × 1201 cells · WGS 84".
QString demHeadline(const DemFacts &facts, const QLocale &locale);

/// What a user should know of the DEM for the process of the request: what it means for the product, and what
/// is done about it. The urgent remarks are the first.
QVector<DemRemark> demRemarks(const DemFindings &dem, const ProcessingRequest &request, const QLocale &locale);
