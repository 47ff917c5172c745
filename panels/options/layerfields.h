#pragma once

#include "panels/options/vectorobservers.h"

#include <QVector>

class OGRFeature;
class OGRFeatureDefn;

/// The fields of a layer that describe observers, found once for all features of the layer.
class LayerFields
{
public:
    explicit LayerFields(const OGRFeatureDefn &layer);

    /// A site with all that the fields of the feature say; its position and z are not set. Values that no
    /// observer can have are left out and counted in `found`. The first site adds the layer's numeric
    /// attributes to those of `found`.
    VectorSite read(const OGRFeature &feature, VectorObservers &found);

private:
    QVector<int> m_numbers; ///< the fields of numeric attributes
    QVector<int>
        m_attributes;      ///< their places in VectorObservers::numericAttributes; empty before the first site
    QVector<int> m_limits; ///< by the order of limitFields(); -1 for a field that the layer has not
    QVector<int> m_distances; ///< RADIUS2 and Max_Dist, as far as the layer has them
    int m_addedHeight = -1;   ///< OFFSETA
    int m_name = -1;
};
