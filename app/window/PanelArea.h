#pragma once

#include <QScrollArea>
#include <QScrollBar>

#include <algorithm>

/// Holds an option panel. Shows it in full where the tab is large enough, and with scroll bars otherwise.
class PanelArea : public QScrollArea
{
    Q_OBJECT

public:
    PanelArea(QWidget *panel, QWidget *parent)
        : QScrollArea(parent)
    {
        setFrameShape(QFrame::NoFrame);
        setFocusPolicy(Qt::NoFocus); // the Tab key goes to the controls, and the area follows it
        setWidgetResizable(true);
        setWidget(panel);
        panel->setAutoFillBackground(false); // the tab's background shows
        viewport()->setAutoFillBackground(false);
    }

    /// The panel's minimum, and a scroll bar beside it. QScrollArea would limit the hint to a few lines of
    /// text.
    QSize sizeHint() const override
    {
        return widget()->minimumSizeHint() + QSize(verticalScrollBar()->sizeHint().width(), 0);
    }

    /// A narrower panel could be scrolled, but hardly be used.
    QSize minimumSizeHint() const override { return QSize(300, 200).boundedTo(sizeHint()); }
};
