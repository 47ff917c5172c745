#pragma once

#include "panels/options/toolinput.h"

#include <QImage>

/// The legend of a picture in classes: the title and, below it, a box and a text for each class and for the
/// cells of none. Drawn at twice the usual size, so that it is sharp on any display. Needs QGuiApplication.
QImage classLegend(const ClassTable &table);
