#pragma once

#include "app/preview/profile/profile.h"

#include <QByteArray>
#include <QLocale>
#include <QString>

/// A distance in metres for people: "850 m", "2.35 km".
QString distanceText(double metres, const QLocale &locale);

/// A height or an altitude for people: "23.4 m", "1,898 m". `unit` may be empty.
QString heightText(double height, const QString &unit, const QLocale &locale);

/// Whether the far end is seen, in a sentence; empty for a profile without samples. `unit` is the DEM's
/// vertical one, as in all functions here.
QString verdictText(const Profile &profile, const QString &unit, const QLocale &locale);

/// The length, and how the Earth's curvature counts: "12.4 km · Earth's curvature and refraction: k = 0.857".
QString conditionsText(const Profile &profile, const QLocale &locale);

/// Distance, ground and height of the sight line above the ground, for the place under the mouse.
QString readoutText(const ProfileSample &sample, const QString &unit, const QLocale &locale);

/// The samples as CSV: UTF-8, numbers in the C locale and with all their digits, commas, and a line feed after
/// each row. The header is "distance_m,x,y,ground,sight_line,hidden"; x and y are in the DEM's coordinates, the
/// altitudes in its vertical unit. `hidden` is 1 or 0. What a place does not have is an empty cell.
QByteArray profileCsv(const Profile &profile);
