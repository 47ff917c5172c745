#include "app/window/outputFileAdvancedOptionsDialog.h"

#include "dataset/formatfilters.h"
#include "dataset/overviews.h"
#include "ui_outputFileAdvancedOptionsDialog.h"

outputFileAdvancedOptionsDialog::outputFileAdvancedOptionsDialog(Process process, const OutputOptions &options,
                                                                 const QString &metricCrs, QWidget *parent)
    : QDialog(parent)
    , m_form(std::make_unique<Ui::outputFileAdvancedOptionsDialog>())
    , m_process(process)
{
    m_form->setupUi(this);
    listFormats(options);
    m_form->m_pLELayerName->setText(options.layerName);
    m_form->m_pLELayerName->setPlaceholderText(outputLayer({}));
    m_form->m_pChBTiled->setChecked(options.tiled);
    m_form->m_pChBWorldFile->setChecked(options.worldFile);
    m_form->m_pChBOverviews->setChecked(options.overviews);
    showDemOptions(options, metricCrs);
    const bool vector = processRow(process).product == ProductKind::Vector;
    for (QWidget *control : QList<QWidget *>{m_form->m_pLayerNameLabel, m_form->m_pLELayerName})
        control->setVisible(vector);
    for (QWidget *control : QList<QWidget *>{m_form->m_pChBTiled, m_form->m_pChBWorldFile,
                                             m_form->m_pChBOverviews, m_form->m_pOverviewsExpl})
        control->setVisible(!vector);
    connect(m_form->m_pCBFormat, qOverload<int>(&QComboBox::currentIndexChanged), this,
            &outputFileAdvancedOptionsDialog::updateControls);
    connect(m_form->m_pChBFill, &QCheckBox::toggled, this, &outputFileAdvancedOptionsDialog::updateControls);
    connect(m_form->m_pChBTiled, &QCheckBox::toggled, this, &outputFileAdvancedOptionsDialog::updateControls);
    connect(m_form->m_pButtonBox, &QDialogButtonBox::accepted, this, &QDialog::accept);
    connect(m_form->m_pButtonBox, &QDialogButtonBox::rejected, this, &QDialog::reject);
    updateControls();
}

outputFileAdvancedOptionsDialog::~outputFileAdvancedOptionsDialog() = default;

/// Shows what is done with the DEM before the process.
void outputFileAdvancedOptionsDialog::showDemOptions(const OutputOptions &options, const QString &metricCrs)
{
    m_form->m_pChBFill->setChecked(options.fillDistance > 0.0);
    if (options.fillDistance > 0.0)
        m_form->m_pSBFillDistance->setValue(qRound(options.fillDistance));
    m_form->m_pChBFillMask->setChecked(options.fillMask);
    m_reproject = options.reproject.isEmpty() ? QStringLiteral("auto") : options.reproject;
    const QString crs = m_reproject == QLatin1String("auto") ? metricCrs : m_reproject;
    m_form->m_pChBReproject->setText(tr("Calculer dans un système en mètres (%1)", "MESS_SORTIE_PROJ")
                                         .arg(crs.isEmpty() ? tr("aucun", "MESS_AUCUN") : crs));
    m_form->m_pChBReproject->setChecked(!options.reproject.isEmpty());
    m_form->m_pChBReproject->setEnabled(!crs.isEmpty());
    m_form->m_pChBAsIs->setChecked(options.asIs);
    for (QWidget *control : QList<QWidget *>{m_form->m_pChBReproject, m_form->m_pReprojectExpl})
        control->setVisible(mayReproject(m_process));
    for (QWidget *control : QList<QWidget *>{m_form->m_pChBAsIs, m_form->m_pAsIsExpl})
        control->setVisible(usesNeighbours(m_process));
}

void outputFileAdvancedOptionsDialog::listFormats(const OutputOptions &options)
{
    for (const QString &format : outputFormats(m_process)) {
        const QString title = formatTitle(format);
        const QString extension = QStringLiteral("(.%1)").arg(formatExtensions(format).value(0));
        m_form->m_pCBFormat->addItem(
            title.contains(extension, Qt::CaseInsensitive) ? title : title + QLatin1Char(' ') + extension,
            format);
    }
    m_form->m_pCBFormat->setCurrentIndex(qMax(0, m_form->m_pCBFormat->findData(options.format)));
}

void outputFileAdvancedOptionsDialog::updateControls()
{
    const QString format = m_form->m_pCBFormat->currentData().toString();
    m_form->m_pChBTiled->setEnabled(hasCreationOption(format, QStringLiteral("TILED")));
    m_form->m_pChBWorldFile->setEnabled(m_form->m_pChBTiled->isEnabled() && m_form->m_pChBTiled->isChecked()
                                        && hasCreationOption(format, QStringLiteral("TFW")));
    for (QWidget *overviews : QList<QWidget *>{m_form->m_pChBOverviews, m_form->m_pOverviewsExpl})
        overviews->setEnabled(takesOverviews(format));
    for (QWidget *control :
         QList<QWidget *>{m_form->m_pSBFillDistance, m_form->m_pFillUnit, m_form->m_pChBFillMask})
        control->setEnabled(m_form->m_pChBFill->isChecked());
    m_form->m_pCBFormat->setEnabled(m_form->m_pCBFormat->count() > 1);
}

OutputOptions outputFileAdvancedOptionsDialog::options() const
{
    OutputOptions options;
    options.format =
        m_form->m_pCBFormat->currentIndex() > 0 ? m_form->m_pCBFormat->currentData().toString() : QString();
    options.layerName = m_form->m_pLELayerName->text();
    options.tiled = m_form->m_pChBTiled->isChecked();
    options.worldFile = m_form->m_pChBWorldFile->isChecked();
    options.overviews = m_form->m_pChBOverviews->isChecked();
    options.asIs = m_form->m_pChBAsIs->isChecked();
    options.fillDistance = m_form->m_pChBFill->isChecked() ? m_form->m_pSBFillDistance->value() : 0.0;
    options.fillMask = options.fillDistance > 0.0 && m_form->m_pChBFillMask->isChecked();
    if (m_form->m_pChBReproject->isChecked() && m_form->m_pChBReproject->isEnabled())
        options.reproject = m_reproject;
    return options;
}
