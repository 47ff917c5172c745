#pragma once

#include <QObject>
#include <QString>
#include <QStringList>

class QLineEdit;

/// The output name of the main dialog: a proposal that follows input and process, until the user writes another
/// one.
class OutputField : public QObject
{
    Q_OBJECT

public:
    /// The line edit belongs to the dialog.
    explicit OutputField(QLineEdit *name);

    /// The name as it stands; empty for none.
    QString name() const;

    /// Proposes a name for the product of an input (empty: none) whose suffix and extensions the process gives.
    /// Of a name that the user wrote only a wrong extension changes.
    void propose(const QString &input, const QString &suffix, const QStringList &extensions);

    /// The format is another one now: an extension of the one before makes place for the first of the new ones.
    void changeExtension(const QStringList &before, const QStringList &extensions);

    /// Takes a name of settings that were opened; one as it would have been proposed for that input stays a
    /// proposal.
    void restore(const QString &name, const QString &input, const QString &suffix);

    /// Takes a name that the user chose.
    void choose(const QString &name);

private:
    QLineEdit *m_name;
    bool m_isUsers = false; ///< the user wrote the name
};
