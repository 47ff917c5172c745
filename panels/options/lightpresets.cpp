#include "panels/options/lightpresets.h"

#include "messages/label.h"

QVector<LightPreset> builtInLights()
{
    // The compass reads 270 minus the azimuth of the light.
    constexpr double westNorthWest = 337.5; // azimuth 292.5
    return {
        {labelText({"MESS_LUM_CLASSIQUE", "Classique"}), {}},
        {labelText({"MESS_LUM_DOUCE", "Douce, sous étiquettes"}), {.light = lightWord(Light::Igor)}},
        {labelText({"MESS_LUM_SOLEILS", "Plusieurs soleils"}), {.light = lightWord(Light::Multidirectional)}},
        {labelText({"MESS_LUM_SOIR", "Soleil bas du soir"}), {.compass = westNorthWest, .altitude = 25}},
        {labelText({"MESS_LUM_GLACIERS", "Nette, pour les glaciers"}),
         {.exaggeration = 2.0, .zevenbergenThorne = true, .light = lightWord(Light::Combined)}},
    };
}

ShadedOptions withLight(ShadedOptions options, const ShadedOptions &light)
{
    options.exaggeration = light.exaggeration;
    options.compass = light.compass;
    options.altitude = light.altitude;
    options.zevenbergenThorne = light.zevenbergenThorne;
    options.light = light.light;
    return options;
}

bool isSameLight(const ShadedOptions &one, const ShadedOptions &other)
{
    return withLight(one, other) == one;
}
