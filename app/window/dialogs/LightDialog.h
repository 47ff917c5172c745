#pragma once

#include "panels/light/ColorShading.h"
#include "panels/options/lightpresets.h"

/// Edits a light in a dialog with the controls of the shaded relief, as LightEditor says. `shelf`: of the
/// user's lights. A null pointer stands for no shelf: lights cannot be kept then.
std::optional<ShadedOptions> editLight(QWidget *parent, const ShadedOptions &light, LightShelf *shelf,
                                       const std::function<void(const ShadedOptions &)> &changed);
