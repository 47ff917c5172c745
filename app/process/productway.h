#pragma once

#include "app/process/productsteps.h"
#include "dataset/views/viewtexts.h"

#include <QByteArray>
#include <QString>
#include <QStringList>

/// The way to a product: its steps, and the files between them, while they are put together.
class ProductWay
{
public:
    /// `request` and `tools` outlive this object. `folder`: for the files between the steps.
    ProductWay(const ProcessingRequest &request, const ToolPaths &tools, const QString &folder)
        : m_request(request)
        , m_tools(tools)
        , m_folder(folder)
    { }

    ProductSteps steps;

    /// Path of a file for this run.
    QString file(const QString &name) const { return m_folder + QLatin1Char('/') + name; }

    /// Writes a small file; a failure becomes the problem of the steps.
    void write(const QString &path, const QByteArray &text);

    /// The first problem, in a sentence, becomes that of the steps.
    void fail(const QString &problem);

    // Each function below adds a step. `share`: its part of the progress.

    /// Runs the tool of the request's process on a DEM; `output` is the product or a file between the steps.
    void addTool(const ProcessingRequest &request, const ViewSource &dem, const QString &output,
                 const OutputOptions &options, double share);

    /// Fills the voids of a DEM. `mask`: path of the raster that marks the filled cells; empty: none.
    void addFilling(const ViewSource &dem, const QString &filled, double distance, const QString &mask);

    /// Smooths a DEM before its contours. `settings`: as ContourSteps has them.
    void addSmoothing(const ViewSource &dem, const QString &smoothed, const QStringList &settings);

    /// Makes the product of the file `lines` that the contour tool made of the DEM.
    void addFinishing(const ViewSource &dem, const QString &lines, const QStringList &settings);

    /// Corrects the directions in a raster of the same grid as the DEM.
    void addCorrection(const ViewSource &dem, const QString &raster);

    /// Gives a raster the georeference of the DEM.
    void addGeoreference(const ViewSource &dem, const QString &raster);

    /// Copies a raster, or a view of several, to another file. `arguments` of the translation tool end in a
    /// blank.
    void addCopy(const QString &arguments, const QString &from, const QString &to, const QString &title,
                 double share);

    /// Paints the values of a raster in the colours of a table into an RGB GeoTIFF of the same grid.
    void addColors(const QString &values, const QString &table, const QString &picture, const QString &title);

    /// Adds all steps of another way, and its problem.
    void append(const ProductWay &other);

private:
    void add(const QString &command, const QString &title, double share, const QStringList &intermediates);
    void addBatch(const QString &task, const QString &raster, const ViewSource &dem, const QString &more,
                  const QString &title, double share, const QStringList &intermediates);
    QString toolTitle() const;
    QStringList ifIntermediate(const QString &file) const;

    const ProcessingRequest &m_request;
    const ToolPaths &m_tools;
    QString m_folder;
};
