#pragma once

#include "panels/options/fragments.h"

#include <QWidget>

class QCheckBox;
class QFormLayout;
class QLabel;
class QLineEdit;
class QSpinBox;

/// What makes contours fit for a map: index lines, closed lines left out, a smoothed DEM, areas, and how the
/// features are drawn.
class ContourDrawing : public QWidget
{
    Q_OBJECT

public:
    explicit ContourDrawing(QWidget *parent = nullptr);

    /// Sets these options in a record. A typed text that is not a number is read as 0.
    void addTo(ContourOptions &options) const;

    /// Shows these options. No signal follows.
    void showOptions(const ContourOptions &options);

    /// Format of the product: GDAL's short driver name.
    void setOutputFormat(const QString &driver);

    /// Whether the lines have an interval, in which index lines are counted.
    void setHasInterval(bool hasInterval);

    /// Unit of lengths on the ground, for display ("m"); empty: not known.
    void setGroundUnit(const QString &unit);

signals:
    void changed();

protected:
    void changeEvent(QEvent *event) override;

private:
    void makeControls();
    void updateControls();
    void applyTexts();

    QFormLayout *m_form = nullptr;
    QLabel *m_pTitle;
    QSpinBox *m_pIndex;
    QLineEdit *m_pRing;
    QLabel *m_pRingUnit;
    QSpinBox *m_pSmoothing;
    QCheckBox *m_pAreas;
    QLineEdit *m_pLowest;
    QLineEdit *m_pHighest;
    QCheckBox *m_pStyled;
    QLabel *m_pStyleNote;
    QCheckBox *m_pQgis;
    QString m_format;
    bool m_hasInterval = false;
};
