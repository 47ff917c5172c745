#include "panels/options/observerlimits.h"

#include "panels/options/observerpoints.h"
#include "panels/options/recordfields.h"

const std::array<LimitField, limitCount> &limitFields()
{
    constexpr double turn = 360.0;
    constexpr double upright = 90.0;
    using Limits = ObserverLimits;
    static const std::array<LimitField, limitCount> fields{{
        {"targetHeight",
         "OFFSETB",
         &Limits::targetHeight,
         -highestAltitude,
         highestAltitude,
         {"MESS_OBS_CIBLE", "Haut. cible"},
         {"MESS_OBS_CIBLE_EXPL",
          "Hauteur de la cible au-dessus du sol, dans l'unité du MNT ; vide : la hauteur au sol du calcul."}},
        {"azimuthFrom",
         "AZIMUTH1",
         &Limits::azimuthFrom,
         0.0,
         turn,
         {"MESS_OBS_AZIMUT_DE", "Azimut de"},
         {"MESS_OBS_AZIMUT_DE_EXPL",
          "Première direction vue, en degrés depuis le nord dans le sens horaire ; vide : sans limite."}},
        {"azimuthTo",
         "AZIMUTH2",
         &Limits::azimuthTo,
         0.0,
         turn,
         {"MESS_OBS_AZIMUT_A", "Azimut à"},
         {"MESS_OBS_AZIMUT_A_EXPL",
          "Direction où la vue s'arrête, en degrés depuis le nord dans le sens horaire ; vide : sans limite."}},
        {"angleFrom",
         "VERT2",
         &Limits::angleFrom,
         -upright,
         upright,
         {"MESS_OBS_ANGLE_DE", "Site de"},
         {"MESS_OBS_ANGLE_DE_EXPL",
          "Angle le plus bas qui est vu, en degrés au-dessus de l'horizontale ; vide : sans limite."}},
        {"angleTo",
         "VERT1",
         &Limits::angleTo,
         -upright,
         upright,
         {"MESS_OBS_ANGLE_A", "Site à"},
         {"MESS_OBS_ANGLE_A_EXPL",
          "Angle le plus haut qui est vu, en degrés au-dessus de l'horizontale ; vide : sans limite."}},
        {"leastDistance",
         "RADIUS1",
         &Limits::leastDistance,
         0.0,
         longestDistance,
         {"MESS_OBS_DIST_MIN", "Dist. min."},
         {"MESS_OBS_DIST_MIN_EXPL", "En deçà de cette distance, en m, rien n'est vu ; vide : sans limite."}},
    }};
    return fields;
}

bool acceptsLimit(const LimitField &field, double number)
{
    return number >= field.lowest && number <= field.highest;
}

QString limitsProblem(const ObserverLimits &limits)
{
    for (const LimitField &field : limitFields()) {
        const auto &number = limits.*field.value;
        if (number && !acceptsLimit(field, *number))
            return numberProblem(QString::fromLatin1(field.name), *number, field.lowest, field.highest, false);
    }
    if (limits.angleFrom && limits.angleTo && *limits.angleFrom > *limits.angleTo)
        return labelText({"MESS_OBS_ANGLES", "angleFrom (%1) ne doit pas dépasser angleTo (%2)."})
            .arg(QString::number(*limits.angleFrom), QString::number(*limits.angleTo));
    return {};
}
