#include "app/window/dialogs/HelpDialog.h"

#include <QEvent>
#include <QFile>
#include <QLocale>
#include <QTextBlock>
#include <QTextBrowser>
#include <QVBoxLayout>

namespace
{

/// Gives code a monospace font: where the desktop names none, Qt shows code in a proportional one.
void setCodeFont(QTextDocument &document)
{
    QTextCharFormat code;
    code.setFontFamilies({QStringLiteral("monospace")});
    code.setFontFamily(QStringLiteral("monospace"));
    code.setFontStyleHint(QFont::Monospace);
    for (QTextBlock block = document.begin(); block.isValid(); block = block.next()) {
        for (auto at = block.begin(); !at.atEnd(); ++at) {
            const QTextFragment fragment = at.fragment();
            if (!fragment.charFormat().hasProperty(QTextFormat::FontFixedPitch))
                continue;
            QTextCursor cursor(&document);
            cursor.setPosition(fragment.position());
            cursor.setPosition(fragment.position() + fragment.length(), QTextCursor::KeepAnchor);
            cursor.mergeCharFormat(code);
        }
    }
}

} // namespace

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
    resize(fontMetrics().averageCharWidth() * 88, fontMetrics().height() * 36);
    showGuide();
}

void HelpDialog::showGuide()
{
    setWindowTitle(tr("Aide", "MESS_AIDE"));
    const bool french = QLocale().language() == QLocale::French; // the language manager sets the default locale
    QFile file(QStringLiteral(":/QuvoGdalUtilities/help/guide_%1.md")
                   .arg(french ? QLatin1String("fr") : QLatin1String("en")));
    if (file.open(QIODevice::ReadOnly))
        m_pGuide->setMarkdown(QString::fromUtf8(file.readAll()));
    setCodeFont(*m_pGuide->document());
    m_pGuide->moveCursor(QTextCursor::Start);
}

void HelpDialog::changeEvent(QEvent *event)
{
    if (event->type() == QEvent::LanguageChange)
        showGuide();
    QDialog::changeEvent(event);
}
