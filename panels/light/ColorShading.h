#pragma once

#include "panels/options/fragments.h"

#include <QWidget>

#include <functional>
#include <optional>

class ClickSlider;
class QCheckBox;
class QLabel;
class QPushButton;
class QRadioButton;

/// Lets the user edit a light in a dialog. The function receives each change at once; the result is the light
/// that the user accepted, or nothing.
using LightEditor = std::function<std::optional<ShadedOptions>(
    QWidget *parent, const ShadedOptions &light, const std::function<void(const ShadedOptions &)> &changed)>;

/// Whether, how strongly and in which light a colour relief is shaded: in that of the shaded relief's panel, or
/// in one of its own.
class ColorShading : public QWidget
{
    Q_OBJECT

public:
    explicit ColorShading(QWidget *parent = nullptr);

    /// Sets the options of the shading in a record.
    void addTo(ColorReliefOptions &options) const;

    /// Shows the shading of the options. A light that is not that of the other panel becomes its own. No signal
    /// follows.
    void showOptions(const ColorReliefOptions &options);

    /// The light of the shaded relief's panel; changed() follows where it is used.
    void setPanelLight(const ShadedOptions &light);

    /// How the own light is edited; without an editor it cannot be.
    void setLightEditor(const LightEditor &editor);

signals:
    void changed();

protected:
    void changeEvent(QEvent *event) override;

private:
    void updateControls();
    void applyTexts();
    void editOwnLight();

    QCheckBox *m_pShade;
    QLabel *m_pStrengthLabel;
    ClickSlider *m_pStrength;
    QLabel *m_pStrengthValue;
    QLabel *m_pLightLabel;
    QRadioButton *m_pPanelLight;
    QRadioButton *m_pOwnLight;
    QPushButton *m_pEdit;
    ShadedOptions m_panelLight;
    ShadedOptions m_ownLight;
    LightEditor m_editor;
};
