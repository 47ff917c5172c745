#include "panels/fragments.h"

#include <iterator>

QString scaleFragment(int scaleIndex, const QString &scaleText)
{
    // 0.31 for feet on metres is the required ratio.
    static constexpr const char *rows[] = {"-s 1 ", "-s 0.31 ", "-s 111120 ", "-s 370400 "};
    static_assert(std::size(rows) == scaleRowCount);

    if (scaleIndex >= 0 && scaleIndex < scaleRowCount)
        return QString::fromLatin1(rows[scaleIndex]);
    if (scaleText.isEmpty())
        return {};
    return QStringLiteral("-s ") + scaleText + QStringLiteral("  ");
}

QString shadedFragment(const ShadedOptions &options)
{
    QString fragment = QStringLiteral("-z %1 ").arg(options.exaggeration);
    fragment += scaleFragment(options.scaleIndex, options.scaleText);
    fragment += QStringLiteral("-az %1 ").arg(270.0 - options.compass);
    fragment += QStringLiteral("-alt %1 ").arg(options.altitude);
    if (options.computeEdges)
        fragment += QStringLiteral(" -compute_edges");
    if (options.zevenbergenThorne)
        fragment += QStringLiteral(" -alg ZevenbergenThorne");
    return fragment;
}

bool isComplete(const ShadedOptions &options)
{
    return options.scaleIndex >= 0 || !options.scaleText.isEmpty();
}
