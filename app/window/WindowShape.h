#pragma once

#include "app/startup/settings.h"

#include <QSize>

class PreviewPane;
class QDialog;
class QPushButton;
class QSplitter;
class QTabWidget;

/// Keeps size and position of the main dialog from one start to the next, and shows or hides the previews
/// beside its tabs.
class WindowShape
{
public:
    /// All widgets belong to the dialog and outlive this object. `button` is the one that shows and hides the
    /// previews.
    WindowShape(QDialog &window, QTabWidget &tabs, QSplitter &splitter, PreviewPane &previews,
                QPushButton &button);

    /// Restores what save() stored, within the screens. Where every screen is too narrow for the previews, they
    /// stay hidden until the user shows them.
    void restore();
    void save();

    /// Widens the tabs where their titles no longer fit, as after a change of language.
    void fitTabs();

    /// Width in pixels that all tabs need, with the previews where they are shown.
    int widthHint() const;

    /// Shows or hides the previews; the window grows or shrinks by their width. Returns whether they are shown
    /// now.
    bool togglePreviews();

    /// Hides the previews and disables their button. The user's choice is kept for the next start.
    void removePreviews();

private:
    QSize firstSize() const;
    int tabsWidth() const;
    int previewsWidth() const;
    void showPreviews(bool show);
    void fitSplitter();

    QDialog &m_window;
    QTabWidget &m_tabs;
    QSplitter &m_splitter;
    PreviewPane &m_previews;
    QPushButton &m_button;
    LastGeometry m_geometry;
};
