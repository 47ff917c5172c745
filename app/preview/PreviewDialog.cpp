#include "app/preview/PreviewDialog.h"

#include "app/preview/mapsaving.h"
#include "app/preview/previewgeometry.h"
#include "messages/Prompt.h"
#include "messages/label.h"
#include "messages/shownnumber.h"
#include "ui_PreviewDialog.h"

#include <QClipboard>
#include <QFileInfo>
#include <QGuiApplication>
#include <QLocale>
#include <QScreen>
#include <QToolButton>

#include <cmath>

void showProduct(const QString &file, const std::optional<ProductSource> &source, QWidget *parent,
                 const ShellServices &services)
{
    auto dialog = new PreviewDialog(file, source, parent, services);
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    if (dialog->canShow()) {
        dialog->open();
    } else {
        dialog->slot_openWith();
        dialog->deleteLater();
    }
}

PreviewDialog::PreviewDialog(const QString &file, const std::optional<ProductSource> &source, QWidget *parent,
                             const ShellServices &services)
    : QDialog(parent)
    , m_form(std::make_unique<Ui::PreviewDialog>())
    , m_file(file)
    , m_services(services)
    , m_reading(file, source)
{
    constexpr int pauseBeforeReading = 60; // ms; a turn of the wheel sends several events
    m_form->setupUi(this);
    setWindowFlag(Qt::WindowContextHelpButtonHint, false);
    setWindowFlag(Qt::WindowMaximizeButtonHint, true);
    setWindowTitle(QFileInfo(file).fileName());
    m_pause.setSingleShot(true);
    m_pause.setInterval(pauseBeforeReading);
    connect(&m_pause, &QTimer::timeout, this, &PreviewDialog::beginReading);
    connect(&m_slices, &QTimer::timeout, this, &PreviewDialog::readSlice);
    connect(m_form->m_pLPreview, &MapView::viewChanged, this, &PreviewDialog::setView);
    connect(m_form->m_pLPreview, &MapView::hovered, this, &PreviewDialog::showReadout);
    connect(m_form->m_pLPreview, &MapView::left, m_form->m_pLReadout, &QLabel::clear);
    connect(m_form->m_pPBOpenWith, &QPushButton::clicked, this, &PreviewDialog::slot_openWith);
    connect(m_form->m_pPBClose, &QPushButton::clicked, this, &QDialog::accept);
    constexpr int frame = 60; // what the desktop adds around a window
    if (const QScreen *screen = QGuiApplication::primaryScreen())
        resize(size().boundedTo(screen->availableSize() - QSize(frame, frame)));
    connectBar();
    m_form->m_pMapBar->setProductName(source ? source->title : QString());
    if (!source) {
        m_form->m_pMapBar->hideComparison();
        m_form->m_pMapBar->legendButton()->hide();
        m_form->m_pMapLegend->hide();
    }
    setView(QRectF(QPointF(0.0, 0.0), QSizeF(m_reading.size())));
}

PreviewDialog::~PreviewDialog() = default;

void PreviewDialog::connectBar()
{
    MapBar *bar = m_form->m_pMapBar;
    MapView *map = m_form->m_pLPreview;
    const auto setOpacity = [this](double opacity) {
        m_map.opacity = opacity;
        m_form->m_pMapBar->setOpacity(opacity);
        m_form->m_pLPreview->setMap(m_map);
    };
    connect(bar, &MapBar::opacityChanged, this, setOpacity);
    connect(map, &MapView::opacityChosen, this, setOpacity);
    connect(map, &MapView::swipeMoved, this, [this](double share) { m_map.swipe = share; });
    connect(bar->swipeButton(), &QToolButton::toggled, this, [this](bool on) {
        m_map.swipe = on ? std::optional(0.5) : std::nullopt;
        m_form->m_pLPreview->setMap(m_map);
    });
    connect(bar->legendButton(), &QToolButton::toggled, m_form->m_pMapLegend, &QWidget::setVisible);
    connect(bar, &MapBar::zoomInClicked, map, &MapView::slot_zoomIn);
    connect(bar, &MapBar::zoomOutClicked, map, &MapView::slot_zoomOut);
    connect(bar, &MapBar::wholeClicked, map, &MapView::slot_showWhole);
    connect(bar, &MapBar::copyClicked, this, &PreviewDialog::slot_copyPicture);
    connect(bar, &MapBar::saveClicked, this, &PreviewDialog::slot_savePicture);
}

void PreviewDialog::setView(const QRectF &view)
{
    m_view = view;
    m_form->m_pLPreview->setView(m_reading.size(), view);
    m_form->m_pLPreview->setScale(m_reading.cellMetres(view.center()).width(), m_reading.isScaleKnown());
    m_slices.stop();
    m_pause.start();
}

void PreviewDialog::slot_openWith()
{
    if (!openWithShell(m_file, m_services))
        Prompt::warning(
            this, labelText({"MESS_RES_NON_OUVERT", "Aucun programme n'a pu ouvrir « %1 »."}).arg(m_file));
}

void PreviewDialog::resizeEvent(QResizeEvent *event)
{
    m_pause.start();
    QDialog::resizeEvent(event);
}

void PreviewDialog::beginReading()
{
    if (!m_reading.isOpen())
        return;
    const QSizeF room = m_form->m_pLPreview->size() * devicePixelRatioF();
    m_reading.begin(m_view, room.toSize(), devicePixelRatioF());
    m_form->m_pMapBar->setProgress(0);
    m_slices.start(0);
}

void PreviewDialog::readSlice()
{
    constexpr int slice = 30; // ms
    if (m_reading.advance(slice)) {
        m_form->m_pMapBar->setProgress(m_reading.percent());
        if (m_reading.isVector() || m_map.ground.isEmpty())
            showMap();
        return;
    }
    m_slices.stop();
    m_form->m_pMapBar->setProgress(-1);
    showMap();
    m_form->m_pMapLegend->setLegend(legendOf(m_reading.legendFacts(), locale()));
}

void PreviewDialog::showMap()
{
    m_reading.addTo(m_map);
    m_form->m_pLPreview->setMap(m_map);
}

void PreviewDialog::showReadout(const QPointF &cell)
{
    const QPointF ground = m_reading.toGround(cell);
    const int decimals = coordinateDecimals(m_reading.cellSize());
    QString text = QStringLiteral("X %1   Y %2")
                       .arg(shownNumber(ground.x(), 'f', decimals, locale()),
                            shownNumber(ground.y(), 'f', decimals, locale()));
    const double value = m_reading.value(cell);
    if (!m_reading.look().name.isEmpty())
        text += QStringLiteral("   ") + valueText(m_reading.look(), value, locale());
    else if (m_reading.look().form == ProductForm::Shade)
        text += QStringLiteral("   ")
            + labelText({"MESS_VALEUR", "Valeur %1"})
                  .arg(std::isnan(value) ? labelText({"MESS_SANS_DONNEE", "sans donnée"})
                                         : shownNumber(value, 'g', 7, locale()));
    m_form->m_pLReadout->setText(text);
}

MapPage PreviewDialog::page()
{
    const double metres = m_reading.isOpen() ? m_reading.cellMetres(m_view.center()).width() : 0.0;
    return mapPage(*m_form->m_pLPreview, m_view, metres, m_reading.isScaleKnown(), QFileInfo(m_file).fileName(),
                   m_form->m_pMapLegend->legend());
}

void PreviewDialog::slot_copyPicture()
{
    QGuiApplication::clipboard()->setImage(QImage::fromData(mapFile(page(), MapFileFormat::Png)));
}

void PreviewDialog::slot_savePicture()
{
    const QFileInfo product(m_file);
    saveMap(this, page(), product.path() + QLatin1Char('/') + product.completeBaseName());
}
