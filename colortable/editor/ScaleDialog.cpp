#include "colortable/editor/ScaleDialog.h"

#include "messages/NumberBox.h"
#include "messages/label.h"

#include <QDialogButtonBox>
#include <QFormLayout>
#include <QLabel>
#include <QPushButton>

ScaleDialog::ScaleDialog(QWidget *parent)
    : QDialog(parent)
    , m_factor(new NumberBox(this))
    , m_shift(new NumberBox(this))
{
    setWindowTitle(labelText({"MESS_TCE_ECHELLE", "Mettre à l'échelle et décaler"}));
    auto *form = new QFormLayout(this);
    auto *hint =
        new QLabel(labelText({"MESS_TCE_ECHELLE_AIDE",
                              "Chaque valeur est multipliée, puis augmentée. De pieds en mètres : 0,3048."}),
                   this);
    hint->setWordWrap(true);
    form->addRow(hint);
    m_factor->setRange(0.0001, 10000.0);
    m_factor->setDecimals(4);
    m_factor->setValue(1.0);
    m_shift->setRange(-100000.0, 100000.0);
    m_shift->setDecimals(1);
    form->addRow(withColon(labelText({"MESS_TCE_FACTEUR", "Multiplier par"})), m_factor);
    form->addRow(withColon(labelText({"MESS_TCE_DECALAGE", "Ajouter"})), m_shift);
    auto *buttons = new QDialogButtonBox(this);
    buttons->addButton(labelText({"MESS_APPLIQUER", "Appliquer"}), QDialogButtonBox::AcceptRole);
    buttons->addButton(labelText({"MESS_ANNULER", "Annuler"}), QDialogButtonBox::RejectRole);
    form->addRow(buttons);
    connect(buttons, &QDialogButtonBox::accepted, this, &QDialog::accept);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
}

double ScaleDialog::factor() const
{
    return m_factor->value();
}

double ScaleDialog::shift() const
{
    return m_shift->value();
}
