#pragma once

#include "app/window/dialogs/guidepages.h"

#include <QDialog>
#include <QTextDocument>

class QLabel;
class QLineEdit;
class QListWidget;
class QTextBrowser;
class QToolButton;
class QUrl;

/// Shows the guide in the language in use, page by page: a list of the pages, which a narrow window hides,
/// buttons for the pages seen before, and a field that searches all pages.
class HelpDialog : public QDialog
{
    Q_OBJECT

public:
    /// `guide`: the folder of the guide.
    HelpDialog(QString guide, QWidget *parent);

    /// Shows a page of the guide by its name; a page that cannot be read is a sentence that says so.
    void showPage(const QString &page);

    /// The name of the page that is shown.
    QString page() const;

protected:
    void changeEvent(QEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;

private:
    void makeControls();
    void connectControls();
    void applyTexts();
    void slot_pageShown(const QUrl &url);
    void fit(const QUrl &page);
    void search(QTextDocument::FindFlags direction);
    bool searchOtherPages(const QString &text, QTextDocument::FindFlags direction);

    QString m_guide;
    QVector<GuidePage> m_pages;
    // In the order of the Tab key.
    QToolButton *m_pBack;
    QToolButton *m_pForward;
    QToolButton *m_pHome;
    QLineEdit *m_pFind;
    QLabel *m_pNotFound;
    QListWidget *m_pPages;
    QTextBrowser *m_pGuide;
};
