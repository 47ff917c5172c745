#include "panels/controls/labels.h"

#include "messages/label.h"

QString withColon(const QString &text)
{
    return text.trimmed().endsWith(QLatin1Char(':')) ? text : text + QLatin1Char(':');
}

QStringList scaleLabels()
{
    return {labelText({"MESS_UNIT_MEME_XYZ", "X, Y et Z sont dans la même unité (1)"}),
            labelText({"MESS_UNIT_XY_M_Z_FT", "X et Y sont en mètres, Z en pieds (0.31)"}),
            labelText({"MESS_UNIT_XY_DEG_Z_M", "X et Y sont en degrés, Z en mètres (111120)"}),
            labelText({"MESS_UNIT_XY_DEG_Z_FT", "X et Y sont en degrés, Z en pieds (370400)"})};
}
