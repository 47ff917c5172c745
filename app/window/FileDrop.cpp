#include "app/window/FileDrop.h"

#include <QApplication>
#include <QDragEnterEvent>
#include <QMimeData>
#include <QUrl>
#include <QWidget>

namespace
{

/// Path of the local file in a drop; empty where the drop holds none or several.
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
    auto drop = static_cast<QDropEvent *>(event); // QDragEnterEvent is derived from it
    const QString file = droppedFile(drop->mimeData());
    // Drops also reach a window that a modal window blocks.
    if (file.isEmpty() || QApplication::activeModalWidget())
        return true;
    drop->acceptProposedAction();
    if (event->type() == QEvent::Drop)
        emit dropped(file);
    return true;
}
