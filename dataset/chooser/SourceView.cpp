#include "dataset/chooser/SourceView.h"

#include "dataset/chooser/SourcePreview.h"
#include "dataset/chooser/sourcetexts.h"
#include "messages/label.h"

#include <QFormLayout>
#include <QLabel>
#include <QSignalBlocker>
#include <QTreeWidget>
#include <QVBoxLayout>

QLabel *plainLabel(const QString &name, QWidget *parent)
{
    auto label = new QLabel(parent);
    label->setObjectName(name);
    label->setTextFormat(Qt::PlainText);
    label->setWordWrap(true);
    label->setTextInteractionFlags(Qt::TextSelectableByMouse);
    return label;
}

SourceView::SourceView(QWidget *parent)
    : QSplitter(Qt::Horizontal, parent)
{
    addWidget(description());
    addWidget(picture());
    setChildrenCollapsible(false);
    setStretchFactor(0, 3);
    setStretchFactor(1, 2);
    setSizes({300, 200}); // proportions; a label that wraps its lines has no good width of its own
    connect(m_pParts, &QTreeWidget::currentItemChanged, this, &SourceView::onPartChanged);
    connect(m_pParts, &QTreeWidget::itemActivated, this, &SourceView::activated);
    connect(m_pPreview, &SourcePreview::described, m_pLSample, &QLabel::setText);
}

/// The facts above the list of bands or layers.
QWidget *SourceView::description()
{
    auto both = new QWidget(this);
    both->setMinimumWidth(fontMetrics().averageCharWidth() * 30);
    auto layout = new QVBoxLayout(both);
    layout->setContentsMargins(0, 0, 0, 0);
    m_pFacts = new QFormLayout;
    m_pParts = new QTreeWidget(both);
    m_pParts->setObjectName(QStringLiteral("m_pParts"));
    m_pParts->setAccessibleName(labelText({"MESS_SRC_PARTIES", "Bandes ou couches"}));
    m_pParts->setRootIsDecorated(false);
    m_pParts->setUniformRowHeights(true);
    m_pParts->setMinimumHeight(fontMetrics().height() * 5);
    layout->addLayout(m_pFacts);
    layout->addWidget(m_pParts, 1);
    layout->addStretch(); // while there is no list
    return both;
}

QWidget *SourceView::picture()
{
    auto both = new QWidget(this);
    auto layout = new QVBoxLayout(both);
    layout->setContentsMargins(0, 0, 0, 0);
    m_pPreview = new SourcePreview(both);
    m_pPreview->setAccessibleName(labelText({"MESS_SRC_APERCU", "Aperçu"}));
    m_pLSample = plainLabel(QStringLiteral("m_pLSample"), both);
    layout->addWidget(m_pPreview, 1);
    layout->addWidget(m_pLSample);
    return both;
}

bool SourceView::isBusy() const
{
    return m_pPreview->isBusy();
}

void SourceView::showSource(const SourceInfo &info)
{
    m_info = info;
    showFacts();
    showParts();
    onPartChanged();
}

void SourceView::showFacts()
{
    while (m_pFacts->rowCount() > 0)
        m_pFacts->removeRow(0);
    for (const SourceFact &fact : sourceFacts(m_info)) {
        QLabel *value = plainLabel(QStringLiteral("fact"), this);
        value->setText(fact.value);
        m_pFacts->addRow(fact.title, value);
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
    for (int column = 0; column < m_pParts->columnCount(); ++column)
        m_pParts->resizeColumnToContents(column);
}

void SourceView::onPartChanged()
{
    m_part = m_pParts->indexOfTopLevelItem(m_pParts->currentItem());
    m_pLSample->clear();
    if (m_part < 0)
        m_pPreview->clear();
    else if (m_info.kind == SourceKind::Raster)
        m_pPreview->showBand(m_info.name, m_part + 1);
    else
        m_pPreview->showLayer(m_info.name, m_info.layers.at(m_part).name);
    emit partChanged();
}
