#include "app/window/input/DemLook.h"

#include "app/process/demtreatment.h"
#include "dataset/elevationgrid.h"
#include "panels/optionsWidget.h"

#include <QDialog>
#include <QDialogButtonBox>
#include <QEvent>
#include <QFontMetrics>
#include <QLabel>
#include <QLocale>
#include <QToolButton>
#include <QVBoxLayout>

#include <algorithm>
#include <cmath>

DemLook::DemLook(QLabel &line, QToolButton &details)
    : m_line(line)
    , m_details(details)
{
    m_line.setTextFormat(Qt::PlainText); // a CRS may have any name
    m_line.installEventFilter(this);
    m_details.setVisible(false);
    connect(&m_details, &QToolButton::clicked, this, &DemLook::showDetails);
    connect(&m_reading, &QTimer::timeout, this, &DemLook::countVoids);
}

DemLook::~DemLook() = default;

void DemLook::setDem(const DemInfo &dem)
{
    constexpr int side = 400; // rows and columns that are looked at
    m_findings.extremes = dem.extremes;
    if (!dem.isSameBandAs(m_dem)) {
        m_findings.facts = dem.path.isEmpty() ? DemFacts() : readDemFacts(dem.path, dem.band);
        m_findings.voids.reset();
        m_reader =
            m_findings.facts.isOpen ? std::make_unique<ElevationGridReader>(dem.path, dem.band, side) : nullptr;
        m_reader ? m_reading.start(0) : m_reading.stop();
    }
    m_dem = dem;
    show();
}

void DemLook::countVoids()
{
    constexpr int slice = 20; // ms
    if (m_reader->advance(slice))
        return;
    m_reading.stop();
    const QVector<float> &cells = m_reader->grid().cells;
    const auto voids = std::count_if(cells.begin(), cells.end(), [](float cell) { return std::isnan(cell); });
    if (!cells.isEmpty())
        m_findings.voids = static_cast<double>(voids) / static_cast<double>(cells.size());
    m_reader.reset();
    show();
}

void DemLook::update(const ProcessingRequest &request, optionsWidget *panel)
{
    m_request = request;
    if (panel) {
        const auto ratio = chosenRatio(panel->processOptions());
        panel->setScaleHint(ratio ? ratioText(m_findings.facts, *ratio, m_line.locale()) : QString());
    }
    show();
}

void DemLook::show()
{
    QStringList parts{demHeadline(m_findings.facts, m_line.locale())};
    const QVector<DemRemark> remarks = demRemarks(m_findings, m_request, m_line.locale());
    for (const DemRemark &remark : remarks)
        parts += remark.text;
    m_text = parts.join(QStringLiteral(" · "));
    m_details.setVisible(!remarks.isEmpty());
    m_line.setForegroundRole(!remarks.isEmpty() && remarks.first().isUrgent ? QPalette::Link
                                                                            : QPalette::WindowText);
    elide();
}

void DemLook::elide()
{
    m_line.setText(QFontMetrics(m_line.font()).elidedText(m_text, Qt::ElideRight, m_line.width()));
    m_line.setAccessibleName(m_text);
    m_line.setToolTip(m_text);
}

bool DemLook::eventFilter(QObject *watched, QEvent *event)
{
    if (event->type() == QEvent::Resize)
        elide();
    return QObject::eventFilter(watched, event);
}

void DemLook::showDetails()
{
    QString html = QStringLiteral("<p><b>%1</b></p><ul>")
                       .arg(demHeadline(m_findings.facts, m_line.locale()).toHtmlEscaped());
    for (const DemRemark &remark : demRemarks(m_findings, m_request, m_line.locale())) {
        const QString text = remark.text.toHtmlEscaped();
        html +=
            QStringLiteral("<li>%1</li>").arg(remark.isUrgent ? QStringLiteral("<b>%1</b>").arg(text) : text);
    }
    auto dialog = new QDialog(m_line.window());
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    dialog->setObjectName(QStringLiteral("demLookDialog"));
    dialog->setWindowTitle(labelText({"MESS_MNT_EXP", "Modèle Numérique de Terrain"}));
    auto text = new QLabel(html + QStringLiteral("</ul>"), dialog);
    text->setWordWrap(true);
    text->setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
    text->setMinimumWidth(text->fontMetrics().averageCharWidth() * 60);
    auto buttons = new QDialogButtonBox(QDialogButtonBox::Close, dialog);
    connect(buttons, &QDialogButtonBox::rejected, dialog, &QDialog::close);
    auto layout = new QVBoxLayout(dialog);
    layout->addWidget(text);
    layout->addWidget(buttons);
    dialog->open();
}
