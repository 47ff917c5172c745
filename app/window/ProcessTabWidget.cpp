#include "app/window/ProcessTabWidget.h"

#include "app/window/mnemonics.h"

#include <QResizeEvent>
#include <QStyleOptionTab>
#include <QStylePainter>

ProcessTabBar::ProcessTabBar(QWidget *parent)
    : QTabBar(parent)
{
    setUsesScrollButtons(false);
    setElideMode(Qt::ElideRight);
    connect(this, &QTabBar::currentChanged, this, &ProcessTabBar::layOut);
}

/// The current tab has another size than before; QTabBar lays its tabs out at a change of its own size only.
void ProcessTabBar::layOut()
{
    QResizeEvent event(size(), size());
    resizeEvent(&event);
}

bool ProcessTabBar::showsTitle(int index) const
{
    return index == currentIndex() || width() >= allTitlesWidth();
}

int ProcessTabBar::allTitlesWidth() const
{
    int width = 0;
    for (int index = 0; index < count(); ++index)
        width += QTabBar::tabSizeHint(index).width();
    return width;
}

QSize ProcessTabBar::iconTabSize(int index) const
{
    const QSize size = QTabBar::tabSizeHint(index);
    return {size.width() - fontMetrics().size(Qt::TextShowMnemonic, tabText(index)).width(), size.height()};
}

QSize ProcessTabBar::sizeHint() const
{
    return {allTitlesWidth(), QTabBar::sizeHint().height()};
}

QSize ProcessTabBar::minimumSizeHint() const
{
    int width = 0;
    for (int index = 0; index < count(); ++index)
        width += iconTabSize(index).width();
    return {width, QTabBar::sizeHint().height()};
}

QSize ProcessTabBar::tabSizeHint(int index) const
{
    return showsTitle(index) ? QTabBar::tabSizeHint(index) : iconTabSize(index);
}

QSize ProcessTabBar::minimumTabSizeHint(int index) const
{
    return iconTabSize(index); // the title of the current tab is elided before an icon is cut
}

void ProcessTabBar::tabLayoutChange()
{
    for (int index = 0; index < count(); ++index) {
        const bool isWhole = showsTitle(index) && tabRect(index).width() >= QTabBar::tabSizeHint(index).width();
        setTabToolTip(index, isWhole ? QString() : withoutMnemonic(tabText(index)));
    }
}

/// Paints as QTabBar does, without the titles that have no room: QTabBar would show an ellipsis in their place.
void ProcessTabBar::paintEvent(QPaintEvent *)
{
    QStylePainter painter(this);
    const auto paint = [&](int index) {
        QStyleOptionTab option;
        initStyleOption(&option, index);
        if (!showsTitle(index))
            option.text.clear();
        painter.drawControl(QStyle::CE_TabBarTab, option);
    };
    for (int index = 0; index < count(); ++index) {
        if (index != currentIndex() && isTabVisible(index))
            paint(index);
    }
    if (currentIndex() >= 0)
        paint(currentIndex()); // it overlaps its neighbours
}

ProcessTabWidget::ProcessTabWidget(QWidget *parent)
    : QTabWidget(parent)
{
    setTabBar(new ProcessTabBar(this));
    setUsesScrollButtons(false);
    tabBar()->setExpanding(false); // setTabBar() sets it
}

QSize ProcessTabWidget::sizeHint() const
{
    QSize page;
    for (int index = 0; index < count(); ++index)
        page = page.expandedTo(widget(index)->sizeHint());
    QStyleOptionTabWidgetFrame option;
    initStyleOption(&option);
    page.rheight() += tabBar()->sizeHint().height();
    return style()->sizeFromContents(QStyle::CT_TabWidget, &option, page, this);
}
