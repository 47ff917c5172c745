#pragma once

#include <QWidget>

class ProgressWidget;
class QLabel;
class QSlider;
class QTimer;
class QToolButton;

/// The row above the map: what is shown, the slider between the DEM and its product, the progress of the
/// running step, and the buttons of the map.
class MapBar : public QWidget
{
    Q_OBJECT

public:
    explicit MapBar(QWidget *parent = nullptr);

    void setProductName(const QString &name);
    QString productName() const;

    /// The opacity of the product, 0 to 1, without a signal.
    void setOpacity(double opacity);

    /// Hides what compares the DEM with the product: there is no DEM.
    void hideComparison();

    /// Percentage of the running step; -1: none runs. slow() follows when it has taken a while.
    void setProgress(int percent);

    /// The button that puts a swipe line between the DEM and its product; checkable.
    QToolButton *swipeButton() const { return m_swipe; }
    QToolButton *legendButton() const { return m_legend; }   ///< checkable
    QToolButton *profileButton() const { return m_profile; } ///< checkable

    void applyTexts();

signals:
    void opacityChanged(double opacity);
    void zoomInClicked();
    void zoomOutClicked();
    void wholeClicked();
    void copyClicked();
    void saveClicked();
    /// The running step has taken a while.
    void slow();

private:
    QToolButton *addButton(const QString &name, const QString &icon);

    QLabel *m_ground;
    QSlider *m_slider;
    QLabel *m_product;
    ProgressWidget *m_wheel;
    QTimer *m_wheelDelay; ///< its timeout shows the wheel; a quick step ends before
    QLabel *m_percent;
    QToolButton *m_swipe;
    QToolButton *m_profile;
    QToolButton *m_legend;
    QToolButton *m_zoomOut;
    QToolButton *m_zoomIn;
    QToolButton *m_whole;
    QToolButton *m_save;
};
