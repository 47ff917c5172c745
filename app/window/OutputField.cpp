#include "app/window/OutputField.h"

#include "app/process/productname.h"
#include "app/run/outputname.h"
#include "app/window/launch/launchquestions.h"
#include "dataset/QuvoFilerDialog.h"

#include <QLineEdit>

OutputField::OutputField(QLineEdit *name)
    : m_name(name)
{
    // When the user empties the field, names are proposed again.
    connect(m_name, &QLineEdit::textEdited, this,
            [this](const QString &text) { m_writtenByUser = !text.isEmpty(); });
}

QString OutputField::name() const
{
    return m_name->text();
}

void OutputField::propose(const QString &input, const QString &suffix, const QStringList &extensions)
{
    static const QStringList productExtensions{QStringLiteral("tif"), QStringLiteral("tiff"),
                                               QStringLiteral("shp")};
    if (m_writtenByUser)
        m_name->setText(adaptExtension(name(), extensions, productExtensions));
    else if (!input.isEmpty())
        m_name->setText(proposeOutputName(input, suffix, extensions.value(0)));
}

void OutputField::changeExtension(const QStringList &before, const QStringList &extensions)
{
    m_name->setText(adaptExtension(name(), extensions, before));
}

void OutputField::select(const QString &input, const QStringList &extensions, const QStringList &inputFiles)
{
    QWidget *window = m_name->window();
    const QString title = labelText({"MESS_CHOISIR_SORTIE", "Choisir un fichier de sortie"});
    const QString filter = QStringLiteral("%1 (*.%2)").arg(title, extensions.value(0));
    const QString path = QuvoFilerDialog::getSelection(window, QuvoFilerDialog::SaveFile, title,
                                                       besideInput(name(), input), filter);
    if (path.isEmpty())
        return;
    const QString problem = checkOutputName(path, extensions, inputFiles).problem;
    if (!problem.isEmpty()) {
        warnAboutOutput(path, problem, window);
        return;
    }
    m_writtenByUser = true;
    m_name->setText(path);
}

void OutputField::restore(const QString &name, const QString &input, const QString &suffix)
{
    m_writtenByUser = !isProposedName(name, input, suffix);
    m_name->setText(name);
}
