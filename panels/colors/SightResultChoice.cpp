#include "panels/colors/SightResultChoice.h"

#include "colortable/colortablefile.h"
#include "colortable/editor/tablelibrary.h"
#include "messages/label.h"
#include "panels/controls/ColorRampComboBox.h"
#include "panels/options/maprampcolors.h"

#include <QFileInfo>
#include <QLabel>

namespace
{

struct ResultTexts
{
    SightResult result;
    Label name;
    Label toolTip;
};

constexpr ResultTexts results[] = {
    {SightResult::Picture,
     {"MESS_RES_IMAGE", "Image des zones"},
     {"MESS_RES_IMAGE_EXPL", "Chaque cellule a la couleur de sa zone : visible, non visible ou sans donnée."}},
    {SightResult::Count,
     {"MESS_RES_NOMBRE", "Nombre d'observateurs"},
     {"MESS_RES_NOMBRE_EXPL", "Combien d'observateurs voient chaque cellule."}},
    {SightResult::Height,
     {"MESS_RES_HAUTEUR", "Hauteur minimale visible"},
     {"MESS_RES_HAUTEUR_EXPL",
      "À partir de quelle hauteur au-dessus du sol un objet est vu ; 0 là où le sol lui-même l'est."}},
};

QString noteOf(SightResult result)
{
    if (result == SightResult::Count)
        return labelText(
            {"MESS_RES_NOTE_NOMBRE",
             "Le fichier contient des nombres, que seule la carte colore. Tous les observateurs comptent, quel "
             "que soit le choix pour plusieurs points."});
    if (result == SightResult::Height)
        return labelText({"MESS_RES_NOTE_HAUTEUR",
                          "Le fichier contient des nombres, dans l'unité des altitudes du MNT, que seule la "
                          "carte colore. La "
                          "hauteur au sol ne se choisit pas : elle est calculée."});
    return {};
}

QString rampName(const ColorRampComboBox::Table &table)
{
    return QFileInfo(table.file).completeBaseName();
}

} // namespace

SightResultChoice::SightResultChoice(QComboBox *resultList, ColorRampComboBox *ramps, QLabel *note)
    : m_results(resultList)
    , m_ramps(ramps)
    , m_note(note)
{
    for (const ResultTexts &texts : results)
        m_results->addItem(QString(), static_cast<int>(texts.result));
    fillRamps();
    retranslate();
    connect(m_results, qOverload<int>(&QComboBox::currentIndexChanged), this, [this] {
        showNote();
        emit changed();
    });
    connect(m_ramps, qOverload<int>(&QComboBox::activated), this, [this] {
        m_ramp = rampName(m_ramps->currentTable());
        emit changed();
    });
}

/// Tables in metres belong to elevations; those in percent suit any number.
void SightResultChoice::fillRamps()
{
    for (const LibraryTable &table : libraryTables(tableLibraryFolder(), QString())) {
        const ColorTableReading reading = readColorTable(table.file);
        if (reading.relative)
            m_ramps->putTable(table.name, {table.file, table.file, reading.entries});
    }
}

SightResult SightResultChoice::result() const
{
    return static_cast<SightResult>(m_results->currentData().toInt());
}

void SightResultChoice::set(SightResult result, const QString &ramp)
{
    m_ramp = ramp;
    m_ramps->setCurrentIndex(-1);
    for (int row = 0; row < m_ramps->count(); ++row) {
        if (rampName(m_ramps->table(row)) == ramp)
            m_ramps->setCurrentIndex(row);
    }
    m_results->setCurrentIndex(m_results->findData(static_cast<int>(result)));
}

void SightResultChoice::retranslate()
{
    for (const ResultTexts &texts : results) {
        const int row = m_results->findData(static_cast<int>(texts.result));
        m_results->setItemText(row, labelText(texts.name));
        m_results->setItemData(row, labelText(texts.toolTip), Qt::ToolTipRole);
    }
    m_ramps->setToolTip(
        labelText({"MESS_RES_RAMPE_EXPL",
                   "Couleurs des nombres sur la carte et dans sa légende ; le fichier n'en a pas."}));
    showNote();
}

void SightResultChoice::showNote()
{
    const QString note = noteOf(result());
    m_note->setText(note);
    m_note->setVisible(!note.isEmpty());
    m_results->setToolTip(m_results->currentData(Qt::ToolTipRole).toString());
}
