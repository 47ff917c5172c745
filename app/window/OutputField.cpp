#include "app/window/OutputField.h"

#include "app/process/productname.h"

#include <QLineEdit>

OutputField::OutputField(QLineEdit *name)
    : m_name(name)
{
    // An emptied field asks for a proposal again.
    connect(m_name, &QLineEdit::textEdited, this, [this](const QString &text) { m_isUsers = !text.isEmpty(); });
}

QString OutputField::name() const
{
    return m_name->text();
}

void OutputField::propose(const QString &input, const QString &suffix, const QStringList &extensions)
{
    static const QStringList productExtensions{QStringLiteral("tif"), QStringLiteral("tiff"),
                                               QStringLiteral("shp")};
    if (m_isUsers)
        m_name->setText(adaptExtension(name(), extensions, productExtensions));
    else if (!input.isEmpty())
        m_name->setText(proposeOutputName(input, suffix, extensions.value(0)));
}

void OutputField::changeExtension(const QStringList &before, const QStringList &extensions)
{
    m_name->setText(adaptExtension(name(), extensions, before));
}

void OutputField::choose(const QString &name)
{
    m_isUsers = true;
    m_name->setText(name);
}

void OutputField::restore(const QString &name, const QString &input, const QString &suffix)
{
    m_isUsers = !isProposedName(name, input, suffix);
    m_name->setText(name);
}
