#pragma once

#include <QTabBar>
#include <QTabWidget>

/// A tab bar that shows the titles of all tabs where they fit. Where they do not, the current tab keeps its
/// title, and the others show their icon alone with the title as tool tip. tabText() returns the title in
/// either case. Every tab needs an icon.
class ProcessTabBar : public QTabBar
{
    Q_OBJECT

public:
    explicit ProcessTabBar(QWidget *parent = nullptr);

    /// Whether the tab shows its title.
    bool showsTitle(int index) const;

    /// Room for all titles.
    QSize sizeHint() const override;
    /// Room for all icons.
    QSize minimumSizeHint() const override;

protected:
    QSize tabSizeHint(int index) const override;
    QSize minimumTabSizeHint(int index) const override;
    void tabLayoutChange() override;
    void paintEvent(QPaintEvent *event) override;

private:
    void layOut();
    QSize iconTabSize(int index) const;
    int allTitlesWidth() const;
};

/// Tabs whose natural size is that of their largest page; the titles in the tab bar do not widen it.
class ProcessTabWidget : public QTabWidget
{
    Q_OBJECT

public:
    explicit ProcessTabWidget(QWidget *parent = nullptr);

    QSize sizeHint() const override;
};
