#pragma once

#include "app/startup/settings.h"

#include <QSize>

class PreviewPane;
class QDialog;
class QPushButton;
class QSplitter;
class QTabWidget;

/// Size and place of the main dialog, with the previews beside its tabs or without them, from one start to the
/// next.
class WindowShape
{
public:
    /// The widgets are the dialog's and outlive the shape; the button shows and hides the previews.
    WindowShape(QDialog &window, QTabWidget &tabs, QSplitter &splitter, PreviewPane &previews,
                QPushButton &button);

    /// As it was saved last; on a screen that is too narrow for the previews they wait until they are asked
    /// for.
    void restore();
    void save();

    /// The tabs' texts are in another language: none is cut.
    void fitTabs();

    /// Wide enough for every tab, and for the previews where they are shown.
    int widthHint() const;

    /// Shows or hides the previews; the window grows or shrinks by them. True where they are shown now.
    bool togglePreviews();

    /// The previews go for good; what the user chose is kept for the next start.
    void removePreviews();

private:
    void showPreviews(bool show);
    void giveTabsTheirRoom();

    QDialog &m_window;
    QTabWidget &m_tabs;
    QSplitter &m_splitter;
    PreviewPane &m_previews;
    QPushButton &m_button;
    LastGeometry m_last;
};
