#pragma once

#include <QString>

class QPushButton;
class QWidget;

/// The colour of a zone: a button that shows it, and one that brings the standard colour back.
class ZoneColor
{
public:
    /// The buttons outlive the colour. standard: "#rrggbb".
    ZoneColor(QPushButton *button, QPushButton *reset, const QString &standard);

    QString name() const { return m_name; } ///< "#rrggbb"

    /// Asks for another one; false when none was chosen.
    bool choose(QWidget *parent, const QString &title);

    void reset();

    /// Shows that colour, a name that QColor knows.
    void set(const QString &name);

private:
    void show(const QString &name);

    QPushButton *m_button;
    QPushButton *m_reset;
    QString m_standard;
    QString m_name;
};
