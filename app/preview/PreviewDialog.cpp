#include "app/preview/PreviewDialog.h"

#include "app/preview/previewgeometry.h"
#include "messages/Prompt.h"
#include "messages/label.h"
#include "ui_PreviewDialog.h"

#include <QFileInfo>
#include <QLocale>

namespace
{

constexpr double zoomStep = 1.5;

} // namespace

void showProduct(const QString &file, QWidget *parent, const ShellServices &services)
{
    auto dialog = new PreviewDialog(file, parent, services);
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    if (dialog->canShow()) {
        dialog->open();
    } else {
        dialog->slot_openWith();
        dialog->deleteLater();
    }
}

PreviewDialog::PreviewDialog(const QString &file, QWidget *parent, const ShellServices &services)
    : QDialog(parent)
    , m_form(std::make_unique<Ui::PreviewDialog>())
    , m_file(file)
    , m_services(services)
    , m_raster(file)
    , m_ground(file, 1)
    , m_vector(m_raster.isOpen() ? VectorPicture() : VectorPicture(file))
{
    constexpr int pauseBeforeReading = 60; // ms; a turn of the wheel sends several events
    constexpr int vectorCells = 4096;      // on the longer side; about the pixels of a large screen
    m_form->setupUi(this);
    setWindowFlag(Qt::WindowContextHelpButtonHint, false);
    setWindowFlag(Qt::WindowMaximizeButtonHint, true);
    setWindowTitle(QFileInfo(file).fileName());
    m_pause.setSingleShot(true);
    m_pause.setInterval(pauseBeforeReading);
    connect(&m_pause, &QTimer::timeout, this, &PreviewDialog::read);
    connect(&m_drawing, &QTimer::timeout, this, &PreviewDialog::drawSlice);
    connect(m_form->m_pLPreview, &MapView::viewChanged, this, &PreviewDialog::setView);
    connect(m_form->m_pLPreview, &MapView::hovered, this, &PreviewDialog::showReadout);
    connect(m_form->m_pLPreview, &MapView::left, m_form->m_pLReadout, &QLabel::clear);
    connect(m_form->m_pPBZoomIn, &QPushButton::clicked, this, &PreviewDialog::slot_zoomIn);
    connect(m_form->m_pPBZoomOut, &QPushButton::clicked, this, &PreviewDialog::slot_zoomOut);
    connect(m_form->m_pPBWhole, &QPushButton::clicked, this, &PreviewDialog::slot_showWhole);
    connect(m_form->m_pPBOpenWith, &QPushButton::clicked, this, &PreviewDialog::slot_openWith);
    connect(m_form->m_pPBClose, &QPushButton::clicked, this, &QDialog::accept);

    if (m_vector.isOpen()) {
        m_extent = m_vector.extent();
        if (m_extent.isEmpty()) // the file has no line, or one that runs along an axis
            m_extent.adjust(-0.5, -0.5, 0.5, 0.5);
        m_size =
            m_extent.size().scaled(vectorCells, vectorCells, Qt::KeepAspectRatio).toSize().expandedTo({1, 1});
    } else {
        m_size = m_raster.size();
    }
    slot_showWhole();
}

PreviewDialog::~PreviewDialog() = default;

void PreviewDialog::setView(const QRectF &view)
{
    m_view = view;
    m_form->m_pLPreview->setView(m_size, view);
    m_drawing.stop();
    m_pause.start();
}

void PreviewDialog::slot_zoomIn()
{
    setView(zoomed(m_view, m_view.center(), zoomStep, m_size, m_form->m_pLPreview->size()));
}

void PreviewDialog::slot_zoomOut()
{
    setView(zoomed(m_view, m_view.center(), 1.0 / zoomStep, m_size, m_form->m_pLPreview->size()));
}

void PreviewDialog::slot_showWhole()
{
    setView(QRectF(QPointF(0.0, 0.0), QSizeF(m_size)));
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

void PreviewDialog::read()
{
    if (m_raster.isOpen())
        readRaster();
    else if (m_vector.isOpen())
        beginVector();
}

/// Adds a picture of some cells; the coarser one stays around it.
void PreviewDialog::addPicture(const QImage &picture, const QRectF &part)
{
    if (!picture.isNull())
        MapPicture::add(m_map.ground, {picture, part});
    m_form->m_pLPreview->setMap(m_map);
}

void PreviewDialog::readRaster()
{
    const QRect part = m_view.toAlignedRect().intersected(QRect(QPoint(0, 0), m_size));
    const QSizeF room = m_form->m_pLPreview->size() * devicePixelRatioF();
    const QSize size = QSizeF(part.size()).scaled(room, Qt::KeepAspectRatio).toSize();
    const QSize enough = size.boundedTo(part.size()).expandedTo({1, 1}); // more pixels than cells show no more
    addPicture(m_raster.read(part, enough), part);
}

void PreviewDialog::beginVector()
{
    const QSizeF room = m_form->m_pLPreview->size() * devicePixelRatioF();
    m_drawn = QImage(m_view.size().scaled(room, Qt::KeepAspectRatio).toSize().expandedTo({1, 1}),
                     QImage::Format_ARGB32_Premultiplied);
    m_drawn.fill(Qt::white);
    m_drawnView = m_view;
    const QPointF origin = toGround(m_view.topLeft());
    const QPointF end = toGround(m_view.bottomRight());
    m_vector.begin(m_drawn,
                   {origin.x(), (end.x() - origin.x()) / m_drawn.width(), 0.0, origin.y(), 0.0,
                    (end.y() - origin.y()) / m_drawn.height()},
                   devicePixelRatioF());
    m_drawing.start(0);
}

void PreviewDialog::drawSlice()
{
    constexpr int slice = 40; // ms
    const bool hasMore = m_vector.advance(slice);
    addPicture(m_drawn.copy(), m_drawnView);
    m_form->m_pLReadout->setText(hasMore ? tr("Dessin : %1 %", "MESS_VUE_DESSIN").arg(m_vector.percent())
                                         : QString());
    if (!hasMore)
        m_drawing.stop();
}

QPointF PreviewDialog::toGround(const QPointF &cell) const
{
    if (m_raster.isOpen())
        return m_ground.toGround(cell);
    return {m_extent.left() + cell.x() / m_size.width() * m_extent.width(),
            m_extent.bottom() - cell.y() / m_size.height() * m_extent.height()}; // y grows northwards
}

void PreviewDialog::showReadout(const QPointF &cell)
{
    const QPointF ground = toGround(cell);
    const int decimals =
        coordinateDecimals(m_raster.isOpen() ? m_ground.cellSize() : m_extent.width() / m_size.width());
    QString text =
        QStringLiteral("X %1   Y %2")
            .arg(locale().toString(ground.x(), 'f', decimals), locale().toString(ground.y(), 'f', decimals));
    if (m_raster.isOpen() && m_raster.isGrey()) {
        const auto value = m_ground.elevation(ground);
        text += QStringLiteral("   ")
            + labelText({"MESS_VALEUR", "Valeur %1"})
                  .arg(value ? locale().toString(*value, 'g', 7)
                             : labelText({"MESS_SANS_DONNEE", "sans donnée"}));
    }
    m_form->m_pLReadout->setText(text);
}
