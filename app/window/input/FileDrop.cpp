#include "app/window/input/FileDrop.h"

#include <QApplication>
#include <QDragEnterEvent>
#include <QMimeData>
#include <QUrl>
#include <QWidget>

namespace
{

/// Paths of the files in a drop; empty where one of them is not local.
QStringList droppedFiles(const QMimeData *data)
{
    QStringList files;
    for (const QUrl &address : data->urls())
        files += address.toLocalFile();
    return files.contains(QString()) ? QStringList() : files;
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
    const QStringList files = droppedFiles(drop->mimeData());
    // Drops also reach a window that a modal window blocks.
    if (files.isEmpty() || QApplication::activeModalWidget())
        return true;
    drop->acceptProposedAction();
    if (event->type() == QEvent::Drop)
        emit dropped(files);
    return true;
}
