#pragma once

#include <QObject>

class QWidget;

/// Accepts files that the user drops on a window.
class FileDrop : public QObject
{
    Q_OBJECT

public:
    /// Switches drops on for the window, which owns this object.
    explicit FileDrop(QWidget *window);

signals:
    /// `paths`: at least one absolute path of a local file or folder, all that were dropped at once.
    void dropped(const QStringList &paths);

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;
};
