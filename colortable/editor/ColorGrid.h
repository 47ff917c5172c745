#pragma once

#include <QVector>
#include <QWidget>

/// Squares of colours to pick from: the colours of the table, the colours used last, and a fixed palette, each
/// group in rows of its own. Keys: the arrows choose a square, Space or Enter picks it.
class ColorGrid : public QWidget
{
    Q_OBJECT

public:
    explicit ColorGrid(QWidget *parent = nullptr);

    /// The first two groups; each colour is shown once a group.
    void setColors(const QVector<QColor> &ofTable, const QVector<QColor> &recent);

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override { return sizeHint(); }

signals:
    void picked(const QColor &color);

protected:
    bool event(QEvent *event) override;
    void paintEvent(QPaintEvent *event) override;
    void mousePressEvent(QMouseEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;

private:
    QRect squareOf(int index) const;
    int squareAt(const QPoint &place) const;
    void rebuild();
    QColor colorAt(int index) const { return m_squares.value(index); }

    QVector<QColor> m_ofTable;
    QVector<QColor> m_recent;
    QVector<QColor> m_squares; ///< whole rows; an invalid colour is an empty square
    int m_current = 0;
};
