#include "app/window/launch/processResultDialog.h"

#include "app/preview/PreviewDialog.h"
#include "app/run/copiedcommand.h"
#include "messages/Prompt.h"
#include "messages/label.h"
#include "ui_processResultDialog.h"

#include <QClipboard>
#include <QDir>
#include <QFileInfo>
#include <QGuiApplication>
#include <QIcon>

namespace
{

constexpr int pictureSide = 48;

} // namespace

processResultDialog::processResultDialog(const ProcessResult &result, QWidget *parent,
                                         const ShellServices &services)
    : QDialog(parent)
    , m_form(std::make_unique<Ui::processResultDialog>())
    , m_result(result)
    , m_services(services)
{
    m_form->setupUi(this);
    setWindowFlag(Qt::WindowContextHelpButtonHint, false);
    setWindowTitle(result.title);
    m_form->m_pLPicture->setPixmap(QIcon(result.picture).pixmap(pictureSide));
    m_form->m_pLText->setText(result.text);
    m_form->m_pLFile->setText(QDir::toNativeSeparators(result.file));
    m_form->m_pTEDetails->setPlainText(resultDetails(result));
    for (QWidget *widget : QList<QWidget *>{m_form->m_pLFile, m_form->m_pPBShowResult, m_form->m_pPBOpenFolder})
        widget->setVisible(!result.file.isEmpty());

    connect(m_form->m_pPBShowResult, &QPushButton::clicked, this, &processResultDialog::slot_showResult);
    connect(m_form->m_pPBOpenFolder, &QPushButton::clicked, this, &processResultDialog::slot_openFolder);
    connect(m_form->m_pPBDetails, &QPushButton::toggled, this, &processResultDialog::slot_showDetails);
    connect(m_form->m_pPBCopyCommand, &QPushButton::clicked, this, &processResultDialog::slot_copyCommand);
    connect(m_form->m_pPBClose, &QPushButton::clicked, this, &QDialog::accept);
}

processResultDialog::~processResultDialog() = default;

void processResultDialog::slot_showResult()
{
    showProduct(m_result.file, m_result.source, this, m_services);
}

void processResultDialog::slot_openFolder()
{
    if (!executeCommandLine(QStringLiteral("\"explorer\" /select,%1").arg(m_result.file), QString(),
                            m_services))
        Prompt::warning(this,
                        labelText({"MESS_DOS_NON_OUVERT", "Le dossier « %1 » n'a pas pu être ouvert."})
                            .arg(QFileInfo(m_result.file).absolutePath()));
}

void processResultDialog::slot_showDetails(bool shown)
{
    m_form->m_pTEDetails->setVisible(shown);
    adjustSize();
}

void processResultDialog::slot_copyCommand()
{
    QGuiApplication::clipboard()->setText(m_result.shellCommand);
    Prompt::notice(m_form->m_pPBCopyCommand, commandCopiedText());
}
