#include "app/process/productway.h"

#include "runner/quoting.h"

#include <QFile>

void ProductWay::write(const QString &path, const QByteArray &text)
{
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly) || file.write(text) != text.size() || !file.flush())
        fail(labelText({"MESS_VUE_ECRITURE", "Le fichier « %1 » n'a pas pu être écrit."}).arg(path));
}

void ProductWay::fail(const QString &problem)
{
    if (steps.problem.isEmpty())
        steps.problem = problem;
}

void ProductWay::add(const QString &command, const QString &title, double share,
                     const QStringList &intermediates)
{
    steps.steps += {command, title, intermediates, share};
}

QString ProductWay::toolTitle() const
{
    return labelText(processRow(*m_request.process).stepTitle);
}

/// The file alone where it stands between the steps: the product's own files are declared elsewhere.
QStringList ProductWay::ifIntermediate(const QString &file) const
{
    return file.startsWith(m_folder) ? QStringList{file} : QStringList();
}

void ProductWay::addTool(const ProcessingRequest &request, const ViewSource &dem, const QString &output,
                         const OutputOptions &options, double share)
{
    ProcessingRequest step = request;
    step.input = dem.path;
    step.band = dem.facts.band;
    step.output = output;
    step.outputOptions = options;
    add(runCommand(step, m_tools), labelText(processRow(*request.process).stepTitle), share,
        ifIntermediate(output));
}

void ProductWay::addBatch(const QString &task, const QString &raster, const ViewSource &dem,
                          const QString &more, const QString &title, double share,
                          const QStringList &intermediates)
{
    add(processCommand(m_tools.batch,
                       QStringLiteral("--%1 ").arg(task) + quotedArgument(raster) + QStringLiteral(" --input ")
                           + quotedArgument(dem.path) + QStringLiteral(" --band %1").arg(dem.facts.band)
                           + more),
        title, share, intermediates);
}

void ProductWay::addFilling(const ViewSource &dem, const QString &filled, double distance, const QString &mask)
{
    QString more = QStringLiteral(" --fill-distance %1").arg(distance);
    if (!mask.isEmpty())
        more += QStringLiteral(" --mask ") + quotedArgument(mask);
    addBatch(QStringLiteral("fill-voids"), filled, dem, more,
             labelText({"MESS_CALC_COMBLER", "Comblement des vides du MNT."}), 1.0,
             ifIntermediate(filled) + ifIntermediate(mask));
}

namespace
{

QString settingArguments(const QStringList &settings)
{
    QString arguments;
    for (const QString &setting : settings)
        arguments += QStringLiteral(" --set ") + quotedArgument(setting);
    return arguments;
}

} // namespace

void ProductWay::addSmoothing(const ViewSource &dem, const QString &smoothed, const QStringList &settings)
{
    addBatch(QStringLiteral("smooth-dem"), smoothed, dem, settingArguments(settings),
             labelText({"MESS_CALC_LISSER", "Lissage du MNT."}), 1.0, ifIntermediate(smoothed));
}

void ProductWay::addFinishing(const ViewSource &dem, const QString &lines, const QStringList &settings)
{
    constexpr double share = 0.5;
    addBatch(QStringLiteral("finish-contours"), m_request.output, dem,
             QStringLiteral(" --lines ") + quotedArgument(lines) + QStringLiteral(" --of ")
                 + quotedArgument(outputFormat(m_request)) + QStringLiteral(" --layer ")
                 + quotedArgument(outputLayer(m_request.outputOptions)) + settingArguments(settings),
             labelText({"MESS_CALC_ASSEMBLE", "Écriture du résultat."}), share, {});
}

void ProductWay::addCorrection(const ViewSource &dem, const QString &raster)
{
    const bool trigonometric = m_request.cellUse.trigonometric;
    addBatch(QStringLiteral("correct-aspect"), raster, dem,
             trigonometric ? QStringLiteral(" --set trigonometric=true") : QString(), toolTitle(), 0.5, {});
}

void ProductWay::addGeoreference(const ViewSource &dem, const QString &raster)
{
    addBatch(QStringLiteral("georeference"), raster, dem, {}, toolTitle(), 0.02, {});
}

void ProductWay::addCopy(const QString &arguments, const QString &from, const QString &to, const QString &title,
                         double share)
{
    add(processCommand(m_tools.translate,
                       arguments + quotedArgument(from) + QLatin1Char(' ') + quotedArgument(to)),
        title, share, ifIntermediate(to));
}

void ProductWay::addColors(const QString &values, const QString &table, const QString &picture,
                           const QString &title)
{
    constexpr double share = 0.5;
    add(processCommand(m_tools.dem,
                       QStringLiteral("color-relief ") + quotedArgument(values) + QLatin1Char(' ')
                           + quotedArgument(table) + QLatin1Char(' ') + quotedArgument(picture)
                           + QStringLiteral(" -b 1 -of \"GTiff\"")),
        title, share, {picture});
}

void ProductWay::append(const ProductWay &other)
{
    steps.steps += other.steps.steps;
    fail(other.steps.problem);
}
