#pragma once

#include "app/preview/PreviewLabel.h"
#include "app/preview/Previews.h"
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

/// The DEM and the product side by side, or one above the other where the pane is narrow. It shows what is
/// given to it, and tells what the user points at in the DEM's coordinates.
class PreviewPane : public QGroupBox
{
    Q_OBJECT

public:
    explicit PreviewPane(QWidget *parent = nullptr);
    ~PreviewPane() override;

    /// Another DEM or band; true where the file is another one.
    bool setDem(const DemInfo &dem);
    PreviewDem dem() const;

    /// The part of the DEM, in cells, that the previews are to be computed on; partChanged() tells of another
    /// one.
    QRect part() const;

    /// Name of the product.
    void setProductName(const QString &name);

    /// The reduced copy of a part of the DEM.
    void showInput(const QString &copy, const QRect &part);

    /// The product of such a copy; a vector one is drawn over the elevations, in slices of the event loop.
    /// False when the file cannot be shown.
    bool showOutput(const QString &product, const QRect &part, bool vector);

    /// There is no product to show; the text says why. Empty: it is being made.
    void clearOutput(const QString &text);

    /// Percentages of what runs; -1: nothing does. What takes its time turns a wheel.
    void setReducing(int percent);
    void setComputing(int percent);

    /// Observers, drawn over both pictures and taken into part(); current: -1: none is.
    void setObservers(const QList<ObserverPoint> &observers, int current);

    /// The compass reading of a shaded relief, whose light is drawn; none: there is no light.
    void setCompass(const std::optional<double> &compass);

    /// Of one picture above the other.
    QSize minimumSizeHint() const override;

    PreviewLabel *inputLabel() const { return m_input.picture; }

    /// The DEM's coordinates of a place as PreviewLabel::clicked() tells it.
    QPointF groundAt(int x, int y, const QSize &shown) const;

signals:
    void partChanged(const QRect &part);
    /// An observer was clicked, or dragged to another place.
    void observerChosen(int observer);
    void observerMoved(int observer, const QPointF &ground);

protected:
    void resizeEvent(QResizeEvent *event) override;
    void changeEvent(QEvent *event) override;

private:
    struct Side
    {
        QLabel *title;
        ProgressWidget *wheel;
        QTimer *slow; ///< runs while the wheel waits whether it is needed at all
        QLabel *percent;
        PreviewLabel *picture;
    };

    Side addSide(const QString &titleName, const QString &pictureName);
    void setView(const QRectF &view);
    void tellPart();
    void drawLines();
    void fitPictures();
    void showProgress(Side &side, int percent);
    void showReadout(const QPointF &cell);
    void showNote();
    void applyTexts();
    QPolygonF rangeOf(const ObserverPoint &observer) const;
    std::array<double, 6> pictureToGround(const QSize &picture, const QRect &part) const;

    QBoxLayout *m_sides;
    Side m_input;
    Side m_output;
    QLabel *m_note;
    QLabel *m_readout;
    DemInfo m_dem;
    DemGround m_ground;
    QRectF m_view;           ///< cells that are shown
    QVector<QPointF> m_eyes; ///< cells of the enabled observers
    QRect m_toldPart;        ///< part() as it was told last
    QImage m_drawn;          ///< what the lines are drawn into; it outlives the drawing
    VectorPicture m_lines;
    QRect m_linesPart;
    QTimer m_drawing;
    QSize m_copySize; ///< of the reduced copy that is shown
    QRect m_copyPart;
};
