#pragma once

#include "app/preview/map/maplegend.h"

#include <QWidget>

/// Shows a map's legend. It scrolls nothing: what does not fit below is cut off, the histogram last.
class LegendView : public QWidget
{
    Q_OBJECT

public:
    explicit LegendView(QWidget *parent = nullptr);

    void setLegend(const MapLegend &legend);
    const MapLegend &legend() const { return m_legend; }

    QSize sizeHint() const override { return minimumSizeHint(); }
    QSize minimumSizeHint() const override;

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    MapLegend m_legend;
};
