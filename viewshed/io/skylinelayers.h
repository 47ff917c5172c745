#pragma once

#include "viewshed/io/sidefile.h"
#include "viewshed/io/skylinefile.h"

class OGRLayer;

namespace viewshed
{

/// A GeoPackage with the layers "skyline" and "seen".
class SkylineLayers : public SkylineFile
{
public:
    /// The arguments of createSkylineFile(). Throws Problem.
    SkylineLayers(const SkylineOptions &options, GDALDataset &raster, const Georeference &georeference);
    ~SkylineLayers() override;

    bool wantsSeen() const override { return true; }
    void write(const ObserverHorizon &horizon) override;
    void keep() override;

private:
    void writeLine(const ObserverHorizon &horizon);
    void writeOutline(const ObserverHorizon &horizon);

    SideFile m_file;
    double m_step;
    const Georeference &m_georeference;
    std::unique_ptr<GDALDataset> m_dataset;
    OGRLayer *m_lines = nullptr;
    OGRLayer *m_outlines = nullptr;
};

} // namespace viewshed
