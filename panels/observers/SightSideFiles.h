#pragma once

#include "panels/controls/SideFileField.h"
#include "panels/options/fragments.h"

#include <QObject>

struct Label;

class QLabel;

/// The choice of the files that an intervisibility run writes besides its product: the observers' horizons,
/// with their step in degrees, and the areas that the observers see.
class SightSideFiles : public QObject
{
    Q_OBJECT

public:
    /// The widgets of one file.
    struct Row
    {
        QCheckBox *box;
        QLineEdit *name;
        QAbstractButton *browse;
    };

    /// The widgets outlive this object.
    SightSideFiles(const Row &skyline, const Row &statistics, QLabel *stepLabel, QLineEdit *step);

    /// Writes the names of the files and the step into the options. Names are absolute paths once the product
    /// has one; an empty name is a file that is not wanted.
    void addTo(IntervisibilityOptions &options) const;
    void show(const IntervisibilityOptions &options);
    /// Proposes names that follow the product's path; empty: the product has no name yet.
    void setProduct(const QString &path);
    /// Shows the texts in the current language.
    void retranslate();

signals:
    /// addTo() writes something else than before.
    void changed();

private:
    QString chosenFile(const QString &start, const Label &title, const QStringList &extensions) const;
    QString besideProduct(const QString &name) const;
    void updateStep();

    QCheckBox *m_skylineBox;
    QCheckBox *m_statisticsBox;
    QLabel *m_stepLabel;
    QLineEdit *m_step;
    SideFileField m_skyline;
    SideFileField m_statistics;
    QString m_product; ///< path of the product; empty: it has no name yet
};
