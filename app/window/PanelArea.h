#pragma once

#include <QScrollArea>
#include <QScrollBar>

/// Holds an option panel. Shows it in full where the tab is large enough, and with a scroll bar otherwise.
class PanelArea : public QScrollArea
{
    Q_OBJECT

public:
    PanelArea(QWidget *panel, QWidget *parent)
        : QScrollArea(parent)
    {
        setFrameShape(QFrame::NoFrame);
        setWidgetResizable(true);
        setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
        setWidget(panel);
        panel->setAutoFillBackground(false); // the tab's background shows
        viewport()->setAutoFillBackground(false);
    }

    /// The panel's minimum. QScrollArea would limit the hint to a few lines of text.
    QSize sizeHint() const override { return widget()->minimumSizeHint(); }

    /// At least as wide as the panel with a scroll bar, so that the panel is never cut at its side.
    QSize minimumSizeHint() const override
    {
        return {widget()->minimumSizeHint().width() + verticalScrollBar()->sizeHint().width(), 200};
    }
};
