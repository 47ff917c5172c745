#pragma once

#include <QString>

#include <ogrsf_frmts.h>

#include <memory>

/// The file that the contour tool wrote, while it is read.
struct ToolFile
{
    std::unique_ptr<GDALDataset> dataset;
    OGRLayer *layer = nullptr; ///< belongs to the dataset; null: the file cannot be read
    int level = -1; ///< number of the field for the elevation of a line, or the lowest one of an area; -1: none
    int highest = -1; ///< number of the field for the highest elevation of an area; -1: none
};

/// Opens the file. The fields are found by their places besides the tool's own "ID"; `levelField`: name of the
/// field of a line that comes before them, where the file has it. GDAL's messages say why it cannot be read.
ToolFile openToolFile(const QString &path, const QString &layer, const QString &levelField);
