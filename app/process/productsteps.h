#pragma once

#include "app/process/commandline.h"
#include "app/process/demtreatment.h"
#include "runner/processing.h"

#include <QString>
#include <QStringList>
#include <QVector>

/// One command of those that make a product.
struct ProductStep
{
    QString command;           ///< command line for the runner
    QString title;             ///< title of the progress window while the step runs
    QStringList intermediates; ///< files that the step creates besides the product
    double share = 1.0;        ///< its part of the progress, relative to the other steps'
};

/// The way to a product: commands that run one after another.
struct ProductSteps
{
    QVector<ProductStep> steps;
    int width = 0;   ///< columns of a raster product
    int height = 0;  ///< rows of a raster product
    QString problem; ///< why there is no way, in a sentence; empty otherwise
};

/// How exactly, and for what, a product is made.
struct StepOptions
{
    /// Most by which the size of a DEM's cells may differ from the one that the tool is given, as a share
    /// (rowStrips()).
    double tolerance = 0.005;
    /// The product has the CRS and the grid of the DEM. False for a picture of it.
    bool isGeoreferenced = true;
};

/// The steps that make the product of a request. A DEM that needs no treatment is read by the tool itself, in
/// one step. Otherwise views of the DEM and intermediate products are written to `folder`, an existing folder
/// for this run alone.
///
/// `facts`: those of the request's DEM and band.
ProductSteps productSteps(const ProcessingRequest &request, const DemFacts &facts, const ToolPaths &tools,
                          const QString &folder, const StepOptions &options = {});

// The steps as the script runner takes them. `product`: the files of the product, which any step may have
// created; a stop or a failure deletes them and the intermediate files.

QuvoProcessingCollection commandsOf(const ProductSteps &steps);
QuvoOutputFilesListCollection outputsOf(const ProductSteps &steps, const QuvoOutputFilesList &product);
QVector<double> sharesOf(const ProductSteps &steps);

/// Whether the product takes more than the tool's own command.
bool needsSteps(const ProcessingRequest &request, const DemFacts &facts);

/// The treatment of the request's DEM; none where the user has switched it off.
DemTreatment treatmentOf(const ProcessingRequest &request, const DemFacts &facts);
