#pragma once

#include "app/preview/map/histogram.h"
#include "app/preview/map/mapdrawing.h"

#include <QLocale>
#include <QSize>

/// The legend of a map, with the elevations of its DEM below.
struct MapLegend
{
    /// A strip of colours, the highest value at the top.
    struct Strip
    {
        QVector<QRgb> colors; ///< from the lowest value to the highest, evenly spread; empty: no strip
        double low = 0.0;
        double high = 0.0;
        /// Places of the texts beside the strip, and the texts.
        struct Tick
        {
            double value = 0.0;
            QString text;
        };
        QVector<Tick> ticks;
    };
    /// A colour or a line, and what it stands for.
    struct Row
    {
        QColor color;
        bool hatched = false; ///< the hatch of cells without data
        bool line = false;    ///< a line of that colour, not a box
        QString text;
        QString detail;         ///< a second line of text; may be empty
        double lineWidth = 1.6; ///< in device-independent pixels
    };
    /// A line in the histogram.
    struct Mark
    {
        double elevation = 0.0;
        QColor color;
    };

    QString title; ///< name of the product
    QString unit;  ///< of the values, behind the title; may be empty
    Strip strip;
    QVector<Row> rows;
    QString histogramTitle;
    Histogram elevations;
    QVector<Mark> marks;
};

/// Height of the strip of colours, in points.
constexpr double legendStripHeight = 132.0;

/// Ticks at round values, about one for each 24 points of a strip of that height.
QVector<MapLegend::Strip::Tick> roundStripTicks(double low, double high, double height, const QLocale &locale);

/// The shapes of the legend, `width` points wide. `locale` formats the numbers at the histogram's ends. The
/// strip of colours is `stripHeight` points high; if that is too low for all its ticks, some are left out.
MapDrawing legendDrawing(const MapLegend &legend, double width, const TextWidth &widthOf, const QLocale &locale,
                         double stripHeight = legendStripHeight);

/// An area and its part of the whole, as "12.4 km² (31.0 %)", in m² where it is small. area: in square metres;
/// negative: not known, the text is the share alone.
QString shareText(double area, double share, const QLocale &locale);
