#pragma once

#include "app/process/outputoptions.h"
#include "app/process/processes.h"

#include <QObject>
#include <QString>
#include <QStringList>

class QLineEdit;

/// The output of the main dialog: its name, which is proposed from input and process until the user writes one,
/// and how it is written. All raster products share their options, and all vector products.
class OutputField : public QObject
{
    Q_OBJECT

public:
    /// The dialog owns the line edit, which outlives this object.
    explicit OutputField(QLineEdit *name);

    /// The name that the field shows, relative or absolute; may be empty.
    QString name() const;

    /// Proposes a name for the product that a process makes of an input. Does nothing where `input` is empty. A
    /// name that the user wrote stays; only its extension follows the format, if it is one of a raster or
    /// vector product.
    void propose(const QString &input, Process process);

    /// Shows the name from settings that were opened. It counts as proposed if it has the form of a proposal
    /// for that input, and as written by the user otherwise.
    void restore(const QString &name, const QString &input, Process process);

    /// Shows the name that the user selects in a file dialog, as a file of the format. A name that no run can
    /// write, such as one of the input's files, is not shown; a warning says why. A relative name stands for a
    /// file in the input's folder, as in a launch.
    void select(const QString &input, Process process, const QStringList &inputFiles);

    /// The options of the product, without those that the process or the format does not have.
    OutputOptions options(Process process) const;
    void setOptions(Process process, const OutputOptions &options);

    /// Lets the user change the options of the product; the name follows the format. `metricCrs`: name of the
    /// CRS in metres that suits the DEM; empty: there is none. Returns whether the user accepted.
    bool editOptions(Process process, const QString &metricCrs);

private:
    OutputOptions &ownOptions(Process process);
    QStringList extensions(Process process) const;

    QLineEdit *m_name;
    bool m_writtenByUser = false;
    OutputOptions m_rasterOptions;
    OutputOptions m_vectorOptions;
};
