#pragma once

#include <QScrollArea>
#include <QScrollBar>

/// Holds an option panel: in its full size where there is room, scrolled on a screen that is too small for it.
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

    /// The panel's: a scroll area's own hint ends at some lines of text.
    QSize sizeHint() const override { return widget()->minimumSizeHint(); }

    /// No narrower than the panel, so that nothing is cut at its side.
    QSize minimumSizeHint() const override
    {
        return {widget()->minimumSizeHint().width() + verticalScrollBar()->sizeHint().width(), 200};
    }
};
