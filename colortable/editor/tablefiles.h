#pragma once

#include "colortable/colortablefile.h"
#include "colortable/editor/editedtable.h"
#include "colortable/formats/tableexport.h"
#include "colortable/legend/legend.h"

#include <QString>

#include <optional>

class QPushButton;
class QWidget;

// The editor's dealings with files, each with the questions and messages that belong to it.

/// Lets the user choose a table file; empty when the user cancels.
QString chooseTableToOpen(QWidget *parent, const QString &folder);

/// Lets the user choose where to save a table, and asks before a file is replaced. Proposes the name of `file`
/// in the user's folder, which is created.
QString chooseTableToSave(QWidget *parent, const QString &ownFolder, const QString &file);

/// The filter of file dialogs that open tables: the program's own format, and all formats that can be read.
QString readableTablesFilter();

/// Asks whether to load a table with mixed units or invalid values; true without a question for any other
/// table.
bool mayLoadTable(QWidget *parent, const ColorTableReading &reading);

/// A table for the editor.
struct LoadedTable
{
    QList<QuvoColorDef> entries; ///< all of them elevations, or all of them percentages
    QStringList notes;           ///< sentences about what the reading approximated
};

/// Reads a table for the editor: asks about invalid values and mixed units, of which the first one's kind is
/// kept, and reports a file without colours. Nothing: there is no table, or the user does not want it.
std::optional<LoadedTable> acceptedTable(QWidget *parent, const QString &file);

/// A format of another program that can be written.
struct ExportKind
{
    TableFormat format;
    QString name;     ///< name of the other program or of its format
    QString ending;   ///< ending of the format's file names, with the dot
    QString proposal; ///< what follows the table's name in the proposed file name
};

const QVector<ExportKind> &exportKinds();

/// Lets the user choose a file for a table in another program's format and writes it. If the format cannot
/// hold the whole table, the user is asked before whether to go on.
void exportTable(QWidget *parent, const QList<QuvoColorDef> &entries, const ExportKind &kind,
                 const QString &tableFile);

/// Writes a table in the editor's layout; a message reports that this failed.
bool writeTable(QWidget *parent, const QString &file, const QList<QuvoColorDef> &entries);

/// Lets the user choose a file for a legend (PNG, SVG or PDF, by its ending) and writes it; a message box
/// reports a failure. Proposes the name of the table's file.
void saveLegendPicture(QWidget *parent, const Legend &legend, const QString &tableFile);

/// Sentences about a table that do not hinder anybody: what the tool does where it has no colour for voids.
QStringList tableNotes(const EditedTable &table);

/// Shows a colour on a button; no colour: an empty button.
void showSwatch(QPushButton &button, const std::optional<QColor> &color);
