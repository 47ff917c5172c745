#pragma once

#include "panels/options/observerpoints.h"

class DemGround;
class QWidget;

/// Asks for a vector source and how its features become observers, and reads them. Points outside of the DEM
/// come in at an altitude of their own, or not at all. Boxes tell what could not be taken. Empty where the user
/// gave up. dem: its path; values: height, mode and distance of the observers.
QList<ObserverPoint> importObservers(const QString &dem, const DemGround &ground, const ObserverPoint &values,
                                     QWidget *parent);
