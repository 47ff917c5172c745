#pragma once

#include "dataset/hgt.h"

#include <QDialog>

class NumberBox;
class QLabel;
class QPushButton;
class QSpinBox;

/// A small form for what a file of elevations without a header does not state: columns, rows, the lower left
/// corner and the size of a cell. It can be accepted only with values that fit the file.
class TileForm : public QDialog
{
    Q_OBJECT

public:
    /// Shows the likeliest values. fileName: name of the file without its folder; bytes: its size.
    TileForm(const QString &fileName, qint64 bytes, QWidget *parent = nullptr);

    /// What the form shows.
    HgtTile tile() const;

private:
    void showTile(const HgtTile &tile);
    void check();

    qint64 m_bytes;
    QSpinBox *m_pSBColumns;
    QSpinBox *m_pSBRows;
    NumberBox *m_pDSBLatitude;
    NumberBox *m_pDSBLongitude;
    NumberBox *m_pDSBCellSize;
    QLabel *m_pLProblem;
    QPushButton *m_pPBAccept;
};
