#pragma once

#include "panels/options/lightpresets.h"

#include <QWidget>

class LightList;
class QComboBox;
class QLabel;
class QPushButton;

/// The kind of light of a shaded relief, and the lights to choose from.
class LightChoice : public QWidget
{
    Q_OBJECT

public:
    explicit LightChoice(QWidget *parent = nullptr);

    /// As LightList::setShelf().
    void setShelf(LightShelf *shelf);

    Light light() const;

    /// Shows the kind of light of the options and marks the entry of their light. No signal follows.
    void showLight(const ShadedOptions &options);

signals:
    /// The user chose another kind of light.
    void lightChanged();
    /// The user chose one of the lights; its units and edges have no meaning.
    void presetChosen(const ShadedOptions &light);

protected:
    void changeEvent(QEvent *event) override;

private:
    void applyTexts();

    ShadedOptions m_shown;
    QLabel *m_pLabel;
    QComboBox *m_pKind;
    QLabel *m_pListLabel;
    LightList *m_pLights;
    QPushButton *m_pKeep;
};

/// Why the direction, or the height of the sun, has no meaning in a light, in a sentence; empty where it has.
QString unusedAzimuthText(Light light);
QString unusedAltitudeText(Light light);
