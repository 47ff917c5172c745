#pragma once

#include <QString>

class QPushButton;
class QWidget;

/// The colour of a zone: one button shows it, another one resets it to the standard colour.
class ZoneColor
{
public:
    /// Shows the standard colour, a text "#rrggbb". Both buttons outlive this object.
    ZoneColor(QPushButton *button, QPushButton *reset, const QString &standard);

    QString name() const { return m_name; } ///< "#rrggbb"

    /// Opens a colour dialog and enables the reset button. Returns false when the user chose no colour.
    bool choose(QWidget *parent, const QString &title);

    /// Shows the standard colour and disables the reset button.
    void reset();

    /// Shows a colour by any name that QColor knows. The reset button is enabled unless it is the standard
    /// colour.
    void set(const QString &name);

private:
    void show(const QString &name);

    QPushButton *m_button;
    QPushButton *m_reset;
    QString m_standard;
    QString m_name;
};
