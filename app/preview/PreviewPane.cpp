#include "app/preview/PreviewPane.h"

#include "app/preview/previewgeometry.h"
#include "dataset/rasterpicture.h"
#include "runner/ProgressWidget.h"

#include <QEvent>
#include <QLabel>
#include <QLocale>
#include <QPainter>
#include <QVBoxLayout>
#include <QtMath>

namespace
{

/// The grey elevations as a background for lines: paler, and enlarged where the lines would be coarse.
QImage groundForLines(const QImage &elevations)
{
    QImage ground = elevations;
    if (std::max(ground.width(), ground.height()) < longestReducedSide)
        ground = ground.scaled(longestReducedSide, longestReducedSide, Qt::KeepAspectRatio);
    ground = ground.convertToFormat(QImage::Format_ARGB32_Premultiplied);
    QPainter painter(&ground);
    painter.setCompositionMode(QPainter::CompositionMode_SourceAtop);
    painter.fillRect(ground.rect(), QColor(252, 250, 244, 140));
    return ground;
}

} // namespace

PreviewPane::PreviewPane(QWidget *parent)
    : QGroupBox(parent)
    , m_sides(new QBoxLayout(QBoxLayout::LeftToRight))
    , m_input(addSide(QStringLiteral("m_pLInputImgPreviewText"), QStringLiteral("m_pLInputImgPreview")))
    , m_output(addSide(QStringLiteral("m_pLOutputImgPreviewText"), QStringLiteral("m_pLOutputImgPreview")))
    , m_note(new QLabel)
    , m_readout(new QLabel)
{
    auto layout = new QVBoxLayout(this);
    layout->addLayout(m_sides, 1);
    layout->addWidget(m_note);
    layout->addWidget(m_readout);
    layout->addStretch(0);
    m_note->setObjectName(QStringLiteral("m_pLPreviewNote"));
    m_readout->setObjectName(QStringLiteral("m_pLPreviewReadout"));
    m_readout->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Fixed);
    m_note->setWordWrap(true);
    connect(&m_drawing, &QTimer::timeout, this, &PreviewPane::drawLines);
    m_sides->setSpacing(10);
    applyTexts();
}

PreviewPane::~PreviewPane() = default;

PreviewPane::Side PreviewPane::addSide(const QString &titleName, const QString &pictureName)
{
    constexpr int patience = 500; // ms
    Side side{new QLabel, new ProgressWidget, new QTimer(this), new QLabel, new PreviewLabel};
    side.title->setObjectName(titleName);
    side.picture->setObjectName(pictureName);
    const int line = side.title->fontMetrics().height();
    side.wheel->setFixedSize(line, line);
    side.percent->setFixedHeight(line);
    side.wheel->hide();
    auto titleRow = new QHBoxLayout;
    titleRow->addWidget(side.title);
    titleRow->addStretch(1);
    titleRow->addWidget(side.percent);
    titleRow->addWidget(side.wheel);
    auto column = new QVBoxLayout;
    column->addLayout(titleRow);
    column->addWidget(side.picture, 1);
    m_sides->addLayout(column, 1);

    connect(side.picture, &PreviewLabel::viewChanged, this, &PreviewPane::setView);
    connect(side.picture, &PreviewLabel::hovered, this, &PreviewPane::showReadout);
    connect(side.picture, &PreviewLabel::left, this, [this] { m_readout->clear(); });
    connect(side.picture, &PreviewLabel::markMoved, this,
            [this](int mark, const QPointF &cell) { emit observerMoved(mark, toGround(cell)); });
    connect(side.picture, &PreviewLabel::markClicked, this, &PreviewPane::observerChosen);
    side.wheelDelay->setSingleShot(true);
    side.wheelDelay->setInterval(patience);
    connect(side.wheelDelay, &QTimer::timeout, this, [side] {
        side.wheel->show();
        side.picture->setOutdated(true);
    });
    return side;
}

bool PreviewPane::setDem(const DemInfo &dem)
{
    const bool another = !dem.isSameFileAs(m_dem);
    if (!dem.isSameBandAs(m_dem))
        m_ground = dem.path.isEmpty() ? DemGround() : DemGround(dem.path, dem.band);
    m_dem = dem;
    m_mirroring = m_ground.isGeoreferenced()
        ? Mirroring{.columns = m_ground.columnsRunWest(), .rows = m_ground.rowsRunNorth()}
        : Mirroring();
    if (!another)
        return false;
    m_copySize = QSize();
    stopDrawing();
    for (const Side &side : {m_input, m_output})
        side.picture->setPicture({}, {});
    m_view = QRectF(0.0, 0.0, m_ground.width(), m_ground.height());
    for (const Side &side : {m_input, m_output})
        side.picture->setView(m_view.size().toSize(), m_view);
    m_observerCells.clear();
    m_reportedPart = part();
    m_readout->clear();
    applyTexts();
    fitPictures();
    return true;
}

PreviewDem PreviewPane::dem() const
{
    if (!m_ground.isOpen())
        return {};
    return {m_dem.path, m_dem.state, {m_ground.width(), m_ground.height()}, m_ground.isGeoreferenced()};
}

QRect PreviewPane::part() const
{
    const QSize size(m_ground.width(), m_ground.height());
    const bool whole = m_view.size() == QSizeF(size);
    return otherSide(previewPart(whole ? QRectF() : m_view, size, m_observerCells));
}

void PreviewPane::setView(const QRectF &view)
{
    m_view = view;
    for (const Side &side : {m_input, m_output})
        side.picture->setView({m_ground.width(), m_ground.height()}, view);
    fitPictures();
    reportPart();
}

void PreviewPane::reportPart()
{
    const QRect now = part();
    if (now == m_reportedPart)
        return;
    m_reportedPart = now;
    emit partChanged(now);
}

void PreviewPane::setProductName(const QString &name)
{
    m_output.title->setText(name);
}

void PreviewPane::showInput(const QString &copy, const QRect &part)
{
    const RasterPicture picture(copy, m_dem.band);
    m_copySize = picture.size();
    m_copyPart = part;
    m_input.picture->setPicture(upright(picture.read(QRect(QPoint(0, 0), picture.size()), picture.size())),
                                otherSide(part));
    showNote();
}

bool PreviewPane::showOutput(const QString &product, const QRect &part, bool vector, bool turned)
{
    stopDrawing();
    if (!vector) {
        const RasterPicture picture(product);
        const QImage image = picture.read(QRect(QPoint(0, 0), picture.size()), picture.size());
        m_output.picture->setPicture(turned ? image : upright(image), otherSide(part));
        return !m_output.picture->picture().isNull();
    }
    constexpr double lineWidth = 0.6; // pixels on the screen, whatever the size of the picture
    m_lines = VectorPicture(product);
    if (!m_lines.isOpen())
        return false;
    m_drawn = groundForLines(m_input.picture->picture());
    m_linesPart = otherSide(part);
    const QSize room = m_output.picture->size();
    const double shown = std::max(1, std::min(room.width(), room.height()));
    m_lines.begin(m_drawn, pictureToGround(m_drawn.size(), m_linesPart),
                  lineWidth * std::max(1.0, std::max(m_drawn.width(), m_drawn.height()) / shown));
    m_drawing.start(0);
    return true;
}

void PreviewPane::drawLines()
{
    constexpr int slice = 30; // ms
    const bool hasMore = m_lines.advance(slice);
    m_output.picture->setPicture(m_drawn.copy(), m_linesPart);
    if (hasMore)
        showProgress(m_output, m_lines.percent());
    else
        stopDrawing();
}

void PreviewPane::stopDrawing()
{
    if (!m_drawing.isActive())
        return;
    m_drawing.stop();
    showProgress(m_output, -1);
}

void PreviewPane::clearOutput(const QString &text)
{
    stopDrawing();
    m_output.picture->setPicture({}, {});
    m_output.picture->setText(text);
}

void PreviewPane::setReducing(int percent)
{
    showProgress(m_input, percent);
}

void PreviewPane::setComputing(int percent)
{
    showProgress(m_output, percent);
}

void PreviewPane::showProgress(Side &side, int percent)
{
    if (percent < 0) {
        side.wheelDelay->stop();
        side.wheel->hide();
    } else if (side.wheel->isHidden() && !side.wheelDelay->isActive()) {
        side.wheelDelay->start();
    }
    side.percent->setText(
        !side.wheel->isHidden() && percent > 0 ? locale().toString(percent) + QStringLiteral(" %") : QString());
}

/// The circle of an observer's maximum distance, in cells; empty where there is none or it cannot be drawn.
QPolygonF PreviewPane::rangeOf(const ObserverPoint &observer) const
{
    constexpr int corners = 72;
    if (observer.maxDistance <= 0.0)
        return {};
    const QSizeF metres = m_ground.metresPerUnit(observer.position());
    if (metres.width() <= 0.0 || metres.height() <= 0.0)
        return {};
    QPolygonF range;
    for (int corner = 0; corner < corners; ++corner) {
        const double angle = 2.0 * M_PI * corner / corners;
        const QPointF way(observer.maxDistance / metres.width() * std::cos(angle),
                          observer.maxDistance / metres.height() * std::sin(angle));
        range += toShown(observer.position() + way);
    }
    constexpr double mostCells = 1e9; // a larger circle cannot be seen, and Qt would dash it without end
    const QRectF box = range.boundingRect();
    return box.width() < mostCells && box.height() < mostCells ? range : QPolygonF();
}

void PreviewPane::setObservers(const QList<ObserverPoint> &observers, int current)
{
    constexpr int mostRanges = 200; // more circles would hide the picture
    QVector<PreviewMark> marks;
    m_observerCells.clear();
    for (int row = 0; m_ground.isOpen() && row < observers.size(); ++row) {
        const ObserverPoint &observer = observers.at(row);
        const bool isCurrent = row == current;
        const QPointF cell = toShown(observer.position());
        const bool hasRange = isCurrent || observers.size() <= mostRanges;
        marks += {cell, hasRange ? rangeOf(observer) : QPolygonF(), observer.enabled, isCurrent};
        if (observer.enabled)
            m_observerCells += cell;
    }
    for (const Side &side : {m_input, m_output})
        side.picture->setMarks(marks);
    reportPart();
}

void PreviewPane::setCompass(const std::optional<double> &compass)
{
    const auto light = compass ? std::optional(lightDirection(*compass)) : std::nullopt;
    m_output.picture->setLight(light);
}

QPointF PreviewPane::groundAt(int x, int y, const QSize &shown) const
{
    return toGround(m_input.picture->cellAt(x, y, shown));
}

QPointF PreviewPane::toGround(const QPointF &shown) const
{
    return m_ground.toGround(mirrored(shown, {m_ground.width(), m_ground.height()}, m_mirroring));
}

QPointF PreviewPane::toShown(const QPointF &ground) const
{
    return mirrored(m_ground.toCells(ground), {m_ground.width(), m_ground.height()}, m_mirroring);
}

/// The part of the DEM for a part of the picture, and the other way round.
QRect PreviewPane::otherSide(const QRect &part) const
{
    return mirrored(part, {m_ground.width(), m_ground.height()}, m_mirroring);
}

QImage PreviewPane::upright(const QImage &picture) const
{
    return picture.mirrored(m_mirroring.columns, m_mirroring.rows);
}

/// The affine transform, in GDAL's order, from pixels of a picture of that part, in cells of the picture, to
/// the DEM's coordinates.
std::array<double, 6> PreviewPane::pictureToGround(const QSize &picture, const QRect &part) const
{
    const QPointF origin = toGround(part.topLeft());
    const QPointF right =
        toGround(part.topLeft() + QPointF(part.width() / double(picture.width()), 0.0)) - origin;
    const QPointF down =
        toGround(part.topLeft() + QPointF(0.0, part.height() / double(picture.height()))) - origin;
    return {origin.x(), right.x(), down.x(), origin.y(), right.y(), down.y()};
}

void PreviewPane::showReadout(const QPointF &cell)
{
    const QPointF ground = toGround(cell);
    const int decimals = coordinateDecimals(m_ground.cellSize());
    const auto elevation = m_ground.elevation(ground);
    m_readout->setText(
        tr("X %1   Y %2   Altitude %3", "MESS_APERCU_POS")
            .arg(locale().toString(ground.x(), 'f', decimals), locale().toString(ground.y(), 'f', decimals),
                 elevation ? locale().toString(*elevation, 'g', 7) : tr("sans donnée", "MESS_SANS_DONNEE")));
}

/// Says how large the cells are that the previews were computed on.
void PreviewPane::showNote()
{
    if (m_copySize.isEmpty()) {
        m_note->clear();
        return;
    }
    const auto text = [this](double size) {
        const QString unit = m_ground.unit();
        return lengthText(size, locale()) + (unit == QStringLiteral("°") ? unit : QLatin1Char(' ') + unit);
    };
    const double cell = m_ground.cellSize();
    const double reduction = std::max(static_cast<double>(m_copyPart.width()) / m_copySize.width(),
                                      static_cast<double>(m_copyPart.height()) / m_copySize.height());
    m_note->setText(reduction > 1.0
                        ? tr("Aperçu calculé sur des cellules de %1 (MNT : %2).", "MESS_APERCU_CELLULES")
                              .arg(text(cell * reduction).trimmed(), text(cell).trimmed())
                        : tr("Aperçu à la résolution du MNT (cellules de %1).", "MESS_APERCU_EXACT")
                              .arg(text(cell).trimmed()));
    m_note->setToolTip(tr("La molette agrandit une partie du MNT, alors calculée plus finement ; faites-la "
                          "glisser pour la déplacer.",
                          "MESS_APERCU_EXPL"));
}

QSize PreviewPane::sizeHint() const
{
    return sizeAround(m_input.picture->sizeHint());
}

QSize PreviewPane::minimumSizeHint() const
{
    return sizeAround(m_input.picture->minimumSizeHint());
}

/// The size of the pane with two pictures of a size above one another.
QSize PreviewPane::sizeAround(const QSize &picture) const
{
    const QMargins margins = layout()->contentsMargins();
    return {picture.width() + margins.left() + margins.right(),
            2 * picture.height() + 6 * fontMetrics().height()};
}

/// Limits the height of pictures side by side to what they need, so that the note and the read-out stand right
/// below.
void PreviewPane::fitPictures()
{
    int most = QWIDGETSIZE_MAX;
    if (m_sides->direction() == QBoxLayout::LeftToRight && !m_view.isEmpty()) {
        const QMargins margins = layout()->contentsMargins();
        const double room = (width() - margins.left() - margins.right() - m_sides->spacing()) / 2.0;
        most = std::max(m_input.picture->minimumSizeHint().height(),
                        qCeil(room * m_view.height() / m_view.width()));
    }
    for (const Side &side : {m_input, m_output})
        side.picture->setMaximumHeight(most);
}

void PreviewPane::resizeEvent(QResizeEvent *event)
{
    constexpr double narrow = 0.85; // below this ratio, pictures above one another are the larger ones
    m_sides->setDirection(width() > narrow * height() ? QBoxLayout::LeftToRight : QBoxLayout::TopToBottom);
    fitPictures();
    QGroupBox::resizeEvent(event);
}

void PreviewPane::changeEvent(QEvent *event)
{
    if (event->type() == QEvent::LanguageChange)
        applyTexts();
    QGroupBox::changeEvent(event);
}

void PreviewPane::applyTexts()
{
    m_input.title->setText(tr("MNT", "MESS_APERCU_MNT"));
    m_input.picture->setText(
        m_ground.isOpen()
            ? QString()
            : tr("Choisissez un Modèle Numérique de Terrain : il s'affiche ici.", "MESS_APERCU_SANS_MNT"));
    m_input.picture->setAccessibleName(tr("Aperçu du MNT", "MESS_APERCU_ENTREE"));
    m_output.picture->setAccessibleName(tr("Aperçu du résultat", "MESS_APERCU_SORTIE"));
    showNote();
}
