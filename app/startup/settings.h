#pragma once

#include <QPoint>
#include <QRect>
#include <QSize>
#include <QString>
#include <QStringList>
#include <QVector>

// The per-user settings of the main dialog.

/// Where the dialog was when it was closed.
struct LastGeometry
{
    QSize size{707, 740};
    QPoint position{155, 10};
    bool showPreview = true; ///< whether the preview area is shown
    bool isDefault = true;   ///< nothing was stored yet
};

LastGeometry readLastGeometry();
void writeLastGeometry(const LastGeometry &geometry);

/// The DEMs used last, absolute paths, the newest first.
QStringList readRecentFiles();
void writeRecentFiles(const QStringList &paths);

/// The file of the runs made last (app/recipe/recentruns), beside the user's other settings.
QString recentRunsFile();

/// The language that the user chose in the window; `otherwise` where none was chosen.
QString chosenLanguage(const QString &otherwise);

/// language: "FRENCH" or "ENGLISH".
void writeChosenLanguage(const QString &language);

/// The geometry moved and shrunk so that the screens show it; screens: their available areas, the first the
/// main one.
QRect visibleGeometry(const QRect &wanted, const QVector<QRect> &screens);
