#include "panels/options/layerfields.h"

#include <ogrsf_frmts.h>

#include <algorithm>
#include <limits>

namespace
{

bool isNumber(const OGRFieldDefn &field)
{
    return field.GetType() == OFTReal || field.GetType() == OFTInteger || field.GetType() == OFTInteger64;
}

/// Names of fields with the name of a site, the best first.
constexpr const char *nameFields[]{"name", "nom", "label", "libelle", "title", "titre", "id"};

std::optional<double> numberOf(const OGRFeature &feature, int field)
{
    return field >= 0 && feature.IsFieldSetAndNotNull(field) ? std::optional(feature.GetFieldAsDouble(field))
                                                             : std::nullopt;
}

int numericField(const OGRFeatureDefn &layer, const char *name)
{
    const int field = layer.GetFieldIndex(name); // upper and lower case are the same to it
    return field >= 0 && isNumber(*layer.GetFieldDefn(field)) ? field : -1;
}

} // namespace

LayerFields::LayerFields(const OGRFeatureDefn &layer)
{
    for (const char *name : nameFields) {
        const int field = m_name < 0 ? layer.GetFieldIndex(name) : -1;
        if (field >= 0 && layer.GetFieldDefn(field)->GetType() == OFTString)
            m_name = field;
    }
    m_addedHeight = numericField(layer, "OFFSETA");
    for (const char *name : {"RADIUS2", "Max_Dist"}) {
        if (numericField(layer, name) >= 0)
            m_distances += numericField(layer, name);
    }
    for (const LimitField &limit : limitFields())
        m_limits += numericField(layer, limit.toolField);
    for (int field = 0; field < layer.GetFieldCount(); ++field) {
        const bool isTools = field == m_addedHeight || m_distances.contains(field) || m_limits.contains(field);
        if (isNumber(*layer.GetFieldDefn(field)) && !isTools)
            m_numbers += field;
    }
}

VectorSite LayerFields::read(const OGRFeature &feature, VectorObservers &found)
{
    VectorSite site;
    if (m_attributes.size() < m_numbers.size()) {
        for (const int field : m_numbers) {
            const QString name = QString::fromUtf8(feature.GetFieldDefnRef(field)->GetNameRef());
            if (!found.numericAttributes.contains(name))
                found.numericAttributes += name;
            m_attributes += static_cast<int>(found.numericAttributes.indexOf(name));
        }
    }
    for (int at = 0; at < m_numbers.size(); ++at) {
        if (const auto number = numberOf(feature, m_numbers.at(at))) {
            while (site.values.size() <= m_attributes.at(at))
                site.values += std::numeric_limits<double>::quiet_NaN();
            site.values[m_attributes.at(at)] = *number;
        }
    }
    if (m_name >= 0 && feature.IsFieldSetAndNotNull(m_name))
        site.name = QString::fromUtf8(feature.GetFieldAsString(m_name)).simplified();
    const auto usable = [&](int field, double lowest, double highest) {
        const auto number = numberOf(feature, field);
        const bool good = number && *number >= lowest && *number <= highest;
        found.unusableValues += number && !good;
        return good ? number : std::nullopt;
    };
    constexpr double circle = 360.0;
    site.addedHeight = usable(m_addedHeight, -highestAltitude, highestAltitude).value_or(0.0);
    for (const int field : m_distances) {
        // Zero and negative distances are no limit.
        const auto distance = usable(field, -longestDistance, longestDistance);
        const bool isSmaller = distance && *distance > 0.0
            && (site.maxDistance.value_or(0.0) <= 0.0 || *distance < *site.maxDistance);
        if (isSmaller || (distance && !site.maxDistance))
            site.maxDistance = std::max(*distance, 0.0);
    }
    for (int at = 0; at < limitCount; ++at) {
        const LimitField &limit = limitFields().at(at);
        const bool isAzimuth = limit.highest == circle; // a negative one counts from north, too
        const auto value = usable(m_limits.at(at), isAzimuth ? -circle : limit.lowest, limit.highest);
        if (value)
            site.limits.*limit.value = isAzimuth && *value < 0.0 ? *value + circle : *value;
    }
    if (!limitsProblem(site.limits).isEmpty()) {
        site.limits.angleFrom.reset();
        site.limits.angleTo.reset();
        found.unusableValues += 2;
    }
    return site;
}
