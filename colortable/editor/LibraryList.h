#pragma once

#include <QListWidget>

/// The tables of the library, each with its ramp. A context menu copies, renames and deletes; F2 and Delete do
/// the latter two for the user's own tables.
class LibraryList : public QListWidget
{
    Q_OBJECT

public:
    /// Lists the program's and the user's folder of tables (colortable/editor/tablelibrary.h).
    LibraryList(const QString &folder, const QString &ownFolder, QWidget *parent = nullptr);

    /// Reads the folders again and shows the table of that file as the current one, if it is listed.
    void refresh(const QString &currentFile);

signals:
    /// The user wants to edit a table.
    void chosen(const QString &file);
    void renamed(const QString &from, const QString &to);

protected:
    void contextMenuEvent(QContextMenuEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;

private:
    QString fileOf(const QListWidgetItem *item) const;
    bool isOwn(const QListWidgetItem *item) const;
    void copyCurrent();
    void renameCurrent();
    void deleteCurrent();

    QString m_folder;
    QString m_ownFolder;
};
