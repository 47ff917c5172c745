#pragma once

#include "app/series/DemSeries.h"

#include <QDialog>

/// Lists the DEMs of a series that has ended: the product of each, or why there is none.
class SeriesResultDialog : public QDialog
{
    Q_OBJECT

public:
    SeriesResultDialog(const QVector<SeriesRow> &rows, QWidget *parent);
};

/// A sentence: how many of the products were made.
QString seriesText(const QVector<SeriesRow> &rows);
