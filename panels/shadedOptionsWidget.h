#pragma once

#include "panels/optionsWidget.h"

#include <QBasicTimer>

#include <memory>

class LightShelf;
class QEditableComboBox;
class QwtCompass;
class QwtWheel;

namespace Ui
{
class shadedOptionsWidget;
}

/// Panel of the shaded relief process: direction and height of the sun, exaggeration, units, method and edges.
class shadedOptionsWidget : public optionsWidget
{
    Q_OBJECT

public:
    explicit shadedOptionsWidget(QWidget *parent = nullptr, Qt::WindowFlags flags = {});
    ~shadedOptionsWidget() override;

    bool capabilityFlag() const override { return true; }
    ProcessOptions processOptions() const override { return options(); }
    void setProcessOptions(const ProcessOptions &options) override;
    QString getCommandArguments() override;
    bool isComplete() const override;
    QString missing() const override;
    void setScaleHint(const QString &hint) override;

    ShadedOptions options() const;

    /// The shelf of the user's lights, which outlives the panel. Without one (a null pointer) no light can be
    /// kept.
    void setLightShelf(LightShelf *shelf);

    /// Hides the choice of the edges, where it has no meaning.
    void hideEdges();

signals:
    /// The options changed. The signal follows `changeDelay` after the last change of a burst.
    void completeChanged();

public slots:
    void slot_onAzimuthValueChanged(double value);
    void slot_onAltitudeValueChanged(int value);
    void slot_onZFactorValueChanged(double value);
    void slot_onScaleValueChanged();
    void slot_resetAzimuthValue();
    void slot_resetAltitudeValue();
    void slot_resetScaleValue();
    void slot_resetZFactorValue();
    void slot_onOptionsChanged();

protected:
    void timerEvent(QTimerEvent *event) override;
    void changeEvent(QEvent *event) override;

private:
    void makeCompass();
    void makeWheel();
    void connectControls();
    void orderTabs();
    void showOptions(const ShadedOptions &options);
    void showLight();
    void showValues();
    void showReading(double reading);
    void applyTexts();
    void updateScaleNote();

    std::unique_ptr<Ui::shadedOptionsWidget> m_form;
    QwtCompass *m_pCompass = nullptr; ///< owned
    QwtWheel *m_pWheel = nullptr;     ///< owned
    QEditableComboBox *m_pScaleCombo = nullptr;
    QString m_scaleHint;
    QBasicTimer m_changeTimer; ///< runs from a change until completeChanged()
};
