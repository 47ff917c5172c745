#pragma once

#include <QObject>

class QWidget;

/// Takes files that are dropped on a window, one at a time.
class FileDrop : public QObject
{
    Q_OBJECT

public:
    /// The window, which owns this, accepts drops from here on.
    explicit FileDrop(QWidget *window);

signals:
    /// path: of a local file or folder, absolute.
    void dropped(const QString &path);

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;
};
