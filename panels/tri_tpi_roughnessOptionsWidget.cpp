#include "panels/tri_tpi_roughnessOptionsWidget.h"

#include "panels/controls/paneltexts.h"
#include "ui_tri_tpi_roughnessOptionsWidget.h"

#include <QEvent>

tri_tpi_roughnessOptionsWidget::tri_tpi_roughnessOptionsWidget(QWidget *parent, Qt::WindowFlags flags)
    : optionsWidget(parent, flags)
    , m_form(std::make_unique<Ui::tri_tpi_roughnessOptionsWidget>())
{
    m_form->setupUi(this);
    showOptions({});
    applyTexts();
    for (QRadioButton *index : {m_form->m_pRBTRI, m_form->m_pRBTPI, m_form->m_pRBROUGHNESS})
        connect(index, &QRadioButton::clicked, this, &tri_tpi_roughnessOptionsWidget::slot_onOptionsChanged);
    connect(m_form->m_pRBTRI, &QRadioButton::toggled, this, &tri_tpi_roughnessOptionsWidget::updateFormula);
    connect(m_form->m_pRBWilson, &QRadioButton::toggled, this, &tri_tpi_roughnessOptionsWidget::updateFormula);
    connect(m_form->m_pRBWilson, &QRadioButton::toggled, this,
            &tri_tpi_roughnessOptionsWidget::slot_onOptionsChanged);
    connect(m_form->m_pChBComputeAtEdges, &QCheckBox::stateChanged, this,
            &tri_tpi_roughnessOptionsWidget::slot_onOptionsChanged);
}

tri_tpi_roughnessOptionsWidget::~tri_tpi_roughnessOptionsWidget() = default;

QString tri_tpi_roughnessOptionsWidget::getCommandArguments()
{
    return terrainIndexFragment(options());
}

TerrainIndexOptions tri_tpi_roughnessOptionsWidget::options() const
{
    const int type = processType();
    return {.type = type,
            .computeEdges = m_form->m_pChBComputeAtEdges->isChecked(),
            .wilson = type == 0 && m_form->m_pRBWilson->isChecked()};
}

void tri_tpi_roughnessOptionsWidget::setProcessOptions(const ProcessOptions &processOptions)
{
    const auto *options = std::get_if<TerrainIndexOptions>(&processOptions);
    if (!options)
        return;
    showOptions(*options);
    slot_onOptionsChanged();
}

void tri_tpi_roughnessOptionsWidget::showOptions(const TerrainIndexOptions &options)
{
    QRadioButton *const indexes[terrainIndexCount] = {m_form->m_pRBTRI, m_form->m_pRBTPI,
                                                      m_form->m_pRBROUGHNESS};
    indexes[qBound(0, options.type, terrainIndexCount - 1)]->setChecked(true);
    m_form->m_pChBComputeAtEdges->setChecked(options.computeEdges);
    (options.wilson ? m_form->m_pRBWilson : m_form->m_pRBRiley)->setChecked(true);
}

/// Says which TRI the product holds; the choice belongs to that index alone.
void tri_tpi_roughnessOptionsWidget::updateFormula()
{
    const bool isTri = m_form->m_pRBTRI->isChecked();
    for (QWidget *control : QList<QWidget *>{m_form->m_pRBRiley, m_form->m_pRBWilson, m_form->m_pTriFormula})
        control->setEnabled(isTri);
    m_form->m_pTriFormula->setText(
        m_form->m_pRBWilson->isChecked()
            ? tr("Le produit contient la moyenne des différences avec les huit voisins.",
                 "MESS_TRI_WILSON_EXPL")
            : tr("Le produit contient la racine de la somme des carrés de ces différences, environ trois fois "
                 "plus grande que leur moyenne.",
                 "MESS_TRI_RILEY_EXPL"));
}

int tri_tpi_roughnessOptionsWidget::processType() const
{
    if (m_form->m_pRBTRI->isChecked())
        return 0;
    return m_form->m_pRBTPI->isChecked() ? 1 : 2;
}

void tri_tpi_roughnessOptionsWidget::slot_onOptionsChanged()
{
    reportChange();
    emit completeChanged();
}

void tri_tpi_roughnessOptionsWidget::changeEvent(QEvent *event)
{
    if (event->type() == QEvent::LanguageChange) {
        m_form->retranslateUi(this);
        applyTexts();
    }
    optionsWidget::changeEvent(event);
}

void tri_tpi_roughnessOptionsWidget::applyTexts()
{
    m_form->m_pLabelCalcBord->setText(edgesText());
    updateFormula();
}
