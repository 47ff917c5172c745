#include "panels/observers/AbsoluteHeightEditor.h"

#include "panels/controls/numberfield.h"
#include "panels/options/observerpoints.h"
#include "ui_AbsoluteHeightEditor.h"

#include <QPushButton>

AbsoluteHeightEditor::AbsoluteHeightEditor(QWidget *parent)
    : QDialog(parent)
    , m_form(std::make_unique<Ui::AbsoluteHeightEditor>())
{
    m_form->setupUi(this);
    makeNumberField(m_form->m_pLEAbsHeight, -highestAltitude, highestAltitude);
    const auto enableOk = [this] {
        m_form->m_pButtonBox->button(QDialogButtonBox::Ok)
            ->setEnabled(m_form->m_pLEAbsHeight->hasAcceptableInput());
    };
    connect(m_form->m_pLEAbsHeight, &QLineEdit::textChanged, this, enableOk);
    connect(m_form->m_pButtonBox, &QDialogButtonBox::accepted, this, &QDialog::accept);
    connect(m_form->m_pButtonBox, &QDialogButtonBox::rejected, this, &QDialog::reject);
    enableOk();
}

AbsoluteHeightEditor::~AbsoluteHeightEditor() = default;

double AbsoluteHeightEditor::absoluteHeight() const
{
    return m_form->m_pLEAbsHeight->text().toDouble();
}
