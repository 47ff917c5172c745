#pragma once

#include <QObject>

class QWidget;

/// Accepts files that the user drops on a window, one at a time.
class FileDrop : public QObject
{
    Q_OBJECT

public:
    /// Switches drops on for the window, which owns this object.
    explicit FileDrop(QWidget *window);

signals:
    /// `path`: absolute path of a local file or folder.
    void dropped(const QString &path);

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;
};
