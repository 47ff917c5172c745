#include "panels/controls/ZoneColor.h"

#include <QColorDialog>
#include <QPushButton>
#include <QVariant>

ZoneColor::ZoneColor(QPushButton *button, QPushButton *reset, const QString &standard)
    : m_button(button)
    , m_reset(reset)
    , m_standard(standard)
{
    m_button->setProperty("swatch", true); // the application's style sheet gives it a frame
    show(standard);
}

bool ZoneColor::choose(QWidget *parent, const QString &title)
{
    const QColor chosen = QColorDialog::getColor(QColor(m_name), parent, title);
    if (!chosen.isValid())
        return false;
    show(chosen.name());
    m_reset->setEnabled(true);
    return true;
}

void ZoneColor::reset()
{
    show(m_standard);
    m_reset->setEnabled(false);
}

void ZoneColor::set(const QString &name)
{
    show(QColor(name).name());
    m_reset->setEnabled(m_name != m_standard);
}

void ZoneColor::show(const QString &name)
{
    m_name = name;
    const QColor parts(name);
    m_button->setStyleSheet(
        QStringLiteral("background-color: rgb(%1, %2, %3);")
            .arg(QString::number(parts.red()), QString::number(parts.green()), QString::number(parts.blue())));
}
