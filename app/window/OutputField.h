#pragma once

#include <QObject>
#include <QString>
#include <QStringList>

class QLineEdit;

/// The output name of the main dialog. It is proposed from input and process until the user writes a name.
class OutputField : public QObject
{
    Q_OBJECT

public:
    /// The dialog owns the line edit, which outlives this object.
    explicit OutputField(QLineEdit *name);

    /// The name that the field shows, relative or absolute; may be empty.
    QString name() const;

    /// Proposes a name for the product of an input, with the suffix of the process and the first of the
    /// extensions of its format. Does nothing where `input` is empty. Of a name that the user wrote only the
    /// extension of another kind of product changes.
    void propose(const QString &input, const QString &suffix, const QStringList &extensions);

    /// The format changed: replaces an extension of the format before by the first of the new extensions.
    void changeExtension(const QStringList &before, const QStringList &extensions);

    /// Shows the name from settings that were opened. It counts as proposed if it has the form of a proposal
    /// for that input, and as written by the user otherwise.
    void restore(const QString &name, const QString &input, const QString &suffix);

    /// Shows the name that the user selects in a file dialog, as a file with the first of the extensions. A
    /// name that no run can write, such as one of the input's files, is not shown; a warning says why. A
    /// relative name stands for a file in the input's folder, as in a launch.
    void select(const QString &input, const QStringList &extensions, const QStringList &inputFiles);

private:
    QLineEdit *m_name;
    bool m_writtenByUser = false;
};
