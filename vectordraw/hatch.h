#pragma once

#include "vectordraw/stylestring.h"
#include "vectordraw/surface.h"

#include <memory>
#include <utility>
#include <vector>

struct _cairo_pattern; // NOLINT(bugprone-reserved-identifier): the library names it so

namespace vectordraw
{

/// Makes the patterns that fill areas with the lines of hatches, and keeps the last of them: a file uses few
/// brushes and fills many areas with each.
class HatchPatterns
{
public:
    /// The surface outlives the patterns, which are made for it.
    HatchPatterns(Surface &surface, const Resolution &resolution)
        : m_surface(surface)
        , m_resolution(resolution)
    { }

    /// The pattern of a brush with a hatch, in the surface's pixels. It belongs to this object and is valid
    /// until the next call.
    _cairo_pattern *pattern(const Brush &brush);

private:
    struct Release
    {
        void operator()(_cairo_pattern *pattern) const;
    };

    _cairo_pattern *make(const Brush &brush);

    Surface &m_surface;
    Resolution m_resolution;
    std::vector<std::pair<Brush, std::unique_ptr<_cairo_pattern, Release>>> m_patterns;
};

} // namespace vectordraw
