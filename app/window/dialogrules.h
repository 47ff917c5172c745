#pragma once

#include <QSize>
#include <QString>

// Rules of the main dialog that need no window.

/// Why the launch button is off, as a sentence that says what to do; empty where it is on. `output`: the
/// output field's text. `missing`: the sentence of optionsWidget::missing().
QString launchObstacle(bool hasInput, const QString &output, const QString &missing);

/// Widths in pixels that decide whether the option panel and the map stand side by side.
struct PaneWidths
{
    int available = 0; ///< of the splitter
    int panel = 0;     ///< natural width of the panel
    int handle = 0;    ///< between the two
    int map = 0;       ///< least width of the map
};

enum class ShownPanes
{
    Both,
    Panel,
    Map
};

bool fitSideBySide(const PaneWidths &widths);

/// What the window shows of panel and map. Where they do not fit side by side, one of them has the full width:
/// `mapInFront` says which. `mapWanted`: the user has not hidden the map.
ShownPanes shownPanes(const PaneWidths &widths, bool mapWanted, bool mapInFront);

/// Size of the window at the first start, inside its frame, which is `frame` larger: a good part of a large
/// screen, all of a small one. `screen` is its available size.
QSize firstWindowSize(const QSize &screen, const QSize &frame);
