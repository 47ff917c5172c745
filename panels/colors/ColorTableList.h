#pragma once

#include "colortable/colortablefile.h"
#include "panels/controls/ColorRampComboBox.h"
#include "panels/options/fragments.h"

class WorkFolder;

/// The tables that the colour relief panel offers: those of the library, the user's own, added files, and
/// tables that recipes held by value. The combo box shows them; this class knows their files and their names in
/// recipes.
class ColorTableList
{
public:
    /// Copies for the tool, and tables that recipes held by value, are written into the work folder. Both
    /// objects outlive this one.
    ColorTableList(ColorRampComboBox &combo, WorkFolder &workFolder);

    /// Replaces the listed tables by those of the program's and of the user's folder (which may be empty) and
    /// makes the default table the current one where it is among them.
    void load(const QString &folder, const QString &ownFolder);

    /// The row of the table that the options name or hold; -1 where there is none.
    int rowOf(const ColorReliefOptions &options) const;

    /// Adds the table that the options name or hold. Returns its row; -1 where there is no such table.
    int add(const ColorReliefOptions &options);

    /// Adds a file that was read, or shows what it holds now. Returns the row; -1 for a table without colours,
    /// or after a message box about a file that cannot be written.
    int add(const QString &file, const ColorTableReading &reading);

    /// Name of a table in recipes: that in the library or of a table by value, or else the path.
    QString settingsName(const QString &file) const;

    /// Reads the current table's file again: another program may have edited it. Returns why it is not valid
    /// any more, or cannot be spread where it is to be; empty otherwise.
    QString refreshCurrent(bool spread);

    /// Leaves out the tables of the user's folder that are gone, and adds those that are new.
    void refreshOwn(const QString &ownFolder);

    const QString &libraryFolder() const { return m_libraryFolder; }

private:
    ColorRampComboBox &m_combo;
    WorkFolder &m_workFolder;
    QString m_libraryFolder;
    QStringList m_ownTables; ///< files of the work folder with the tables that recipes held by value
};

/// Returns why the reading of a file gave no usable colour table, or the path of the file if the reading holds
/// no reason. Returns an empty text for a usable table.
QString tableProblem(const QString &file, const ColorTableReading &reading);

/// Writes a file of the program's own. Returns false after a message box with the reason.
bool writeOwnTable(QWidget *parent, const QString &path, const QByteArray &text);
