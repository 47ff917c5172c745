#pragma once

#include <QString>

class QWindow;

/// Shows a message in the desktop's notification area, and returns at once. Both texts are plain. Returns false
/// where the desktop has no such area.
bool showDesktopNotice(const QString &title, const QString &text);

/// Something that takes long has ended. Where the user works in another program, shows a desktop notice and
/// marks `window` in the task bar; it may be null. Does nothing where a window of this program is the active
/// one.
void announceEnd(QWindow *window, const QString &title, const QString &text);
