#include "runner/QuvoProgressDialog.h"

#include "runner/timetext.h"
#include "ui_QuvoProgressDialog.h"

#include <QApplication>
#include <QEvent>
#include <QWindow>

namespace
{

/// The longest text that a time label shows. The labels reserve room for it, because a window of fixed size
/// would clip it.
QString longestTime()
{
    return formatTime(QTime(20, 50, 50));
}

const QWidget *anyVisibleWindow(const QWidget *exceptThis)
{
    for (const QWidget *window : QApplication::topLevelWidgets()) {
        const bool isOwner = window->windowType() == Qt::Window || window->windowType() == Qt::Dialog;
        if (window != exceptThis && isOwner && window->isVisible() && window->windowHandle())
            return window;
    }
    return nullptr;
}

} // namespace

QuvoProgressDialog::QuvoProgressDialog()
    : m_form(std::make_unique<Ui::QuvoProgressDialog>())
{
    m_form->setupUi(this);
    setWindowModality(Qt::WindowModal);
    setWindowFlag(Qt::WindowContextHelpButtonHint, false);
    connect(m_form->m_pPBStop, &QPushButton::clicked, this, &QuvoProgressDialog::reject);
    setPixmap(QPixmap());
    reset();
}

QuvoProgressDialog::~QuvoProgressDialog() = default;

void QuvoProgressDialog::setStopButtonVisible(bool visible)
{
    m_bStopButtonVisible = visible;
    m_form->m_pPBStop->setVisible(visible);
}

void QuvoProgressDialog::setPixmap(const QPixmap &picture)
{
    m_form->m_pPixmaplLabel->setPixmap(picture);
    m_form->m_pPixmaplLabel->setVisible(!picture.isNull());
}

void QuvoProgressDialog::reject()
{
    const int shown = m_shown;
    emit cancelled();
    if (m_shown == shown) // a slot may have shown the window again for the next list
        QDialog::reject();
}

void QuvoProgressDialog::show()
{
    ++m_shown;
    reset();
    m_time.start();
    fixSize();
    placeOverActiveWindow();
    QDialog::show();
}

void QuvoProgressDialog::hide()
{
    QDialog::hide();
}

void QuvoProgressDialog::setTitle(const QString &title)
{
    m_form->m_pTitleLabel->setText(title);
    fixSize();
}

void QuvoProgressDialog::setProgress(int percent)
{
    if (percent == 0 || percent == m_form->m_pProgressBar->value())
        return;
    m_form->m_pProgressBar->setValue(percent);
    m_form->m_pLElapsedTimeValue->setText(formatTime(clockTime(m_time.elapsed())));
    m_form->m_pLLeftTimeValue->setText(formatTime(clockTime(remainingTime(m_time.elapsed(), percent))));
}

void QuvoProgressDialog::reset()
{
    m_form->m_pLElapsedTimeValue->setText(formatTime(QTime()));
    m_form->m_pLLeftTimeValue->setText(formatTime(QTime()));
    m_form->m_pProgressBar->reset();
}

void QuvoProgressDialog::changeEvent(QEvent *event)
{
    if (event->type() == QEvent::LanguageChange) {
        m_form->retranslateUi(this);
        fixSize();
    }
    QDialog::changeEvent(event);
}

/// Fixes the smallest size in which nothing is clipped. The layout must be activated first: before that it does
/// not know this size.
void QuvoProgressDialog::fixSize()
{
    const int timeWidth = m_form->m_pLElapsedTimeValue->fontMetrics().horizontalAdvance(longestTime());
    m_form->m_pLElapsedTimeValue->setMinimumWidth(timeWidth);
    m_form->m_pLLeftTimeValue->setMinimumWidth(timeWidth);

    layout()->invalidate();
    layout()->activate();
    QSize size = layout()->totalMinimumSize();
    if (layout()->hasHeightForWidth()) // the title wraps
        size.setHeight(layout()->totalHeightForWidth(size.width()));
    setFixedSize(size);
}

/// The dialog has no parent, so its owner is set here: otherwise the window system would neither block the
/// owner nor place the dialog over it.
void QuvoProgressDialog::placeOverActiveWindow()
{
    const QWidget *owner = QApplication::activeWindow();
    if (!owner || owner == this)
        owner = anyVisibleWindow(this); // no window is active just after a message box has closed
    if (!owner)
        return;
    winId(); // creates the native window, whose owner is set below
    windowHandle()->setTransientParent(owner->windowHandle());
    move(owner->frameGeometry().center() - rect().center());
}
