#pragma once

#include "colortable/editor/editedtable.h"
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

/// Reads a table for the editor: asks about invalid values and mixed units, of which the first one's kind is
/// kept, and reports a file without colours. Nothing: there is no table, or the user does not want it.
std::optional<QList<QuvoColorDef>> acceptedTable(QWidget *parent, const QString &file);

/// Writes a table in the editor's layout; a message reports that this failed.
bool writeTable(QWidget *parent, const QString &file, const QList<QuvoColorDef> &entries);

/// Lets the user choose a file for a legend (PNG, SVG or PDF, by its ending) and writes it; a message reports
/// that this failed. Proposes the name of the table's file.
void saveLegendPicture(QWidget *parent, const Legend &legend, const QString &tableFile);

/// Sentences about a table that do not hinder anybody: what the tool does where it has no colour for voids.
QString tableNotes(const EditedTable &table);

/// Shows a colour on a button; no colour: an empty button.
void showSwatch(QPushButton &button, const std::optional<QColor> &color);
