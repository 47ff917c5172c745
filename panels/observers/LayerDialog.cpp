#include "panels/observers/LayerDialog.h"

#include "dataset/chooser/sourcetexts.h"

#include <QDialogButtonBox>
#include <QHeaderView>
#include <QLabel>
#include <QTreeWidget>
#include <QVBoxLayout>

LayerDialog::LayerDialog(const QVector<LayerFacts> &layers, QWidget *parent)
    : QDialog(parent)
    , m_list(new QTreeWidget(this))
{
    setWindowTitle(tr("Intervisibilité", "MESS_INTERVIS"));
    auto question = new QLabel(tr("Couche à importer :", "MESS_COUCHE_CHOIX"), this);
    question->setBuddy(m_list);
    m_list->setObjectName(QStringLiteral("m_pLayers"));
    m_list->setAccessibleName(question->text());
    m_list->setRootIsDecorated(false);
    constexpr int countColumn = 2;
    m_list->setHeaderLabels(partTitles(SourceKind::Vector)
                            + QStringList{tr("Système de coordonnées", "MESS_OBS_SCR")});
    SourceInfo source;
    source.layers = layers;
    const QVector<QStringList> rows = partRows(source);
    for (int row = 0; row < rows.size(); ++row) {
        const QString crs = layers.at(row).crs;
        auto item = new QTreeWidgetItem(
            m_list, rows.at(row) + QStringList{crs.isEmpty() ? tr("inconnu", "MESS_SRC_SCR_INCONNU") : crs});
        item->setTextAlignment(countColumn, Qt::AlignRight | Qt::AlignVCenter);
    }
    m_list->setCurrentItem(m_list->topLevelItem(0));
    m_list->header()->setSectionResizeMode(QHeaderView::ResizeToContents);
    m_list->setMinimumSize(fontMetrics().averageCharWidth() * 75, fontMetrics().height() * 10);
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
    return m_list->currentItem()->text(0);
}
