#include "app/HelpDialog.h"

#include <QEvent>
#include <QFile>
#include <QLocale>
#include <QTextBlock>
#include <QTextBrowser>
#include <QVBoxLayout>

HelpDialog::HelpDialog(QWidget *parent)
    : QDialog(parent)
    , m_pGuide(new QTextBrowser(this))
{
    setWindowFlag(Qt::WindowContextHelpButtonHint, false);
    m_pGuide->setOpenExternalLinks(true);
    m_pGuide->setFrameShape(QFrame::NoFrame);
    m_pGuide->document()->setDocumentMargin(16);
    auto layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(m_pGuide);
    resize(700, 720);
    showGuide();
}

void HelpDialog::showGuide()
{
    setWindowTitle(tr("Aide", "MESS_AIDE"));
    const bool french = QLocale().language() == QLocale::French; // the language in use sets it
    QFile file(QStringLiteral(":/QuvoGdalUtilities/help/guide_%1.md")
                   .arg(french ? QLatin1String("fr") : QLatin1String("en")));
    if (file.open(QIODevice::ReadOnly))
        m_pGuide->setMarkdown(QString::fromUtf8(file.readAll()));
    m_pGuide->moveCursor(QTextCursor::Start);
}

void HelpDialog::changeEvent(QEvent *event)
{
    if (event->type() == QEvent::LanguageChange)
        showGuide();
    QDialog::changeEvent(event);
}
