#pragma once

#include "dataset/vectorpicture.h"

#include <QImage>
#include <QObject>
#include <QTimer>

#include <array>

/// Draws a vector product on a transparent ground, in slices of the event loop.
class LineDrawing : public QObject
{
    Q_OBJECT

public:
    explicit LineDrawing(QObject *parent);

    /// Begins to draw a file into a picture of `pixels`, in place of what is being drawn. toGround: GDAL's
    /// affine transform from the pixels to the file's coordinates. lineWidth: in pixels. Returns false when the
    /// file cannot be opened.
    bool begin(const QString &file, const QSize &pixels, const std::array<double, 6> &toGround,
               double lineWidth);

    /// Ends the drawing; no drawn() follows. Returns whether something was being drawn.
    bool stop();

signals:
    /// More lines are drawn. percent: how many of them; -1: all.
    void drawn(const QImage &lines, int percent);

private:
    void advance();

    QImage m_picture; ///< the picture that m_lines draws into
    VectorPicture m_lines;
    QTimer m_slices;
};
