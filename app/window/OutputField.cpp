#include "app/window/OutputField.h"

#include "app/window/dialogrules.h"

#include <QLineEdit>

OutputFile::OutputFile(QLineEdit *name)
    : m_name(name)
{
    // An emptied field asks for a proposal again.
    connect(m_name, &QLineEdit::textEdited, this, [this](const QString &text) { m_isUsers = !text.isEmpty(); });
}

QString OutputFile::name() const
{
    return m_name->text();
}

void OutputFile::propose(const QString &input, const QString &suffix, const QStringList &extensions)
{
    static const QStringList productExtensions{QStringLiteral("tif"), QStringLiteral("tiff"),
                                               QStringLiteral("shp")};
    if (m_isUsers)
        m_name->setText(adaptExtension(name(), extensions, productExtensions));
    else if (!input.isEmpty())
        m_name->setText(proposeOutputName(input, suffix, extensions.value(0)));
}

void OutputFile::changeExtension(const QStringList &before, const QStringList &extensions)
{
    m_name->setText(adaptExtension(name(), extensions, before));
}

void OutputFile::choose(const QString &name)
{
    m_isUsers = true;
    m_name->setText(name);
}

void OutputFile::restore(const QString &name, const QString &input, const QString &suffix)
{
    m_isUsers = !isProposedName(name, input, suffix);
    m_name->setText(name);
}
