#pragma once

#include <QTimer>
#include <QWidget>

/// A small wheel of spokes that turns while it is shown, beside work of unknown length. It takes its colour
/// from the palette's text and its size from the font. Where the style asks for no animations it stands still.
class ProgressWidget : public QWidget
{
    Q_OBJECT

public:
    explicit ProgressWidget(QWidget *parent = nullptr);

    QSize sizeHint() const override;

public slots:
    /// Turns the wheel by one spoke.
    void animate();

protected:
    void paintEvent(QPaintEvent *event) override;
    void showEvent(QShowEvent *event) override;
    void hideEvent(QHideEvent *event) override;

private:
    QTimer m_timer;
    int m_frame = 0; ///< index of the darkest spoke
};
