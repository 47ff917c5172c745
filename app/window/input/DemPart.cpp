#include "app/window/input/DemPart.h"

#include "dataset/extraction/ExtractionDialog.h"
#include "messages/label.h"

#include <QToolButton>

DemPart::DemPart(QToolButton &button)
    : m_button(button)
{
    connect(&m_button, &QToolButton::clicked, this, &DemPart::choose);
    applyTexts();
}

void DemPart::setPart(const QRect &part)
{
    if (part == m_part)
        return;
    m_part = part;
    applyTexts();
    emit changed();
}

void DemPart::setDem(const DemInfo &dem)
{
    const bool isAnother = dem.path != m_dem.path;
    m_dem = dem;
    m_button.setVisible(!dem.path.isEmpty());
    if (isAnother)
        setPart(QRect());
}

void DemPart::choose()
{
    ExtractionDialog dialog(m_dem.path, m_dem.band,
                            m_part.isNull() ? std::nullopt : std::optional<QRect>(m_part), m_button.window());
    if (dialog.exec() == QDialog::Accepted)
        setPart(dialog.cells().value_or(QRect()));
}

void DemPart::applyTexts()
{
    m_button.setText(m_part.isNull()
                         ? labelText({"MESS_PARTIE_TOUT", "Tout le MNT…"})
                         : labelText({"MESS_PARTIE_PARTIE", "Partie : %1 × %2…"})
                               .arg(QString::number(m_part.width()), QString::number(m_part.height())));
    m_button.setToolTip(labelText({"MESS_PARTIE_EXPL", "Choisir la partie du MNT à traiter"}));
}
