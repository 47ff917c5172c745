#pragma once

#include <QString>
#include <QStringList>

/// The text with a colon at its end; one that has a colon keeps the one.
QString withColon(const QString &text);

/// The rows of the scale list (panels/options/fragments.h) in the language in use.
QStringList scaleLabels();
