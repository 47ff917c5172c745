#include "app/quvoGdalUtilities.h"

#include "dataset/pathencoding.h"
#include "dataset/rasterinfo.h"
#include "messages/Prompt.h"
#include "ui_quvoGdalUtilitiesDialog.h"

#include <QDir>
#include <QEvent>
#include <QGuiApplication>
#include <QScreen>

namespace
{

QVector<QRect> availableScreens()
{
    QVector<QRect> areas;
    for (const QScreen *screen : QGuiApplication::screens())
        areas += screen->availableGeometry();
    return areas;
}

} // namespace

quvoGdalUtilities::quvoGdalUtilities(const ToolPaths &tools, QWidget *parent, Qt::WindowFlags flags)
    : QDialog(parent, flags)
    , m_form(std::make_unique<Ui::quvoGdalUtilitiesDialog>())
    , m_tools(tools)
{
    m_form->setupUi(this);
    m_lastGeometry = readLastGeometry();
    const QRect visible = visibleGeometry({m_lastGeometry.position, m_lastGeometry.size}, availableScreens());
    resize(visible.size());
    move(visible.topLeft());
}

quvoGdalUtilities::~quvoGdalUtilities() = default;

void quvoGdalUtilities::setInputDem(const QString &path)
{
    setKeepStartingDir(false);
    const RasterInfo info = readRasterInfo(dataSetName(path, QDir::currentPath()));
    if (info.error.isEmpty())
        m_inputDem = path;
    else
        Prompt::warning(
            this,
            QStringLiteral("%1\n\n%2")
                .arg(labelText({"MESS_INV_INPUT_FILE", "Le fichier d'entrée n'est pas valide"}), path));
}

void quvoGdalUtilities::setKeepStartingDir(bool keep)
{
    m_keepStartingDir = keep;
}

void quvoGdalUtilities::done(int result)
{
    m_lastGeometry.size = size();
    m_lastGeometry.position = pos();
    writeLastGeometry(m_lastGeometry);
    QDialog::done(result);
}

void quvoGdalUtilities::changeEvent(QEvent *event)
{
    if (event->type() == QEvent::LanguageChange)
        m_form->retranslateUi(this);
    QDialog::changeEvent(event);
}
