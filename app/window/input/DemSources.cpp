#include "app/window/input/DemSources.h"

#include "app/window/input/FileDrop.h"
#include "app/window/input/InputDem.h"
#include "dataset/chooser/ImageChooser.h"
#include "dataset/chooser/InputMenu.h"

#include <QComboBox>
#include <QDialog>
#include <QFileInfo>
#include <QToolButton>

DemSources::DemSources(QuvoScriptRunner &runner, const ToolPaths &tools, WorkFolder &workFolder, Window window)
    : m_window(std::move(window))
    , m_workFolder(workFolder)
    , m_several(runner, tools, workFolder,
                {.widget = m_window.dialog,
                 .showDem = m_window.showDem,
                 .showMosaic =
                     [this](const QString &path, const QStringList &tiles) {
                         m_window.input->setKeepStartingDir(false);
                         m_window.input->chooseMosaic(path, tiles);
                     },
                 .recipe = m_window.recipe,
                 .folder = [this] { return QFileInfo(m_window.input->namingInput()).absolutePath(); }})
{
    auto menu = new InputMenu(m_window.button);
    menu->add({"MESS_SRC_FICHIER", "Fichier..."}, m_window.selectFile);
    menu->add({"MESS_ENTREE_SOURCE", "Source de données..."}, [this] { chooseSource(); });
    menu->add({"MESS_ENTREE_TUILES", "Plusieurs MNT..."}, [this] { m_several.slot_selectTiles(); });
    menu->add({"MESS_ENTREE_DOSSIER", "Dossier de MNT..."}, [this] { m_several.slot_selectFolder(); });
    connect(new FileDrop(m_window.dialog), &FileDrop::dropped, this, &DemSources::dropped);
    connect(&m_several, &SeveralDems::seriesBegins, this, &DemSources::seriesBegins);
    connect(&m_several, &SeveralDems::seriesEnded, this, &DemSources::seriesEnded);
}

/// Opens a band of any source of GDAL's that the user chooses.
void DemSources::chooseSource()
{
    ImageChooser chooser(SourceWanted::Rasters, m_workFolder, m_window.dialog);
    const QString path = m_window.input->path();
    if (!path.isEmpty() && m_window.input->tiles().isEmpty())
        chooser.setSource(path);
    if (chooser.exec() == QDialog::Accepted && m_window.input->choose(chooser.name()))
        m_window.bands->setCurrentIndex(chooser.band() - 1);
}
