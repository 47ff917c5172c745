#pragma once

#include "dataset/deminfo.h"

#include <QObject>
#include <QRect>

class QToolButton;

/// The part of the input DEM that runs read, and the button that opens the dialog to choose it.
class DemPart : public QObject
{
    Q_OBJECT

public:
    /// `button` belongs to the main dialog and outlives this object.
    explicit DemPart(QToolButton &button);

    /// The part in cells of the DEM, from the file's upper left corner; null: the whole DEM.
    QRect part() const { return m_part; }

    /// Sets the part, as from settings; changed() follows where it differs.
    void setPart(const QRect &part);

    /// The DEM or band changed. Another DEM is read whole.
    void setDem(const DemInfo &dem);

    /// Shows the button's texts in the language in use.
    void applyTexts();

signals:
    void changed();

private:
    void choose();

    QToolButton &m_button;
    DemInfo m_dem;
    QRect m_part;
};
