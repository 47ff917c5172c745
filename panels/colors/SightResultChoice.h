#pragma once

#include "panels/options/fragments.h"

#include <QObject>

class ColorRampComboBox;
class QComboBox;
class QLabel;

/// The choice of what an intervisibility computes, and of the table of the library that colours its numbers on
/// the map.
class SightResultChoice : public QObject
{
    Q_OBJECT

public:
    /// `note` says what the chosen numbers are and which options they do without; it is hidden for a picture.
    /// The widgets outlive this object.
    SightResultChoice(QComboBox *results, ColorRampComboBox *ramps, QLabel *note);

    SightResult result() const;

    /// Name of the table in the library.
    const QString &ramp() const { return m_ramp; }

    /// Shows both. changed() follows where the result is another one.
    void set(SightResult result, const QString &ramp);

    /// Sets the texts anew, in the language in use.
    void retranslate();

signals:
    /// The user chose another result or ramp.
    void changed();

private:
    void fillRamps();
    void showNote();

    QComboBox *m_results;
    ColorRampComboBox *m_ramps;
    QLabel *m_note;
    QString m_ramp; ///< kept where the library cannot be read
};
