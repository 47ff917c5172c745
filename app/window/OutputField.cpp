#include "app/window/OutputField.h"

#include "app/process/productname.h"
#include "app/run/outputname.h"
#include "app/window/launch/launchquestions.h"
#include "app/window/outputFileAdvancedOptionsDialog.h"
#include "dataset/QuvoFilerDialog.h"
#include "dataset/formatfilters.h"

#include <QLineEdit>

namespace
{

QString suffixOf(Process process)
{
    return QString::fromLatin1(processRow(process).suffix);
}

} // namespace

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

void OutputField::propose(const QString &input, Process process)
{
    static const QStringList productExtensions{QStringLiteral("tif"), QStringLiteral("tiff"),
                                               QStringLiteral("shp")};
    if (m_writtenByUser)
        m_name->setText(adaptExtension(name(), extensions(process), productExtensions));
    else if (!input.isEmpty())
        m_name->setText(proposeOutputName(input, suffixOf(process), extensions(process).value(0)));
}

void OutputField::restore(const QString &name, const QString &input, Process process)
{
    m_writtenByUser = !isProposedName(name, input, suffixOf(process));
    m_name->setText(name);
}

void OutputField::select(const QString &input, Process process, const QStringList &inputFiles)
{
    QWidget *window = m_name->window();
    const QString title = labelText({"MESS_CHOISIR_SORTIE", "Choisir un fichier de sortie"});
    const QString filter = QStringLiteral("%1 (*.%2)").arg(title, extensions(process).value(0));
    const QString path = QuvoFilerDialog::getSelection(window, QuvoFilerDialog::SaveFile, title,
                                                       besideInput(name(), input), filter);
    if (path.isEmpty())
        return;
    const QString problem = checkOutputName(path, extensions(process), inputFiles).problem;
    if (!problem.isEmpty()) {
        warnAboutOutput(path, problem, window);
        return;
    }
    m_writtenByUser = true;
    m_name->setText(path);
}

OutputOptions OutputField::options(Process process) const
{
    const bool isVector = processRow(process).product == ProductKind::Vector;
    return supportedOptions(isVector ? m_vectorOptions : m_rasterOptions, process);
}

void OutputField::setOptions(Process process, const OutputOptions &options)
{
    ownOptions(process) = options;
}

bool OutputField::editOptions(Process process, const QString &metricCrs)
{
    outputFileAdvancedOptionsDialog dialog(process, ownOptions(process), metricCrs, m_name->window());
    if (dialog.exec() != QDialog::Accepted)
        return false;
    const QStringList before = extensions(process);
    setOptions(process, dialog.options());
    m_name->setText(adaptExtension(name(), extensions(process), before));
    return true;
}

OutputOptions &OutputField::ownOptions(Process process)
{
    return processRow(process).product == ProductKind::Vector ? m_vectorOptions : m_rasterOptions;
}

QStringList OutputField::extensions(Process process) const
{
    return formatExtensions(outputFormat(options(process), processRow(process).product));
}
