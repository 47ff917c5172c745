#pragma once

#include <QObject>
#include <QString>

#include <functional>

class QAbstractButton;
class QCheckBox;
class QLineEdit;

/// The name of a file that is written besides the product: a box that asks for the file, a field with its name,
/// and a button that chooses it in a dialog. The name follows the proposals until the user writes another one.
class SideFileField : public QObject
{
    Q_OBJECT

public:
    /// Shows the file dialog, which starts at a path, and returns the chosen path; empty: none was chosen.
    using Chooser = std::function<QString(const QString &start)>;

    /// The widgets outlive this object.
    SideFileField(QCheckBox *box, QLineEdit *name, QAbstractButton *browse, Chooser choose);

    /// The name in the field; empty where the file is not wanted.
    QString name() const;

    /// Shows a name, and that the file is wanted; for an empty name the proposal, and that it is not.
    /// changed() follows where that differs from what is shown.
    void set(const QString &name);

    /// Proposes a name. changed() follows where a wanted file gets it.
    void propose(const QString &name);

signals:
    /// name() changed.
    void changed();

private:
    void update();
    void choose();

    QCheckBox *m_box;
    QLineEdit *m_name;
    QAbstractButton *m_browse;
    Chooser m_choose;
    QString m_proposal;
    QString m_reported; ///< name() at the last changed()
};
