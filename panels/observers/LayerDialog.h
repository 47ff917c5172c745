#pragma once

#include "dataset/chooser/sourceinfo.h"

#include <QDialog>

class QTreeWidget;

/// Dialog that asks which layer of a vector source is imported. It lists name, kind of geometry, number of
/// features and CRS of each layer; the first one is chosen at first.
class LayerDialog : public QDialog
{
    Q_OBJECT

public:
    /// `layers`: at least one.
    explicit LayerDialog(const QVector<LayerFacts> &layers, QWidget *parent = nullptr);

    /// Name of the chosen layer.
    QString layer() const;

private:
    QTreeWidget *m_list;
};
