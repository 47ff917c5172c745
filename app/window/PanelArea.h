#pragma once

#include <QApplication>
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
        // QScrollArea follows the Tab key only from one of its controls to the next, and no letter with Alt.
        connect(qApp, &QApplication::focusChanged, this, [this](const QWidget *, QWidget *now) {
            const bool isClicked =
                QApplication::mouseButtons() != Qt::NoButton; // what is clicked stays in place
            if (now && !isClicked && widget()->isAncestorOf(now))
                ensureWidgetVisible(now);
        });
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
