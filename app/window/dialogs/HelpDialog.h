#pragma once

#include <QDialog>

class QTextBrowser;

/// Shows the built-in guide in the language in use.
class HelpDialog : public QDialog
{
    Q_OBJECT

public:
    explicit HelpDialog(QWidget *parent);

protected:
    void changeEvent(QEvent *event) override;

private:
    void showGuide();

    QTextBrowser *m_pGuide;
};
