#include "app/window/dialogs/AboutDialog.h"

#include "app/startup/versions.h"
#include "messages/label.h"
#include "ui_AboutDialog.h"

#include <QCoreApplication>
#include <QDir>

namespace
{

QString link(const QString &address, const QString &text)
{
    return QStringLiteral("<a href=\"%1\">%2</a>").arg(address.toHtmlEscaped(), text.toHtmlEscaped());
}

QString folderLink(const QString &folder)
{
    return link(folder, QDir::toNativeSeparators(folder));
}

QString aboutText()
{
    QString text = QStringLiteral("<p>%1</p>")
                       .arg(labelText({"MESS_APROPOS_BUT",
                                       "Une boîte à outils pour les modèles numériques de terrain, qui "
                                       "s'appuie sur les outils de GDAL."})
                                .toHtmlEscaped());
    text += QStringLiteral("<p>%1</p><table cellspacing=\"2\">")
                .arg(labelText({"MESS_APROPOS_BIBLIO", "Bibliothèques utilisées :"}).toHtmlEscaped());
    for (const LibraryVersion &library : libraryVersions())
        text += QStringLiteral("<tr><td>%1&nbsp;&nbsp;</td><td>%2&nbsp;&nbsp;</td><td>%3</td></tr>")
                    .arg(link(library.address, library.name), library.version.toHtmlEscaped(),
                         library.licence.toHtmlEscaped());
    text += QStringLiteral("</table><p>%1<br>%2</p>")
                .arg(labelText({"MESS_APROPOS_DOSSIER", "Dossier du programme :"}).toHtmlEscaped(),
                     folderLink(QCoreApplication::applicationDirPath()));
    text += QStringLiteral("<p>%1<br>%2</p>")
                .arg(labelText({"MESS_APROPOS_TEMPO", "Dossier temporaire :"}).toHtmlEscaped(),
                     folderLink(QDir::tempPath()));
    return text;
}

} // namespace

AboutDialog::AboutDialog(QWidget *parent, const ShellServices &services)
    : QDialog(parent)
    , m_form(std::make_unique<Ui::AboutDialog>())
{
    m_form->setupUi(this);
    setWindowFlag(Qt::WindowContextHelpButtonHint, false);
    QFont font = m_form->m_pLName->font();
    font.setBold(true);
    font.setPointSizeF(1.3 * font.pointSizeF());
    m_form->m_pLName->setFont(font);
    m_form->m_pLName->setText(QStringLiteral("QuvoDemToolBox ") + programVersion());
    m_form->m_pLText->setText(aboutText());
    // Qt counts the lines of the text at a width that the label does not get.
    m_form->m_pLText->ensurePolished();
    m_form->m_pLText->setMinimumHeight(m_form->m_pLText->heightForWidth(m_form->m_pLText->minimumWidth()));
    connect(m_form->m_pLText, &QLabel::linkActivated, this,
            [services](const QString &target) { openWithShell(target, services); });
    connect(m_form->m_pPBClose, &QPushButton::clicked, this, &QDialog::accept);
}

AboutDialog::~AboutDialog() = default;
