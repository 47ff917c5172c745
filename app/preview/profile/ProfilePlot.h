#pragma once

#include "app/preview/profile/profile.h"

#include <QColor>

#include <qwt_plot.h>

class QwtPlotGrid;
class QwtPlotMarker;
class QwtPlotTextLabel;

/// The colours of the ground's outline: those of the viewshed.
struct ProfileColors
{
    QColor visible = QColor(0, 158, 115);
    QColor hidden = QColor(213, 94, 0);
};

/// The drawing of a profile: the ground as an area, its outline in the colours of seen and hidden ground, a
/// shade over the hidden stretches, and the sight line. All other colours come from the palette. The numbers of
/// the axes carry their units.
class ProfilePlot : public QwtPlot
{
public:
    explicit ProfilePlot(QWidget *parent = nullptr);

    /// Takes effect at once. `unit` is the DEM's vertical one; it may be empty.
    void setProfile(const Profile &profile, const QString &unit, const ProfileColors &colors);

    /// Marks a place; nothing: no mark. `distance` is in metres.
    void setMark(const std::optional<double> &distance);

    /// Shows a line of text at the upper edge, where the drawing leaves room for it.
    void setText(const QString &text);

    /// The distance in metres at a position of the canvas, within the profile.
    double distanceAt(int x) const;

    /// Fits the colours to the palette, and the numbers to the locale. Called after a change of the language.
    void restyle();

protected:
    void changeEvent(QEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;

private:
    class Drawing;

    void scaleAxes();
    void showText();
    QFont smallFont() const;

    Profile m_profile;
    QString m_unit;
    QString m_text;
    QwtPlotGrid *m_pGrid; ///< owned by the plot, like the other items
    Drawing *m_pDrawing;
    QwtPlotMarker *m_pMark;
    QwtPlotTextLabel *m_pText;
};
