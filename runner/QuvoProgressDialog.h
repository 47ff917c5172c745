#pragma once

#include <QDialog>
#include <QElapsedTimer>

#include <memory>

namespace Ui
{
class QuvoProgressDialog;
}

/// The window shown while a list of commands runs: the title of the running step, elapsed and remaining time, a
/// progress bar, a picture and, unless it is hidden, a Stop button. It blocks the window that was active when
/// show() was called.
class QuvoProgressDialog : public QDialog
{
    Q_OBJECT
    Q_PROPERTY(bool stopButtonVisible READ isStopButtonVisible WRITE setStopButtonVisible)

public:
    QuvoProgressDialog();
    ~QuvoProgressDialog() override;

    bool isStopButtonVisible() const { return m_bStopButtonVisible; }
    void setStopButtonVisible(bool visible);

    /// Shows a picture beside the title. A null picture takes no room.
    void setPixmap(const QPixmap &picture);

signals:
    /// Stop was pressed, or the window was closed. The window hides itself after this signal, unless a slot has
    /// called show() again.
    void cancelled();

public slots:
    void reject() override;
    /// Starts the clock and shows the window in its smallest size, centred over the active window.
    void show();
    void hide();
    void setTitle(const QString &title);
    /// Updates the bar and both times. percent: of the whole list, 0 to 100. 0 and the percentage that is shown
    /// already change nothing.
    void setProgress(int percent);
    /// Empties the bar and sets both times to 0 seconds.
    void reset();

protected:
    void changeEvent(QEvent *event) override;

private:
    void fixSize();
    void placeOverActiveWindow();

    std::unique_ptr<Ui::QuvoProgressDialog> m_form;
    QElapsedTimer m_time;
    bool m_bStopButtonVisible = true;
    int m_shown = 0; ///< number of calls of show()
};
