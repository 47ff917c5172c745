#include "app/preview/PreviewPane.h"

#include "app/preview/LegendView.h"
#include "app/preview/MapBar.h"
#include "app/preview/MapView.h"
#include "app/preview/mapsaving.h"
#include "app/preview/previewgeometry.h"
#include "messages/shownnumber.h"
#include "panels/options/lightazimuth.h"

#include <QApplication>
#include <QClipboard>
#include <QEvent>
#include <QLabel>
#include <QLocale>
#include <QSplitter>
#include <QToolButton>
#include <QVBoxLayout>
#include <QtMath>

#include <algorithm>

PreviewPane::PreviewPane(QWidget *parent)
    : QGroupBox(parent)
    , m_bar(new MapBar)
    , m_view(new MapView)
    , m_legend(new LegendView)
    , m_parts(new QSplitter(Qt::Vertical))
    , m_note(new QLabel)
    , m_readout(new QLabel)
    , m_lines(this)
    , m_histogram(this)
{
    auto layout = new QVBoxLayout(this);
    layout->setSpacing(6);
    layout->addWidget(m_bar);
    auto map = new QWidget;
    auto row = new QHBoxLayout(map);
    row->setContentsMargins(0, 0, 0, 0);
    row->setSpacing(10);
    row->addWidget(m_view, 1);
    row->addWidget(m_legend);
    m_parts->addWidget(map);
    m_parts->setChildrenCollapsible(false);
    layout->addWidget(m_parts, 1);
    layout->addWidget(m_readout);
    layout->addWidget(m_note);
    m_view->setObjectName(QStringLiteral("m_pLInputImgPreview"));
    setFocusProxy(m_view);
    m_legend->setObjectName(QStringLiteral("m_pMapLegend"));
    m_note->setObjectName(QStringLiteral("m_pLPreviewNote"));
    m_readout->setObjectName(QStringLiteral("m_pLPreviewReadout"));
    for (QLabel *line : {m_note, m_readout}) { // a long text is no reason for a wider window
        line->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Fixed);
        line->setMinimumHeight(fontMetrics().height()); // nor an empty one for a larger map
    }
    connect(&m_lines, &LineDrawing::drawn, this, &PreviewPane::showLines);
    connect(&m_histogram, &DemHistogram::changed, this, &PreviewPane::showLegend);
    m_readout->hide();
    connectView();
    applyTexts();
}

PreviewPane::~PreviewPane() = default;

void PreviewPane::connectView()
{
    connect(m_view, &MapView::viewChanged, this, &PreviewPane::setView);
    connect(m_view, &MapView::hovered, this, &PreviewPane::showReadout);
    connect(m_view, &MapView::left, this, [this] {
        m_readout->clear();
        showLine(m_note);
    });
    connect(m_view, &MapView::markClicked, this, &PreviewPane::observerChosen);
    connect(m_view, &MapView::markMoving, this, [this](int mark, const QPointF &cell) {
        emit observerMoving(mark, m_scene.grid().toGround(cell));
    });
    connect(m_view, &MapView::markMoved, this, [this](int mark, const QPointF &cell, bool byKey) {
        emit observerMoved(mark, m_scene.grid().toGround(cell), byKey);
    });
    connect(m_view, &MapView::opacityChosen, this, &PreviewPane::setOpacity);
    connect(m_view, &MapView::swipeMoved, this, [this](double share) { m_swipe = share; });
    connect(m_bar, &MapBar::opacityChanged, this, &PreviewPane::setOpacity);
    connect(m_bar, &MapBar::zoomInClicked, m_view, &MapView::slot_zoomIn);
    connect(m_bar, &MapBar::zoomOutClicked, m_view, &MapView::slot_zoomOut);
    connect(m_bar, &MapBar::wholeClicked, m_view, &MapView::slot_showWhole);
    connect(m_bar, &MapBar::copyClicked, this, &PreviewPane::slot_copyPicture);
    connect(m_bar, &MapBar::saveClicked, this, &PreviewPane::slot_savePicture);
    connect(m_bar, &MapBar::slow, m_view, [this] { m_view->setOutdated(true); });
    connect(m_bar->swipeButton(), &QToolButton::toggled, this, &PreviewPane::setSwipe);
    connect(m_bar->legendButton(), &QToolButton::toggled, this, &PreviewPane::fitLegend);
}

QToolButton *PreviewPane::profileButton() const
{
    return m_bar->profileButton();
}

void PreviewPane::addBelow(QWidget *widget)
{
    m_parts->addWidget(widget);
    m_parts->setStretchFactor(0, 1);
}

bool PreviewPane::setDem(const DemInfo &dem)
{
    const bool anotherBand = !dem.isSameBandAs(m_scene.dem());
    const bool another = m_scene.setDem(dem);
    if (anotherBand) {
        stopDrawing();
        m_shown.reset();
        m_histogram.begin(dem.path, dem.band);
        showLayers();
    }
    m_histogram.setExtremes(dem.extremes);
    if (!another)
        return false;
    m_observerCells.clear();
    m_reportedPart = QRect();
    setView(QRectF(QPointF(0.0, 0.0), QSizeF(m_scene.size())));
    m_reportedPart = part();
    m_readout->clear();
    showNote();
    applyTexts();
    return true;
}

PreviewDem PreviewPane::dem() const
{
    if (!m_scene.ground().isOpen())
        return {};
    const DemInfo &dem = m_scene.dem();
    return {dem.path, dem.state, m_scene.size(), m_scene.ground().isGeoreferenced(), dem.band};
}

QRect PreviewPane::part() const
{
    const bool whole = m_visible.size() == QSizeF(m_scene.size());
    return m_scene.grid().otherSide(previewPart(whole ? QRectF() : m_visible, m_scene.size(), m_observerCells));
}

void PreviewPane::setView(const QRectF &view)
{
    m_visible = view;
    m_view->setView(m_scene.size(), view);
    m_view->setScale(m_scene.ground().isOpen() ? m_scene.grid().cellMetres(view.center()).width() : 0.0,
                     m_scene.grid().isScaleKnown());
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
    m_bar->setProductName(name);
}

void PreviewPane::showLayers()
{
    MapPicture map = m_scene.layers();
    map.opacity = m_opacity;
    map.swipe = m_swipe;
    m_view->setMap(map);
}

void PreviewPane::setOpacity(double opacity)
{
    m_opacity = opacity;
    m_bar->setOpacity(opacity);
    showLayers();
}

void PreviewPane::setSwipe(bool on)
{
    m_swipe = on ? std::optional(0.5) : std::nullopt;
    showLayers();
}

void PreviewPane::showInput(const QString &copy, const QRect &part)
{
    m_scene.addCopy(copy, part);
    showLayers();
    showNote();
}

bool PreviewPane::showOutput(const ShownProduct &product)
{
    stopDrawing();
    m_shown = product;
    if (!product.vector) {
        const ProductLook look = lookOf(product.options, m_scene.ground().elevationUnit());
        const ProductPicture picture =
            readProduct(product.file, look, product.turned ? Mirroring() : m_scene.grid().mirroring());
        m_scene.addProduct(picture, look, product.renewed);
        showLayers();
        showLegend();
        return !picture.picture.isNull();
    }
    m_linesRenewed = product.renewed;
    if (!beginLines(product.file))
        return false;
    showLegend();
    return true;
}

/// Begins to draw the lines of the copy's part as finely as the screen shows them.
bool PreviewPane::beginLines(const QString &file)
{
    constexpr double lineWidth = 0.9; // points on the screen, whatever the size of the picture
    constexpr int most = 4096;        // pixels a side
    const QRect part = m_scene.grid().otherSide(m_scene.copyPart());
    const QRectF shown = shownRect(m_visible, m_view->size());
    const double scale = m_visible.isEmpty() ? 1.0 : shown.width() / m_visible.width() * devicePixelRatioF();
    QSize size = (QSizeF(part.size()) * scale).toSize().expandedTo({1, 1});
    if (size.width() > most || size.height() > most)
        size.scale(most, most, Qt::KeepAspectRatio);
    const auto toGround = [this](const QPointF &cell) { return m_scene.grid().toGround(cell); };
    return m_lines.begin(file, size, pixelsToGround(toGround, part, size), lineWidth * devicePixelRatioF());
}

void PreviewPane::showLines(const QImage &lines, int percent)
{
    m_scene.addLines(lines, m_linesRenewed);
    showLayers();
    m_bar->setProgress(percent);
}

void PreviewPane::stopDrawing()
{
    if (m_lines.stop())
        m_bar->setProgress(-1);
}

void PreviewPane::showLiveOutput(const QImage &picture, const IntervisibilityOptions &options)
{
    stopDrawing();
    m_shown = ShownProduct{.options = options};
    m_scene.addProduct(
        {picture.mirrored(m_scene.grid().mirroring().columns, m_scene.grid().mirroring().rows), {}, {}},
        lookOf(options, m_scene.ground().elevationUnit()), true);
    showLayers();
    showLegend();
}

void PreviewPane::clearOutput(const QString &text)
{
    stopDrawing();
    m_shown.reset();
    m_scene.clearProduct();
    showLayers();
    showLegend();
    m_view->setText(text);
}

void PreviewPane::setReducing(int percent)
{
    m_bar->setProgress(percent);
}

void PreviewPane::setComputing(int percent)
{
    m_bar->setProgress(percent);
}

void PreviewPane::showLegend()
{
    LegendFacts facts;
    facts.elevationUnit = m_scene.ground().elevationUnit();
    facts.elevations = m_histogram.histogram();
    facts.hasVoids = m_scene.hasVoids();
    facts.look.form = ProductForm::Lines; // without a product there are no cells to count
    if (m_shown) {
        facts.title = m_bar->productName();
        facts.options = m_shown->options;
        facts.look = m_scene.look();
        facts.product = m_scene.product();
        facts.table = m_shown->table;
        facts.extremes = m_scene.dem().extremes;
        facts.cellArea = m_scene.grid().pixelArea(m_scene.grid().otherSide(m_scene.copyPart()),
                                                  facts.product.picture.size());
    }
    m_legend->setLegend(legendOf(facts, locale()));
}

/// Hides the legend where the pane is too narrow for it.
void PreviewPane::fitLegend()
{
    constexpr int narrow = 440;
    m_legend->setVisible(m_bar->legendButton()->isChecked() && width() >= narrow);
}

/// The circle of an observer's maximum distance, in cells; empty where there is none or it cannot be drawn.
QPolygonF PreviewPane::rangeOf(const ObserverPoint &observer) const
{
    constexpr int corners = 72;
    if (observer.maxDistance <= 0.0)
        return {};
    const QSizeF metres = m_scene.ground().metresPerUnit(observer.position());
    if (metres.width() <= 0.0 || metres.height() <= 0.0)
        return {};
    QPolygonF range;
    for (int corner = 0; corner < corners; ++corner) {
        const double angle = 2.0 * M_PI * corner / corners;
        const QPointF way(observer.maxDistance / metres.width() * std::cos(angle),
                          observer.maxDistance / metres.height() * std::sin(angle));
        range += m_scene.grid().toCells(observer.position() + way);
    }
    constexpr double mostCells = 1e9; // a larger circle cannot be seen, and Qt would dash it without end
    const QRectF box = range.boundingRect();
    return box.width() < mostCells && box.height() < mostCells ? range : QPolygonF();
}

void PreviewPane::setObservers(const QList<ObserverPoint> &observers, int current)
{
    constexpr int mostRanges = 200; // more circles would hide the picture
    QVector<MapMark> marks;
    m_observerCells.clear();
    for (int row = 0; m_scene.ground().isOpen() && row < observers.size(); ++row) {
        const ObserverPoint &observer = observers.at(row);
        const bool isCurrent = row == current;
        const QPointF cell = m_scene.grid().toCells(observer.position());
        const bool hasRange = isCurrent || observers.size() <= mostRanges;
        marks += {cell, hasRange ? rangeOf(observer) : QPolygonF(), row + 1, observer.enabled, isCurrent};
        if (observer.enabled)
            m_observerCells += cell;
    }
    m_view->setMarks(marks);
    reportPart();
}

void PreviewPane::setCompass(const std::optional<double> &compass)
{
    m_view->setLight(compass ? std::optional(lightAzimuth(*compass)) : std::nullopt);
}

void PreviewPane::setPlacing(bool placing)
{
    m_view->setDoubleClickZooms(!placing);
}

QPointF PreviewPane::groundAt(int x, int y, const QSize &shown) const
{
    return m_scene.grid().toGround(m_view->cellAt(x, y, shown));
}

void PreviewPane::showReadout(const QPointF &cell)
{
    const DemGround &ground = m_scene.ground();
    const QPointF place = m_scene.grid().toGround(cell);
    const int decimals = coordinateDecimals(ground.cellSize());
    const auto elevation = ground.elevation(place);
    QString text =
        tr("X %1   Y %2   Altitude %3", "MESS_APERCU_POS")
            .arg(shownNumber(place.x(), 'f', decimals, locale()),
                 shownNumber(place.y(), 'f', decimals, locale()),
                 elevation ? shownNumber(*elevation, 'g', 7, locale()) : tr("sans donnée", "MESS_SANS_DONNEE"));
    const QString value = valueText(m_scene.look(), m_scene.productValue(cell), locale());
    const QString more = m_placeText ? m_placeText(cell) : QString();
    for (const QString &part : {value, more}) {
        if (!part.isEmpty())
            text += QStringLiteral("   ") + part;
    }
    m_readout->setText(text);
    showLine(m_readout);
}

/// Both lines share one place: the read-out while the mouse is over the map, and otherwise the note.
void PreviewPane::showLine(QLabel *line)
{
    for (QLabel *other : {m_note, m_readout})
        other->setVisible(other == line);
}

/// Says how large the cells are that the product was computed on.
void PreviewPane::showNote()
{
    const QSize copy = m_scene.copySize();
    if (copy.isEmpty()) {
        m_note->clear();
        return;
    }
    const DemGround &ground = m_scene.ground();
    const auto text = [&](double size) {
        const QString unit = ground.unit();
        const QString number = lengthText(size, locale());
        return unit == QStringLiteral("°") ? number + unit : (number + QLatin1Char(' ') + unit).trimmed();
    };
    const QRect part = m_scene.copyPart();
    const double reduction = std::max(static_cast<double>(part.width()) / copy.width(),
                                      static_cast<double>(part.height()) / copy.height());
    const double cell = ground.cellSize();
    m_note->setText(
        reduction > 1.0
            ? tr("Aperçu calculé sur des cellules de %1 (MNT : %2).", "MESS_APERCU_CELLULES")
                  .arg(text(cell * reduction), text(cell))
            : tr("Aperçu à la résolution du MNT (cellules de %1).", "MESS_APERCU_EXACT").arg(text(cell)));
    if (m_scene.grid().isRotated())
        m_note->setText(
            m_note->text() + QLatin1Char(' ')
            + tr("Le MNT est tourné : le haut de la carte n'est pas le nord.", "MESS_APERCU_TOURNE"));
    if (!m_remark.isEmpty())
        m_note->setText(m_remark + QLatin1Char(' ') + m_note->text());
    m_note->setToolTip(m_note->text() + QLatin1Char('\n')
                       + tr("La molette agrandit une partie du MNT, alors calculée plus finement ; faites-la "
                            "glisser pour la déplacer.",
                            "MESS_APERCU_EXPL"));
}

void PreviewPane::setRemark(const QString &remark)
{
    if (remark == m_remark)
        return;
    m_remark = remark;
    showNote();
}

MapPage PreviewPane::page()
{
    return mapPage(*m_view, m_visible, m_scene.grid().cellMetres(m_visible.center()).width(),
                   m_scene.grid().isScaleKnown(), m_note->text(), m_legend->legend());
}

void PreviewPane::slot_copyPicture()
{
    if (!m_scene.layers().ground.isEmpty())
        QApplication::clipboard()->setImage(QImage::fromData(mapFile(page(), MapFileFormat::Png)));
}

void PreviewPane::slot_savePicture()
{
    if (!m_scene.layers().ground.isEmpty())
        saveMap(window(), page(), m_nameProposal ? m_nameProposal() : QString());
}

void PreviewPane::resizeEvent(QResizeEvent *event)
{
    QGroupBox::resizeEvent(event);
    fitLegend();
}

void PreviewPane::changeEvent(QEvent *event)
{
    if (event->type() == QEvent::LanguageChange)
        applyTexts();
    QGroupBox::changeEvent(event);
}

void PreviewPane::applyTexts()
{
    m_bar->applyTexts();
    if (!m_scene.ground().isOpen())
        m_view->setText(
            tr("Choisissez un Modèle Numérique de Terrain : il s'affiche ici.", "MESS_APERCU_SANS_MNT"));
    m_view->setAccessibleName(tr("Carte du MNT et du produit", "MESS_CARTE_NOM"));
    m_view->setAccessibleDescription(
        tr("Flèches : déplacer la carte ; +, − et 0 : agrandir, réduire, tout montrer ; Inser : placer "
           "l'observateur au milieu ; Maj et flèches : déplacer l'observateur",
           "MESS_CARTE_TOUCHES"));
    showNote();
    showLegend();
}
