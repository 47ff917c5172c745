#pragma once

#include "app/preview/DemHistogram.h"
#include "app/preview/LineDrawing.h"
#include "app/preview/MapScene.h"
#include "app/preview/Previews.h"
#include "app/preview/map/mapfile.h"
#include "panels/options/observerpoints.h"

#include <QGroupBox>
#include <QImage>

#include <optional>

class LegendView;
class MapBar;
class MapView;
class QLabel;
class QSplitter;
class QToolButton;

/// A product of the reduced copy that is shown, and what its legend needs to know.
struct ShownProduct
{
    QString file;
    ProcessOptions options;
    QList<QuvoColorDef> table; ///< that the tool of a colour relief has read
    bool vector = false;       ///< the product is a vector file
    bool turned = false;       ///< its rows run from the north and its columns from the west, unlike the DEM's
    bool renewed = true;       ///< earlier pictures of the product are of other options
};

/// The group of the main dialog with the map of the DEM: the relief of the ground with the product of the
/// current process over it, the legend, and what is under the mouse. It shows what it is given; Previews makes
/// the files.
class PreviewPane : public QGroupBox
{
    Q_OBJECT

public:
    explicit PreviewPane(QWidget *parent = nullptr);
    ~PreviewPane() override;

    /// Shows another DEM, or its band or extremes changed. Returns whether the DEM itself is another one, so
    /// that all pictures and the view are new.
    bool setDem(const DemInfo &dem);
    PreviewDem dem() const;
    const MapScene &scene() const { return m_scene; }

    /// The part of the DEM, in cells, that the previews should be computed on. partChanged() reports changes.
    QRect part() const;

    /// Sets the title of the product.
    void setProductName(const QString &name);

    /// Shows the reduced copy of a part of the DEM as ground. `copy`: its path. `part`: cells of the DEM.
    void showInput(const QString &copy, const QRect &part);

    /// Shows the product of that copy. A vector product is drawn in slices of the event loop. Returns false
    /// when the file cannot be opened.
    bool showOutput(const ShownProduct &product);

    /// Shows a picture of seen and hidden cells of the copy in place of the tool's product. options: those of
    /// the picture, for the legend.
    void showLiveOutput(const QImage &picture, const IntervisibilityOptions &options);

    /// Removes the picture of the product. `text` says why there is none, or what the user can do; empty while
    /// it is being computed.
    void clearOutput(const QString &text);

    /// Says below the map what else the product does not show; empty: nothing.
    void setRemark(const QString &remark);

    /// Percentage of the running step; -1: it does not run. A step that takes a while shows a turning wheel.
    void setReducing(int percent);
    void setComputing(int percent);

    /// Draws the observers; part() includes them. `current`: row of the current observer, or -1.
    void setObservers(const QList<ObserverPoint> &observers, int current);

    /// Draws the light of a shaded relief. `compass`: its compass reading in degrees; empty: no light is drawn.
    void setCompass(const std::optional<double> &compass);

    /// Whether a click on the map sets an observer, so that a double click does not zoom.
    void setPlacing(bool placing);

    MapView *view() const { return m_view; }
    QToolButton *profileButton() const;

    /// Puts a widget below the map; the pane owns it from then on.
    void addBelow(QWidget *widget);

    /// The DEM's coordinates at the place that MapView::clicked() reports.
    QPointF groundAt(int x, int y, const QSize &shown) const;

    /// Says more about the place under the mouse, behind its coordinates. Called for each move of the mouse;
    /// returns an empty text where there is nothing to say.
    using PlaceText = std::function<QString(const QPointF &cell)>;
    void setPlaceText(const PlaceText &text) { m_placeText = text; }

    /// Name of the file that a saved picture is proposed as, without its ending.
    using NameProposal = std::function<QString()>;
    void setNameProposal(const NameProposal &proposal) { m_nameProposal = proposal; }

    QSize minimumSizeHint() const override { return {320, 260}; }

signals:
    /// part() changed.
    void partChanged(const QRect &part);
    /// The user clicked an observer. `observer`: its row.
    void observerChosen(int observer);
    /// The user drags an observer, or has dragged it, to another place in the DEM's coordinates.
    /// byKey: a key moved the observer, and no drag.
    void observerMoving(int observer, const QPointF &ground);
    void observerMoved(int observer, const QPointF &ground, bool byKey);

public slots:
    void slot_copyPicture();
    void slot_savePicture();

protected:
    void changeEvent(QEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;

private:
    void connectView();
    void setView(const QRectF &view);
    void setOpacity(double opacity);
    void setSwipe(bool on);
    void showLayers();
    void showLegend();
    void fitLegend();
    void reportPart();
    bool beginLines(const QString &file);
    void showLines(const QImage &lines, int percent);
    void stopDrawing();
    void showReadout(const QPointF &cell);
    void showNote();
    void showLine(QLabel *line);
    void applyTexts();
    QPolygonF rangeOf(const ObserverPoint &observer) const;
    MapPage page();

    MapBar *m_bar;
    MapView *m_view;
    LegendView *m_legend;
    QSplitter *m_parts; ///< the map, and what is added below it
    QLabel *m_note;
    QString m_remark; ///< setRemark()
    QLabel *m_readout;
    MapScene m_scene;
    double m_opacity = 1.0;
    std::optional<double> m_swipe;
    QRectF m_visible;                 ///< visible cells of the map
    QVector<QPointF> m_observerCells; ///< cells of the enabled observers
    QRect m_reportedPart;             ///< part(), in cells of the DEM, when it was last reported
    LineDrawing m_lines;              ///< draws a vector product
    bool m_linesRenewed = true;       ///< ShownProduct::renewed of those lines
    DemHistogram m_histogram;
    std::optional<ShownProduct> m_shown; ///< the product that the legend describes
    PlaceText m_placeText;
    NameProposal m_nameProposal;
};
