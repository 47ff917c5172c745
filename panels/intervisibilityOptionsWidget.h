#pragma once

#include "panels/controls/ZoneColor.h"
#include "panels/observers/ObserverPointsModel.h"
#include "panels/optionsWidget.h"

#include <memory>
#include <optional>

class WorkFolder;

namespace Ui
{
class intervisibilityOptionsWidget;
}

/// Options of the intervisibility process: the observers, how what several of them see is combined, and the
/// colours of the zones.
class intervisibilityOptionsWidget : public optionsWidget
{
    Q_OBJECT

public:
    /// The files of the observers go to the work folder, which outlives the panel.
    explicit intervisibilityOptionsWidget(WorkFolder &workFolder, QWidget *parent = nullptr,
                                          Qt::WindowFlags flags = {});
    ~intervisibilityOptionsWidget() override;

    bool capabilityFlag() const override { return true; }
    ProcessOptions processOptions() const override { return options(); }
    void setProcessOptions(const ProcessOptions &options) override;
    /// Writes the file of the observers, into a new folder each time.
    QString getCommandArguments() override;
    std::optional<ToolInput> launchInput() override;
    /// Heights of relative observers count from the ground of the copy: observers on the DEM's own ground might
    /// stand below it.
    std::optional<ToolInput> previewInput(const QString &copy) override;
    bool isComplete() const override;
    void setDem(const DemInfo &dem) override;

    IntervisibilityOptions options() const;

    /// The point of the table's current row; none where there is none.
    std::optional<ObserverPoint> currentObserver() const;

    /// The table's current row, from 0; -1 where there is none.
    int currentRow() const;

    /// Makes the row the current one.
    void chooseObserver(int row);

    /// Moves the observer of a row, which becomes the current one, to a position in the DEM's coordinates; row
    /// -1: a new observer comes there.
    void placeObserver(int row, const QPointF &position);

signals:
    void completeChanged();
    /// Another row is current, or its point was changed.
    void currentObserverPointChanged();

public slots:
    void slot_resetSmokeHeight();
    void slot_resetDefaultMaxDistance();
    void slot_changeColorZoneVisible();
    void slot_changeColorZoneNotVisible();
    void slot_changeColorZoneNoData();
    void slot_resetColorZoneVisible();
    void slot_resetColorZoneNotVisible();
    void slot_resetColorZoneNoData();
    void slot_onOptionsChanged();
    void slot_onSmokeHeightValueChanged();
    void slot_onMaxDistanceValueChanged();
    void slot_addNewPoint();
    void slot_removePoint();
    void slot_removeAllPoint();
    void slot_addPointListFromOgrDS();
    void slot_onCurrentObserverPointChanged();
    void slot_onApplyToAllPoint();
    void slot_resetDefaultObserverHeight();
    void slot_onDefaultObserverHeightValueChanged();
    void slot_resetDefaultAltitudeType();
    void slot_onDefaultAltitudeTypeChanged();

protected:
    void changeEvent(QEvent *event) override;
    /// The space bar switches observers on and off; copied lines are pasted into the table.
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    void setUpTable();
    void connectControls();
    void connectColors();
    void applyTexts();
    void updateControls();
    void showPosition();
    void takePosition();
    void toggle(const QModelIndex &index);
    void pastePoints();
    void warnOfGround();
    ObserverPoint defaultPoint() const;
    void addPoints(const QList<ObserverPoint> &points);
    QString argumentsWith(const QList<ToolObserver> &observers);
    void changeColor(ZoneColor &color);
    void resetColor(ZoneColor &color);

    std::unique_ptr<Ui::intervisibilityOptionsWidget> m_form;
    WorkFolder &m_workFolder;
    ObserverPointsModel m_model;
    DemInfo m_dem;
    DemGround m_ground;
    std::optional<ZoneColor> m_visibleColor; ///< made with the form
    std::optional<ZoneColor> m_hiddenColor;
    std::optional<ZoneColor> m_noDataColor;
};
