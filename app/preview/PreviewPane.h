#pragma once

#include "app/preview/PreviewLabel.h"
#include "app/preview/Previews.h"
#include "app/preview/previewgeometry.h"
#include "dataset/demground.h"
#include "dataset/vectorpicture.h"
#include "panels/options/observerpoints.h"
#include "panels/optionsWidget.h"

#include <QGroupBox>
#include <QTimer>

#include <array>
#include <optional>

class ProgressWidget;
class QBoxLayout;
class QLabel;

/// The previews of DEM and product side by side, or one above the other where the pane is narrow. Shows the
/// pictures that it receives, and reports what the user points at in the DEM's coordinates.
class PreviewPane : public QGroupBox
{
    Q_OBJECT

public:
    explicit PreviewPane(QWidget *parent = nullptr);
    ~PreviewPane() override;

    /// The DEM or band changed. Another file removes the pictures and shows the whole DEM. Returns whether the
    /// file is another one.
    bool setDem(const DemInfo &dem);
    PreviewDem dem() const;

    /// The part of the DEM, in cells, that the previews should be computed on. partChanged() reports changes.
    QRect part() const;

    /// Sets the title of the product's preview.
    void setProductName(const QString &name);

    /// Shows the reduced copy of a part of the DEM. `copy`: its path. `part`: cells of the DEM.
    void showInput(const QString &copy, const QRect &part);

    /// Shows the product of such a copy. A vector product is drawn over the elevations, in slices of the event
    /// loop. `turned`: the rows of a raster product run from the north and its columns from the west, unlike
    /// those of the DEM. Returns false when the file cannot be opened.
    bool showOutput(const QString &product, const QRect &part, bool vector, bool turned);

    /// Removes the picture of the product. `text` says why there is none; empty while it is being computed.
    void clearOutput(const QString &text);

    /// Percentage of the running step; -1: it does not run. A step that takes a while shows a turning wheel.
    void setReducing(int percent);
    void setComputing(int percent);

    /// Draws the observers over both pictures; part() includes them. `current`: row of the current observer, or
    /// -1.
    void setObservers(const QList<ObserverPoint> &observers, int current);

    /// Draws the light of a shaded relief. `compass`: its compass reading in degrees; empty: no light is drawn.
    void setCompass(const std::optional<double> &compass);

    /// Both with one picture above the other.
    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

    PreviewLabel *inputLabel() const { return m_input.picture; }

    /// The DEM's coordinates at the place that PreviewLabel::clicked() reports.
    QPointF groundAt(int x, int y, const QSize &shown) const;

signals:
    /// part() changed.
    void partChanged(const QRect &part);
    /// The user clicked an observer. `observer`: its row.
    void observerChosen(int observer);
    /// The user dragged an observer to another place, in the DEM's coordinates.
    void observerMoved(int observer, const QPointF &ground);

protected:
    void resizeEvent(QResizeEvent *event) override;
    void changeEvent(QEvent *event) override;

private:
    struct Side
    {
        QLabel *title;
        ProgressWidget *wheel;
        QTimer *wheelDelay; ///< its timeout shows the wheel; a quick step ends before
        QLabel *percent;
        PreviewLabel *picture;
    };

    Side addSide(const QString &titleName, const QString &pictureName);
    void setView(const QRectF &view);
    void reportPart();
    void drawLines();
    void stopDrawing();
    QSize sizeAround(const QSize &picture) const;
    void fitPictures();
    void showProgress(Side &side, int percent);
    void showReadout(const QPointF &cell);
    void showNote();
    void applyTexts();
    QPolygonF rangeOf(const ObserverPoint &observer) const;
    std::array<double, 6> pictureToGround(const QSize &picture, const QRect &part) const;
    QPointF toGround(const QPointF &shown) const;
    QPointF toShown(const QPointF &ground) const;
    QRect otherSide(const QRect &part) const;
    QImage upright(const QImage &picture) const;

    QBoxLayout *m_sides;
    Side m_input;
    Side m_output;
    QLabel *m_note;
    QLabel *m_readout;
    DemInfo m_dem;
    DemGround m_ground;
    Mirroring m_mirroring;
    // Cells below are those of the picture, with north above and west at the left, where nothing else is said.
    QRectF m_view;                    ///< visible cells
    QVector<QPointF> m_observerCells; ///< cells of the enabled observers
    QRect m_reportedPart;             ///< part(), in cells of the DEM, when it was last reported
    QImage m_drawn;                   ///< the picture that m_lines draws into
    VectorPicture m_lines;            ///< the vector product
    QRect m_linesPart;                ///< cells that m_drawn covers
    QTimer m_drawing;                 ///< draws the vector product in slices
    QSize m_copySize;                 ///< columns and rows of the reduced copy that is shown
    QRect m_copyPart;                 ///< cells of the DEM that the reduced copy covers
};
