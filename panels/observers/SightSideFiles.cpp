#include "panels/observers/SightSideFiles.h"

#include "dataset/QuvoFilerDialog.h"
#include "messages/label.h"
#include "panels/controls/numberfield.h"

#include <QCheckBox>
#include <QDir>
#include <QFileInfo>
#include <QLabel>
#include <QLineEdit>

namespace
{

constexpr double smallestStep = 0.001; // degrees, as recipes have it
constexpr double largestStep = 180.0;

} // namespace

SightSideFiles::SightSideFiles(const Row &skyline, const Row &statistics, QLabel *stepLabel, QLineEdit *step)
    : m_skylineBox(skyline.box)
    , m_statisticsBox(statistics.box)
    , m_stepLabel(stepLabel)
    , m_step(step)
    , m_skyline(skyline.box, skyline.name, skyline.browse,
                [this](const QString &start) {
                    return chosenFile(start, {"MESS_COTE_CHX_HORIZON", "Choisir le fichier de l'horizon"},
                                      {"csv", "json", "gpkg"});
                })
    , m_statistics(statistics.box, statistics.name, statistics.browse, [this](const QString &start) {
        return chosenFile(start, {"MESS_COTE_CHX_STATIST", "Choisir le fichier des statistiques"}, {"csv"});
    })
{
    makeNumberField(m_step, smallestStep, largestStep);
    for (SideFileField *field : {&m_skyline, &m_statistics})
        connect(field, &SideFileField::changed, this, &SightSideFiles::changed);
    connect(m_skylineBox, &QCheckBox::toggled, this, &SightSideFiles::updateStep);
    connect(m_step, &QLineEdit::textChanged, this, &SightSideFiles::changed);
    updateStep();
}

void SightSideFiles::addTo(IntervisibilityOptions &options) const
{
    options.skyline = besideProduct(m_skyline.name());
    if (m_step->hasAcceptableInput())
        options.skylineStep = fieldNumber(m_step->text());
    options.statistics = besideProduct(m_statistics.name());
}

void SightSideFiles::show(const IntervisibilityOptions &options)
{
    m_skyline.set(options.skyline);
    m_step->setText(numberText(options.skylineStep));
    m_statistics.set(options.statistics);
}

void SightSideFiles::setProduct(const QString &path)
{
    const auto proposal = [&path](const QString &word) {
        return path.isEmpty() ? QString() : sideFileName(path, word, QStringLiteral("csv"));
    };
    m_product = path;
    m_skyline.propose(proposal(skylineWord));
    m_statistics.propose(proposal(statisticsWord));
}

void SightSideFiles::retranslate()
{
    m_skylineBox->setToolTip(labelText({"MESS_COTE_HORIZON_EXPL",
                                        "La ligne d'horizon de chaque observateur : azimut, angle, distance et "
                                        "position. La fin du nom décide du "
                                        "format : .csv, .json ou .gpkg."}));
    m_statisticsBox->setToolTip(labelText(
        {"MESS_COTE_STATIST_EXPL",
         "La surface vue, sa part et le point le plus éloigné, par observateur et pour tous (.csv)."}));
    m_step->setPlaceholderText(labelText({"MESS_COTE_PAS_TOUS", "chaque changement de pente"}));
}

QString SightSideFiles::chosenFile(const QString &start, const Label &title,
                                   const QStringList &extensions) const
{
    QStringList filters;
    for (const QString &extension : extensions)
        filters += QStringLiteral("%1 (*.%2)").arg(extension.toUpper(), extension);
    return QuvoFilerDialog::getSelection(m_step->window(), QuvoFilerDialog::SaveFile, labelText(title),
                                         besideProduct(start), filters.join(QStringLiteral(";;")));
}

/// A relative name counts from the folder of the product.
QString SightSideFiles::besideProduct(const QString &name) const
{
    return name.isEmpty() || m_product.isEmpty()
        ? name
        : QDir::cleanPath(QFileInfo(m_product).absoluteDir().absoluteFilePath(name));
}

void SightSideFiles::updateStep()
{
    for (QWidget *widget : {static_cast<QWidget *>(m_stepLabel), static_cast<QWidget *>(m_step)})
        widget->setEnabled(m_skylineBox->isChecked());
}
