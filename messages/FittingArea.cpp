#include "messages/FittingArea.h"

#include <QApplication>
#include <QScrollBar>
#include <QVBoxLayout>

namespace
{

QWidget *column(const QList<QWidget *> &parts)
{
    auto column = new QWidget;
    auto layout = new QVBoxLayout(column);
    layout->setContentsMargins(0, 0, 0, 0);
    for (QWidget *part : parts)
        layout->addWidget(part);
    layout->addStretch();
    return column;
}

} // namespace

FittingArea::FittingArea(QWidget *part, QWidget *parent)
    : QScrollArea(parent)
{
    setFrameShape(QFrame::NoFrame);
    setFocusPolicy(Qt::NoFocus); // the Tab key goes to the controls, and the area follows it
    setWidgetResizable(true);
    setWidget(part);
    part->setAutoFillBackground(false); // the background of the window shows
    viewport()->setAutoFillBackground(false);
    // QScrollArea follows the Tab key only from one of its controls to the next, and no letter with Alt.
    connect(qApp, &QApplication::focusChanged, this, [this](const QWidget *, QWidget *now) {
        const bool isClicked = QApplication::mouseButtons() != Qt::NoButton; // what is clicked stays in place
        if (now && !isClicked && widget()->isAncestorOf(now))
            ensureWidgetVisible(now);
    });
}

FittingArea::FittingArea(const QList<QWidget *> &parts, QWidget *parent)
    : FittingArea(column(parts), parent)
{ }

QSize FittingArea::sizeHint() const
{
    return widget()->minimumSizeHint() + QSize(verticalScrollBar()->sizeHint().width(), 0);
}

QSize FittingArea::minimumSizeHint() const
{
    return QSize(300, 200).boundedTo(sizeHint());
}
