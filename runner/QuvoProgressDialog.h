#pragma once

#include <QDialog>
#include <QElapsedTimer>

#include <memory>

namespace Ui
{
class QuvoProgressDialog;
}

/// The window shown while a list of commands runs: the step's title, elapsed and remaining time, a progress
/// bar, a picture and, where it may be stopped, a Stop button. It blocks the window that was active when it was
/// shown.
class QuvoProgressDialog : public QDialog
{
    Q_OBJECT
    Q_PROPERTY(bool stopButtonVisible READ isStopButtonVisible WRITE setStopButtonVisible)

public:
    QuvoProgressDialog();
    ~QuvoProgressDialog() override;

    bool isStopButtonVisible() const { return m_bStopButtonVisible; }
    void setStopButtonVisible(bool visible);

    /// A null picture leaves no gap.
    void setPixmap(const QPixmap &picture);

signals:
    /// Stop was pressed, or the window closed; the window hides itself right after.
    void cancelled();

public slots:
    void reject() override;
    /// Starts the clock and shows the window in its smallest size, over the active window.
    void show();
    void hide();
    void setTitle(const QString &title);
    /// 0, and the percentage that is already shown, change nothing.
    void setProgress(int percent);
    void reset();

protected:
    void changeEvent(QEvent *event) override;

private:
    void fixSize();
    void placeOverActiveWindow();

    std::unique_ptr<Ui::QuvoProgressDialog> m_form;
    QElapsedTimer m_time;
    bool m_bStopButtonVisible = true;
    int m_shown = 0; ///< counts the calls of show()
};
