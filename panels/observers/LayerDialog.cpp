#include "panels/observers/LayerDialog.h"

#include <QDialogButtonBox>
#include <QHeaderView>
#include <QLabel>
#include <QLocale>
#include <QTreeWidget>
#include <QVBoxLayout>

namespace
{

enum ListColumn
{
    Name,
    Geometry,
    Features,
    Crs
};

QString geometryText(LayerGeometry geometry)
{
    switch (geometry) {
    case LayerGeometry::Points:
        return labelText({"MESS_COUCHE_POINTS", "Points"});
    case LayerGeometry::Lines:
        return labelText({"MESS_COUCHE_LIGNES", "Lignes"});
    case LayerGeometry::Areas:
        return labelText({"MESS_COUCHE_SURFACES", "Surfaces"});
    default:
        return labelText({"MESS_COUCHE_MIXTE", "Diverses"});
    }
}

} // namespace

LayerDialog::LayerDialog(const QVector<VectorLayer> &layers, QWidget *parent)
    : QDialog(parent)
    , m_list(new QTreeWidget(this))
{
    setWindowTitle(tr("Intervisibilité", "MESS_INTERVIS"));
    auto question = new QLabel(tr("&Couche à importer :", "MESS_COUCHE_CHOIX"), this);
    question->setBuddy(m_list);
    m_list->setObjectName(QStringLiteral("m_pLayers"));
    m_list->setRootIsDecorated(false);
    m_list->setHeaderLabels({tr("Nom", "MESS_OBS_NOM"), tr("Géométrie", "MESS_COUCHE_GEOM"),
                             tr("Objets", "MESS_COUCHE_OBJETS"),
                             tr("Système de coordonnées", "MESS_COUCHE_SCR")});
    for (const VectorLayer &layer : layers) {
        const QString crs = layer.crs.isEmpty() ? tr("inconnu", "MESS_COUCHE_SCR_NUL") : layer.crs;
        auto item = new QTreeWidgetItem(
            m_list, {layer.name, geometryText(layer.geometry), QLocale().toString(layer.featureCount), crs});
        item->setTextAlignment(Features, Qt::AlignRight | Qt::AlignVCenter);
    }
    m_list->setCurrentItem(m_list->topLevelItem(0));
    m_list->header()->setSectionResizeMode(QHeaderView::ResizeToContents);
    m_list->setMinimumSize(520, 180);
    auto buttons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel, this);
    connect(buttons, &QDialogButtonBox::accepted, this, &QDialog::accept);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
    connect(m_list, &QTreeWidget::itemDoubleClicked, this, &QDialog::accept);
    auto layout = new QVBoxLayout(this);
    layout->setContentsMargins(16, 16, 16, 16);
    layout->setSpacing(12);
    layout->addWidget(question);
    layout->addWidget(m_list);
    layout->addWidget(buttons);
}

QString LayerDialog::layer() const
{
    return m_list->currentItem()->text(Name);
}
