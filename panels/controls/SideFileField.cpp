#include "panels/controls/SideFileField.h"

#include <QCheckBox>
#include <QLineEdit>

#include <utility>

SideFileField::SideFileField(QCheckBox *box, QLineEdit *name, QAbstractButton *browse, Chooser choose)
    : m_box(box)
    , m_name(name)
    , m_browse(browse)
    , m_choose(std::move(choose))
{
    connect(m_box, &QCheckBox::toggled, this, &SideFileField::update);
    connect(m_name, &QLineEdit::textChanged, this, &SideFileField::update);
    connect(m_name, &QLineEdit::editingFinished, this, [this] {
        if (m_name->text().isEmpty()) // a name that was deleted is proposed again
            m_name->setText(m_proposal);
    });
    connect(m_browse, &QAbstractButton::clicked, this, &SideFileField::choose);
    update();
}

QString SideFileField::name() const
{
    return m_box->isChecked() ? m_name->text() : QString();
}

void SideFileField::set(const QString &name)
{
    m_name->setText(name.isEmpty() ? m_proposal : name);
    m_box->setChecked(!name.isEmpty());
}

void SideFileField::propose(const QString &name)
{
    const QString before = std::exchange(m_proposal, name);
    if (m_name->text().isEmpty() || m_name->text() == before)
        m_name->setText(name);
}

void SideFileField::choose()
{
    const QString chosen = m_choose(m_name->text());
    if (!chosen.isEmpty())
        m_name->setText(chosen);
}

void SideFileField::update()
{
    m_name->setEnabled(m_box->isChecked());
    m_browse->setEnabled(m_box->isChecked());
    if (std::exchange(m_reported, name()) != name())
        emit changed();
}
