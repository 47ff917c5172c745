#include "colortable/editor/LibraryList.h"

#include "colortable/colortablefile.h"
#include "colortable/editor/tablelibrary.h"
#include "colortable/editor/tablepainting.h"
#include "messages/Prompt.h"
#include "messages/label.h"

#include <QContextMenuEvent>
#include <QInputDialog>
#include <QKeyEvent>
#include <QMenu>
#include <QPainter>

namespace
{

enum Role
{
    FileRole = Qt::UserRole,
    OwnRole,
    EntriesRole
};

} // namespace

LibraryList::LibraryList(const QString &folder, const QString &ownFolder, QWidget *parent)
    : QListWidget(parent)
    , m_folder(folder)
    , m_ownFolder(ownFolder)
{
    setItemDelegate(new TableRowDelegate(EntriesRole, 10, this));
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setMinimumWidth(fontMetrics().averageCharWidth() * 20);
    connect(this, &QListWidget::itemActivated, this,
            [this](const QListWidgetItem *item) { emit chosen(fileOf(item)); });
    connect(this, &QListWidget::itemClicked, this,
            [this](const QListWidgetItem *item) { emit chosen(fileOf(item)); });
}

QString LibraryList::fileOf(const QListWidgetItem *item) const
{
    return item ? item->data(FileRole).toString() : QString();
}

bool LibraryList::isOwn(const QListWidgetItem *item) const
{
    return item && item->data(OwnRole).toBool();
}

void LibraryList::refresh(const QString &currentFile)
{
    clear();
    for (const LibraryTable &table : libraryTables(m_folder, m_ownFolder)) {
        auto *item = new QListWidgetItem(table.name, this);
        item->setData(FileRole, table.file);
        item->setData(OwnRole, table.own);
        item->setData(EntriesRole, QVariant::fromValue(readColorTable(table.file).entries));
        item->setToolTip(table.file);
        if (table.file == currentFile)
            setCurrentItem(item);
    }
}

void LibraryList::copyCurrent()
{
    QString problem;
    const QString copy = copyTable(fileOf(currentItem()), m_ownFolder, problem);
    if (copy.isEmpty()) {
        Prompt::warning(this, problem);
        return;
    }
    refresh(copy);
    emit chosen(copy);
}

void LibraryList::renameCurrent()
{
    const QString file = fileOf(currentItem());
    bool accepted = false;
    const QString name = QInputDialog::getText(this, labelText({"MESS_TCE_RENOMMER", "Renommer"}),
                                               labelText({"MESS_TCE_NOUVEAU_NOM", "Nouveau nom de la table"}),
                                               QLineEdit::Normal, tableName(file), &accepted);
    if (!accepted)
        return;
    QString problem;
    const QString renamedFile = renameTable(file, name, problem);
    if (renamedFile.isEmpty()) {
        Prompt::warning(this, problem);
        return;
    }
    refresh(renamedFile);
    emit renamed(file, renamedFile);
}

void LibraryList::deleteCurrent()
{
    const QString file = fileOf(currentItem());
    if (!Prompt::question(this,
                          labelText({"MESS_TCE_SUPPR_SUR", "Supprimer définitivement la table « %1 » ?"})
                              .arg(tableName(file))))
        return;
    const QString problem = deleteTable(file);
    if (!problem.isEmpty())
        Prompt::warning(this, problem);
    refresh({});
}

void LibraryList::contextMenuEvent(QContextMenuEvent *event)
{
    if (!currentItem())
        return;
    QMenu menu(this);
    menu.addAction(labelText({"MESS_TCE_COPIER", "Copier dans mes tables"}), this, &LibraryList::copyCurrent);
    QAction *rename = menu.addAction(labelText({"MESS_TCE_RENOMMER", "Renommer"}) + QStringLiteral("…"), this,
                                     &LibraryList::renameCurrent);
    QAction *remove = menu.addAction(labelText({"MESS_TCE_SUPPRIMER", "Supprimer"}) + QStringLiteral("…"), this,
                                     &LibraryList::deleteCurrent);
    rename->setEnabled(isOwn(currentItem()));
    remove->setEnabled(isOwn(currentItem()));
    menu.exec(event->globalPos());
}

void LibraryList::keyPressEvent(QKeyEvent *event)
{
    if (event->key() == Qt::Key_F2 && isOwn(currentItem()))
        renameCurrent();
    else if (event->key() == Qt::Key_Delete && isOwn(currentItem()))
        deleteCurrent();
    else
        QListWidget::keyPressEvent(event);
}
