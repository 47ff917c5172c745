#include "app/window/FileDrop.h"

#include <QApplication>
#include <QDragEnterEvent>
#include <QMimeData>
#include <QUrl>
#include <QWidget>

namespace
{

/// The local file of a drop; empty for none, or more than one.
QString droppedFile(const QMimeData *data)
{
    const QList<QUrl> addresses = data->urls();
    return addresses.size() == 1 ? addresses.first().toLocalFile() : QString();
}

} // namespace

FileDrop::FileDrop(QWidget *window)
    : QObject(window)
{
    window->setAcceptDrops(true);
    window->installEventFilter(this);
}

bool FileDrop::eventFilter(QObject *watched, QEvent *event)
{
    if (event->type() != QEvent::DragEnter && event->type() != QEvent::Drop)
        return QObject::eventFilter(watched, event);
    auto drop = static_cast<QDropEvent *>(event); // of which the other is one, too
    const QString file = droppedFile(drop->mimeData());
    // A drop reaches a window that a modal one blocks, too.
    if (file.isEmpty() || QApplication::activeModalWidget())
        return true;
    drop->acceptProposedAction();
    if (event->type() == QEvent::Drop)
        emit dropped(file);
    return true;
}
