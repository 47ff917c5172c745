#include "app/series/SeriesResultDialog.h"

#include "messages/label.h"

#include <QDialogButtonBox>
#include <QDir>
#include <QFileInfo>
#include <QHeaderView>
#include <QLabel>
#include <QPushButton>
#include <QTableWidget>
#include <QVBoxLayout>

#include <algorithm>

namespace
{

QString endText(SeriesRow::End end)
{
    switch (end) {
    case SeriesRow::Done:
        return labelText({"MESS_HIST_FINI", "Terminé"});
    case SeriesRow::Kept:
        return labelText({"MESS_SERIE_GARDE", "Existait déjà"});
    case SeriesRow::Failed:
        return labelText({"MESS_HIST_ECHEC", "Échec"});
    case SeriesRow::Stopped:
        return labelText({"MESS_HIST_ARRETE", "Arrêté"});
    case SeriesRow::Waiting:
        break;
    }
    return labelText({"MESS_SERIE_NON_FAIT", "Non commencé"});
}

QTableWidgetItem *cell(const QString &text, const QString &toolTip)
{
    auto item = new QTableWidgetItem(text);
    item->setFlags(Qt::ItemIsEnabled | Qt::ItemIsSelectable);
    item->setToolTip(toolTip);
    return item;
}

} // namespace

SeriesResultDialog::SeriesResultDialog(const QVector<SeriesRow> &rows, QWidget *parent)
    : QDialog(parent)
{
    setWindowFlag(Qt::WindowContextHelpButtonHint, false);
    setWindowTitle(labelText({"MESS_SERIE_TITRE", "Fin de la série"}));
    auto table = new QTableWidget(static_cast<int>(rows.size()), 3, this);
    table->setHorizontalHeaderLabels({labelText({"MESS_HIST_MNT", "MNT"}),
                                      labelText({"MESS_HIST_RES", "Résultat"}),
                                      labelText({"MESS_SERIE_PRODUIT", "Produit ou raison"})});
    table->setAccessibleName(windowTitle());
    table->verticalHeader()->hide();
    table->horizontalHeader()->setStretchLastSection(true);
    table->setSelectionBehavior(QAbstractItemView::SelectRows);
    table->setWordWrap(false);
    for (int index = 0; index < rows.size(); ++index) {
        const SeriesRow &row = rows.at(index);
        const bool hasProduct = row.end == SeriesRow::Done || row.end == SeriesRow::Kept;
        const QString product = QDir::toNativeSeparators(row.product);
        const QString text = hasProduct ? QFileInfo(row.product).fileName() : QString();
        const QString reason = row.text.section(QLatin1Char('\n'), 0, 0);
        table->setItem(index, 0, cell(QFileInfo(row.dem).fileName(), QDir::toNativeSeparators(row.dem)));
        table->setItem(index, 1, cell(endText(row.end), QString()));
        table->setItem(index, 2,
                       cell(QStringList{text, reason}.join(QLatin1String("  ")).trimmed(),
                            (hasProduct ? product + QLatin1Char('\n') : QString()) + row.text));
    }
    table->resizeColumnsToContents();

    auto buttons = new QDialogButtonBox(this);
    auto close = buttons->addButton(labelText({"MESS_FERMER", "Fermer"}), QDialogButtonBox::AcceptRole);
    close->setDefault(true);
    connect(buttons, &QDialogButtonBox::accepted, this, &QDialog::accept);
    auto layout = new QVBoxLayout(this);
    layout->addWidget(new QLabel(seriesText(rows), this));
    layout->addWidget(table);
    layout->addWidget(buttons);
    close->setFocus();
    resize(fontMetrics().averageCharWidth() * 90, fontMetrics().height() * 20);
}

QString seriesText(const QVector<SeriesRow> &rows)
{
    const auto done = std::count_if(rows.begin(), rows.end(),
                                    [](const SeriesRow &row) { return row.end == SeriesRow::Done; });
    return labelText({"MESS_SERIE_BILAN", "Produits calculés : %1 sur %2."})
        .arg(QString::number(done), QString::number(rows.size()));
}
