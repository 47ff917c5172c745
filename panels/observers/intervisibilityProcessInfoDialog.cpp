#include "panels/observers/intervisibilityProcessInfoDialog.h"

#include "panels/controls/numberfield.h"
#include "panels/observers/ComputingEstimate.h"
#include "panels/options/computingtime.h"
#include "ui_intervisibilityProcessInfoDialog.h"

#include <QGuiApplication>
#include <QLocale>
#include <QPushButton>

namespace
{

constexpr int typingPause = 300; // ms

/// Entries of the list of heights.
enum HeightSource
{
    DefaultHeight,
    ZCoordinate,
    Attribute
};

} // namespace

intervisibilityProcessInfoDialog::intervisibilityProcessInfoDialog(const VectorObservers &source, int width,
                                                                   int height, double minimumStep,
                                                                   QWidget *parent)
    : QDialog(parent)
    , m_form(std::make_unique<Ui::intervisibilityProcessInfoDialog>())
    , m_source(source)
    , m_width(width)
    , m_height(height)
    , m_minimumStep(minimumStep)
{
    m_form->setupUi(this);
    makeNumberField(m_form->m_pLEPas);
    m_form->m_pLEPas->setText(QString::number(minimumStep, 'g', QLocale::FloatingPointShortest));
    for (QWidget *widget :
         QList<QWidget *>{m_form->m_pLabelExplanation, m_form->m_pStepLabel, m_form->m_pLEPas})
        widget->setVisible(!source.lines.isEmpty()); // points are not sampled
    m_form->m_pCrsNote->setText(source.crsNotes.join(QLatin1Char('\n')));
    m_form->m_pCrsNote->setVisible(!source.crsNotes.isEmpty());
    listHeightSources();
    m_timer.setSingleShot(true);
    m_timer.setInterval(typingPause);
    connect(m_form->m_pLEPas, &QLineEdit::textChanged, this,
            &intervisibilityProcessInfoDialog::slot_onChangePas);
    connect(&m_timer, &QTimer::timeout, this, &intervisibilityProcessInfoDialog::estimate);
    connect(m_form->m_pButtonBox, &QDialogButtonBox::accepted, this, &QDialog::accept);
    connect(m_form->m_pButtonBox, &QDialogButtonBox::rejected, this, &QDialog::reject);
    m_form->m_pLimitNote->setVisible(false);
    estimate();
}

intervisibilityProcessInfoDialog::~intervisibilityProcessInfoDialog() = default;

void intervisibilityProcessInfoDialog::setEstimate(ComputingEstimate &estimate, const ObserverPoint &values)
{
    m_estimate = &estimate;
    m_values = values;
    connect(m_estimate, &ComputingEstimate::known, this, [this](double seconds) {
        m_form->m_pLabelTimeHere->setText(QLatin1Char('(') + hereText(seconds) + QLatin1Char(')'));
    });
    this->estimate();
}

void intervisibilityProcessInfoDialog::listHeightSources()
{
    QComboBox *combo = m_form->m_pCBHeightSource;
    combo->addItem(tr("Hauteur par défaut", "MESS_HAUTEUR_DEFAUT"), DefaultHeight);
    if (m_source.hasZ)
        combo->addItem(tr("Coordonnée Z (altitude absolue)", "MESS_HAUTEUR_Z"), ZCoordinate);
    QStringList attributes = m_source.numericAttributes;
    attributes.sort();
    for (const QString &attribute : attributes)
        combo->addItem(attribute, Attribute);
    const bool choice = combo->count() > 1;
    combo->setVisible(choice);
    m_form->m_pHeightSourceLabel->setVisible(choice);
}

double intervisibilityProcessInfoDialog::step() const
{
    return m_form->m_pLEPas->text().toDouble();
}

HeightChoice intervisibilityProcessInfoDialog::heightChoice() const
{
    const int source = m_form->m_pCBHeightSource->currentData().toInt();
    return {source == ZCoordinate, source == Attribute ? m_form->m_pCBHeightSource->currentText() : QString()};
}

void intervisibilityProcessInfoDialog::slot_onChangePas()
{
    // OK waits for the estimate, so that Return right after typing does not import with an unchecked step.
    m_form->m_pButtonBox->button(QDialogButtonBox::Ok)->setEnabled(false);
    if (m_estimate)
        m_estimate->stop();
    m_form->m_pLabelTimeHere->clear();
    m_timer.start();
}

void intervisibilityProcessInfoDialog::estimate()
{
    QPushButton *ok = m_form->m_pButtonBox->button(QDialogButtonBox::Ok);
    const bool stepCounts = !m_source.lines.isEmpty();
    ok->setEnabled(!stepCounts || step() >= m_minimumStep);
    if (!ok->isEnabled())
        return;
    QGuiApplication::setOverrideCursor(Qt::WaitCursor);
    const double count = sampledCount(m_source, step());
    m_form->m_pLabelPointCount->setText(QString::number(count, 'f', 0));
    ok->setEnabled(count <= mostObservers);
    m_form->m_pLimitNote->setVisible(!ok->isEnabled());
    m_form->m_pLimitNote->setText(
        tr("Cela fait plus de %1 observateurs ; choisissez un pas plus grand.", "MESS_OBS_LIMITE")
            .arg(mostObservers, 0, 'f', 0));
    m_form->m_pLabelEstimateTime->setText(computingTimeText(estimatedSeconds(m_width, m_height, count)));
    if (ok->isEnabled())
        measure(count);
    QGuiApplication::restoreOverrideCursor();
}

void intervisibilityProcessInfoDialog::measure(double count)
{
    m_form->m_pLabelTimeHere->clear();
    if (m_estimate)
        m_estimate->begin(
            someObserversFrom(m_source, step(), m_values, heightChoice(), ComputingEstimate::enough), count);
}
