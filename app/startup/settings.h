#pragma once

#include <QByteArray>
#include <QPoint>
#include <QRect>
#include <QSize>
#include <QString>
#include <QStringList>
#include <QVector>

// The per-user settings of the main dialog.

/// Size and position of the main dialog when it was closed, in device-independent pixels.
struct LastGeometry
{
    QSize size{707, 740};
    QPoint position{155, 10};
    bool showPreview = true; ///< the preview area is shown
    bool isDefault = true;   ///< no size was stored yet
};

LastGeometry readLastGeometry();
void writeLastGeometry(const LastGeometry &geometry);

/// Absolute paths of the DEMs used last, newest first.
QStringList readRecentFiles();
void writeRecentFiles(const QStringList &paths);

/// Path of the list of recent runs (app/recipe/recentruns), in the folder of the user's settings.
QString recentRunsFile();

/// Path of the settings to take up at the next start (app/recipe/lastsettings), likewise. The file exists while
/// the user wants that.
QString lastSettingsFile();

/// Path of the colour table that was used last; empty where none was.
QString readLastColorTable();
void writeLastColorTable(const QString &file);

/// Size, columns and folder of the file dialogs (dataset/QuvoFilerDialog); empty before the first one.
QByteArray readFilerState();
void writeFilerState(const QByteArray &state);

/// Folder of the user's own colour tables, beside the settings. It may not exist yet.
QString ownColorTableFolder();

/// Folder of the user's own lights, likewise.
QString ownLightFolder();

/// The language that the user chose in the window; `otherwise` where none was chosen, or where
/// availableLanguages(messagesPath) does not have it any more.
QString chosenLanguage(const QString &otherwise, const QString &messagesPath);

/// Stores the name of the language that the user chose, for chosenLanguage() and under the key that the
/// environment file refers to.
void writeChosenLanguage(const QString &language);

/// The geometry of a window, moved and shrunk so that all of it stands on one screen, unless the screens
/// together already show all of it. `wanted` and the result: the position of the frame's corner and the size
/// inside the frame. `frame`: width and height that the frame adds. `screens`: the available areas of the
/// screens; without any, `wanted` is returned as it is.
QRect visibleGeometry(const QRect &wanted, const QSize &frame, const QVector<QRect> &screens);
