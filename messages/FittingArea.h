#pragma once

#include <QScrollArea>

/// Shows a part of a window in full where there is room, and with scroll bars otherwise, so that the window
/// fits on small screens.
class FittingArea : public QScrollArea
{
    Q_OBJECT

public:
    /// `part` becomes a child of this area.
    FittingArea(QWidget *part, QWidget *parent);

    /// `parts`, one below the other, become children of this area.
    FittingArea(const QList<QWidget *> &parts, QWidget *parent);

    /// The part's minimum, and a scroll bar beside it. QScrollArea would limit the hint to a few lines of text.
    QSize sizeHint() const override;

    /// A narrower part could be scrolled, but hardly be used.
    QSize minimumSizeHint() const override;
};
