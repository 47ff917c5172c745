#pragma once

#include "app/preview/profile/ProfilePlot.h"

class QWidget;

// The files of a profile. Each function lets the user choose a name, asks before a file is replaced, writes the
// file completely or not at all, and reports a failure in a box. `dem` is the path of the DEM, for the proposed
// name. They return the path of the written file; empty if none was written.

/// Writes profileCsv().
QString saveProfileCsv(QWidget *parent, const Profile &profile, const QString &dem);

/// What a picture of a profile shows.
struct ProfilePicture
{
    Profile profile;
    QString unit; ///< of the altitudes
    ProfileColors colors;
    QString title;
};

/// Writes a picture on white ground: PNG, SVG or PDF, by the ending of the chosen name.
QString saveProfilePicture(QWidget *parent, const ProfilePicture &picture, const QString &dem);
