#include "app/window/outputFileAdvancedOptionsDialog.h"

#include "dataset/formatfilters.h"
#include "dataset/overviews.h"
#include "messages/FittingArea.h"
#include "panels/controls/focusorder.h"
#include "ui_outputFileAdvancedOptionsDialog.h"

#include <QScreen>
#include <QStandardItemModel>

#include <utility>

namespace
{

using FieldRows = QList<std::pair<QWidget *, QWidget *>>;

/// Lays out the rows whose fields are shown. A form keeps the space between rows of hidden widgets.
void closeGaps(QFormLayout &form, const FieldRows &rows)
{
    while (form.rowCount() > 0) {
        const QFormLayout::TakeRowResult taken = form.takeRow(0); // the widgets stay
        delete taken.labelItem;
        delete taken.fieldItem;
    }
    for (const auto &[label, field] : rows) {
        if (!field->isHidden())
            form.addRow(label, field);
    }
}

} // namespace

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
    showRasterOptions(options);
    showDemOptions(options, metricCrs);
    const bool vector = processRow(process).product == ProductKind::Vector;
    for (QWidget *control : QList<QWidget *>{m_form->m_pLayerNameLabel, m_form->m_pLELayerName})
        control->setVisible(vector);
    for (QWidget *control :
         QList<QWidget *>{m_form->m_pCompressionLabel, m_form->m_pCBCompression, m_form->m_pChBTiled,
                          m_form->m_pChBWorldFile, m_form->m_pChBOverviews, m_form->m_pOverviewsExpl,
                          m_form->m_pChBStatistics, m_form->m_pStatisticsExpl})
        control->setVisible(!vector);
    connect(m_form->m_pCBFormat, qOverload<int>(&QComboBox::currentIndexChanged), this,
            &outputFileAdvancedOptionsDialog::updateControls);
    connect(m_form->m_pChBFill, &QCheckBox::toggled, this, &outputFileAdvancedOptionsDialog::updateControls);
    connect(m_form->m_pChBTiled, &QCheckBox::toggled, this, &outputFileAdvancedOptionsDialog::updateControls);
    connect(m_form->m_pButtonBox, &QDialogButtonBox::accepted, this, &QDialog::accept);
    connect(m_form->m_pButtonBox, &QDialogButtonBox::rejected, this, &QDialog::reject);
    updateControls();
    makeScrollable();             // only now: the area would keep the height of the rows that have been hidden
    constexpr QSize frame(2, 32); // pixels; no window knows its frame before it is shown
    QSize size = sizeHint();
    const int width = m_form->m_pGrpFile->parentWidget()->minimumSizeHint().width();
    for (const QWidget *group :
         {m_form->m_pGrpFile, m_form->m_pGrpDem}) // whose hints count wrapped texts as a line
        size.rheight() += group->heightForWidth(width) - group->minimumSizeHint().height();
    resize(size.boundedTo(screen()->availableSize() - frame));
}

outputFileAdvancedOptionsDialog::~outputFileAdvancedOptionsDialog() = default;

/// On a low screen the groups scroll, and the buttons below them stay.
void outputFileAdvancedOptionsDialog::makeScrollable()
{
    const QList<QWidget *> groups{m_form->m_pGrpFile, m_form->m_pGrpDem};
    m_form->m_pMainLayout->insertWidget(0, new FittingArea(groups, this));
    orderFocus(*this, groups + QList<QWidget *>{m_form->m_pButtonBox});
}

/// Shows how the cells of a raster are written. The lists hold the values of the options as data.
void outputFileAdvancedOptionsDialog::showRasterOptions(const OutputOptions &options)
{
    m_form->m_pChBTiled->setChecked(options.tiled);
    m_form->m_pChBWorldFile->setChecked(options.worldFile);
    m_form->m_pChBOverviews->setChecked(options.overviews);
    m_form->m_pChBStatistics->setChecked(options.statistics);
    m_form->m_pCBCompression->addItem(tr("celle du format", "MESS_COMPR_FORMAT"), QString());
    for (const char *method : {"DEFLATE", "LZW", "ZSTD"})
        m_form->m_pCBCompression->addItem(QLatin1String(method), QLatin1String(method));
    m_form->m_pCBCompression->setCurrentIndex(
        qMax(0, m_form->m_pCBCompression->findData(options.compression.toUpper())));
    for (const int size : {0, 128, 256, 1024, 2048})
        m_form->m_pCBBlockSize->addItem(tr("%1 × %1 cellules", "MESS_BLOC_CELLULES").arg(size ? size : 512),
                                        size);
    if (m_form->m_pCBBlockSize->findData(options.blockSize) < 0)
        m_form->m_pCBBlockSize->addItem(tr("%1 × %1 cellules", "MESS_BLOC_CELLULES").arg(options.blockSize),
                                        options.blockSize);
    m_form->m_pCBBlockSize->setCurrentIndex(m_form->m_pCBBlockSize->findData(options.blockSize));
    const std::pair<const char *, QString> resamplings[] = {
        {"", tr("usuelles du format", "MESS_REECH_FORMAT")},
        {"NEAREST", tr("plus proche voisin", "MESS_REECH_VOISIN")},
        {"AVERAGE", tr("moyenne", "MESS_REECH_MOYENNE")},
        {"BILINEAR", tr("bilinéaires", "MESS_REECH_BILINEAIRE")},
        {"CUBIC", tr("cubiques", "MESS_REECH_CUBIQUE")},
        {"MODE", tr("valeur la plus fréquente", "MESS_REECH_MODE")},
        {"NONE", tr("aucune", "MESS_REECH_AUCUNE")}};
    for (const auto &[word, text] : resamplings)
        m_form->m_pCBResampling->addItem(text, QString::fromLatin1(word));
    m_form->m_pCBResampling->setCurrentIndex(
        qMax(0, m_form->m_pCBResampling->findData(options.overviewResampling.toUpper())));
}

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
    updateCompression(format);
    for (QWidget *control :
         QList<QWidget *>{m_form->m_pSBFillDistance, m_form->m_pFillUnit, m_form->m_pChBFillMask})
        control->setEnabled(m_form->m_pChBFill->isChecked());
    m_form->m_pCBFormat->setEnabled(m_form->m_pCBFormat->count() > 1);
}

/// Only what the chosen format has can be chosen; what no other format has is not even shown.
void outputFileAdvancedOptionsDialog::updateCompression(const QString &format)
{
    const QStringList offered = compressions(format);
    auto *rows = qobject_cast<QStandardItemModel *>(m_form->m_pCBCompression->model());
    const QString missing = tr("GDAL n'a pas cette compression sur cet ordinateur.", "MESS_COMPR_ABSENTE");
    for (int row = 1; rows && row < rows->rowCount(); ++row) {
        const bool has = offered.contains(m_form->m_pCBCompression->itemData(row).toString());
        rows->item(row)->setEnabled(has);
        rows->item(row)->setToolTip(has ? QString() : missing);
    }
    const bool isOffered = !offered.isEmpty();
    m_form->m_pCBCompression->setEnabled(isOffered);
    m_form->m_pCBCompression->setToolTip(
        isOffered
            ? tr("Sans perte ; les nombres voisins sont stockés par leurs différences.", "MESS_COMPR_EXPL")
            : tr("Seuls le GeoTIFF et le COG laissent choisir leur compression.", "MESS_COMPR_SANS"));
    for (QWidget *control : QList<QWidget *>{m_form->m_pBlockSizeLabel, m_form->m_pCBBlockSize})
        control->setVisible(takesBlockSize(format));
    for (QWidget *control : QList<QWidget *>{m_form->m_pResamplingLabel, m_form->m_pCBResampling})
        control->setVisible(!overviewResamplings(format).isEmpty());
    const bool raster = processRow(m_process).product == ProductKind::Raster;
    for (QWidget *overviews : QList<QWidget *>{m_form->m_pChBOverviews, m_form->m_pOverviewsExpl})
        overviews->setVisible(raster && overviewResamplings(format).isEmpty());
    closeGaps(*m_form->m_pFieldsLayout,
              {{m_form->m_pFormatLabel, m_form->m_pCBFormat},
               {m_form->m_pLayerNameLabel, m_form->m_pLELayerName},
               {m_form->m_pCompressionLabel, m_form->m_pCBCompression},
               {m_form->m_pBlockSizeLabel, m_form->m_pCBBlockSize},
               {m_form->m_pResamplingLabel, m_form->m_pCBResampling}});
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
    options.statistics = m_form->m_pChBStatistics->isChecked();
    options.compression = m_form->m_pCBCompression->currentData().toString();
    options.blockSize = m_form->m_pCBBlockSize->currentData().toInt();
    options.overviewResampling = m_form->m_pCBResampling->currentData().toString();
    options.asIs = m_form->m_pChBAsIs->isChecked();
    options.fillDistance = m_form->m_pChBFill->isChecked() ? m_form->m_pSBFillDistance->value() : 0.0;
    options.fillMask = options.fillDistance > 0.0 && m_form->m_pChBFillMask->isChecked();
    if (m_form->m_pChBReproject->isChecked() && m_form->m_pChBReproject->isEnabled())
        options.reproject = m_reproject;
    return options;
}
