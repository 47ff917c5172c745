#include "dataset/chooser/SourceView.h"

#include "dataset/chooser/SourcePreview.h"
#include "messages/label.h"

#include <QHeaderView>
#include <QSignalBlocker>
#include <QTreeWidget>

#include <algorithm>

namespace
{

QTreeWidget *rows(const char *name, const QString &accessibleName, QWidget *parent)
{
    auto made = new QTreeWidget(parent);
    made->setObjectName(QLatin1String(name));
    made->setAccessibleName(accessibleName);
    made->setRootIsDecorated(false);
    made->setUniformRowHeights(true);
    return made;
}

} // namespace

SourceView::SourceView(QWidget *parent)
    : QSplitter(Qt::Horizontal, parent)
{
    addWidget(description());
    m_pPreview = new SourcePreview(this);
    m_pPreview->setAccessibleName(labelText({"MESS_SRC_APERCU", "Aperçu"}));
    addWidget(m_pPreview);
    setChildrenCollapsible(false);
    setStretchFactor(0, 3);
    setStretchFactor(1, 2);
    setSizes({300, 200}); // proportions
    connect(m_pParts, &QTreeWidget::currentItemChanged, this, &SourceView::onPartChanged);
    connect(m_pParts, &QTreeWidget::itemActivated, this, &SourceView::activated);
    connect(m_pPreview, &SourcePreview::described, this, &SourceView::showFacts);
}

/// The facts above the list of bands or layers.
QWidget *SourceView::description()
{
    auto both = new QSplitter(Qt::Vertical, this);
    m_pFacts = rows("m_pFacts", labelText({"MESS_SRC_DESCR", "Description"}), both);
    m_pFacts->setHeaderHidden(true);
    m_pFacts->setColumnCount(2);
    m_pFacts->header()->setStretchLastSection(false); // a long value can be scrolled to
    m_pFacts->header()->setSectionResizeMode(QHeaderView::ResizeToContents);
    m_pFacts->setSelectionMode(QAbstractItemView::NoSelection);
    m_pParts = rows("m_pParts", labelText({"MESS_SRC_PARTIES", "Bandes ou couches"}), both);
    both->setChildrenCollapsible(false);
    both->setSizes({200, 100}); // proportions
    return both;
}

bool SourceView::isBusy() const
{
    return m_pPreview->isBusy();
}

void SourceView::showSource(const SourceInfo &info)
{
    m_info = info;
    showParts();
    onPartChanged();
}

/// Lists what is known of the source, and what the picture has shown of its band.
void SourceView::showFacts(const QVector<SourceFact> &seen)
{
    m_pFacts->clear();
    for (const SourceFact &fact : sourceFacts(m_info) + seen) {
        auto row = new QTreeWidgetItem(m_pFacts, {fact.title, fact.value});
        row->setToolTip(1, fact.value.toHtmlEscaped());
    }
}

void SourceView::showParts()
{
    const bool choosable = m_info.kind == SourceKind::Raster || m_info.kind == SourceKind::Vector;
    const QStringList titles = partTitles(m_info.kind);
    const QSignalBlocker blocker(m_pParts);
    m_pParts->clear();
    m_pParts->setColumnCount(static_cast<int>(titles.size()));
    m_pParts->setHeaderLabels(titles);
    if (choosable) {
        for (const QStringList &row : partRows(m_info))
            new QTreeWidgetItem(m_pParts, row);
    }
    m_pParts->setCurrentItem(m_pParts->topLevelItem(0));
    m_pParts->setVisible(choosable);
    const bool hasStatistics =
        std::any_of(m_info.bands.begin(), m_info.bands.end(), [](const BandFacts &band) { return band.known; });
    for (int column = 0; column < m_pParts->columnCount(); ++column) {
        const bool isStatistic = m_info.kind == SourceKind::Raster && column >= 3 && column <= 5;
        m_pParts->setColumnHidden(column, isStatistic && !hasStatistics);
        m_pParts->resizeColumnToContents(column);
    }
}

void SourceView::onPartChanged()
{
    m_part = m_pParts->indexOfTopLevelItem(m_pParts->currentItem());
    showFacts({});
    if (m_part < 0)
        m_pPreview->clear();
    else if (m_info.kind == SourceKind::Raster)
        m_pPreview->showBand(m_info.name, m_part + 1);
    else
        m_pPreview->showLayer(m_info.name, m_info.layers.at(m_part).name);
    emit partChanged();
}
