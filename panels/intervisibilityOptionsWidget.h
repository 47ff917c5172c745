#pragma once

#include "panels/colors/SightResultChoice.h"
#include "panels/controls/ZoneColor.h"
#include "panels/observers/ComputingNote.h"
#include "panels/observers/ObserverTable.h"
#include "panels/observers/PositionFields.h"
#include "panels/observers/SightSideFiles.h"
#include "panels/optionsWidget.h"

#include <memory>
#include <optional>

class WorkFolder;

namespace Ui
{
class intervisibilityOptionsWidget;
}

/// Panel of the intervisibility process: what is computed, the observers, how the views of several observers
/// are combined, the colours of the zones or of the numbers, and the files that are written besides the
/// product.
class intervisibilityOptionsWidget : public optionsWidget
{
    Q_OBJECT

public:
    /// The panel writes the files of the observers into the work folder, which outlives the panel.
    explicit intervisibilityOptionsWidget(WorkFolder &workFolder, QWidget *parent = nullptr,
                                          Qt::WindowFlags flags = {});
    ~intervisibilityOptionsWidget() override;

    bool capabilityFlag() const override { return true; }
    ProcessOptions processOptions() const override { return options(); }
    void setProcessOptions(const ProcessOptions &options) override;
    /// Also writes the file of the observers, into a new folder at each call.
    QString getCommandArguments() override;
    std::optional<ToolInput> launchInput() override;
    /// Relative heights count from the ground of the copy: an observer on the DEM's own ground might stand
    /// below that of the copy. The tool gets at most mostPreviewed observers. Where
    /// the table shows the areas that they see, the tool writes its statistics, a file beside the other inputs.
    std::optional<ToolInput> previewInput(const QString &copy) override;
    bool isComplete() const override;
    QString missing() const override;
    void setDem(const DemInfo &dem) override;
    /// The proposed names of the files besides the product follow the product's.
    void setProduct(const QString &path) override;

    IntervisibilityOptions options() const;

    /// The point of the table's current row; nothing where no row is current.
    std::optional<ObserverPoint> currentObserver() const;

    /// Number of observers that a launch passes to the tool.
    int observerCount() const;

    /// The table's current row, counted from 0; -1 where no row is current.
    int currentRow() const;

    /// Makes the row the current one.
    void chooseObserver(int row);

    /// Undo and redo of the observers. Their keys work where the focus is in a widget that has the actions.
    QList<QAction *> historyActions() const;

    /// Moves the observer of the row to a position in the DEM's coordinates and makes the row the current one.
    /// For row -1 adds an observer at the position, with the default height, mode and distance.
    /// byKey: moves of one observer by keys are one step of the history while no other step comes between.
    void placeObserver(int row, const QPointF &position, bool byKey = false);

    /// Places an observer as the mouse has let it go, or a key has moved it. Where its height needs a ground
    /// and the position has none, nothing changes, and a message box says so. Returns whether the observer was
    /// placed.
    bool dropObserver(int row, const QPointF &position, bool byKey);

    /// Shows in the table how many km² each observer that the tool gets sees, in the table's order. They are
    /// shown until an observer or the DEM changes; a list of another length shows none.
    void setSeenAreas(const QVector<double> &km2ByEnabledObserver);

    /// Brings what times the tool; it outlives the panel's use of it. Null: no computing time is measured.
    void setTiming(SightTiming *timing) { m_timeNote->setTiming(timing); }

    /// A preview of all the DEM, made from the reduced copy, took so long.
    void setPreviewTime(double seconds, const QString &copy);

signals:
    void completeChanged();
    /// Another row became the current one, or its point changed.
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

private:
    void connectTable();
    void connectControls();
    void connectColors();
    void makeOutputs();
    void showOptions(const IntervisibilityOptions &options);
    void applyTexts();
    void updateControls();
    /// A point with the default height, mode and distance, in the centre of the DEM.
    ObserverPoint defaultPoint() const;
    /// Writes the observers' file into the folder and returns the argument fragment that names it.
    QString argumentsWith(const QString &folder, const QList<ToolObserver> &observers);
    void changeColor(ZoneColor &color);
    void resetColor(ZoneColor &color);

    std::unique_ptr<Ui::intervisibilityOptionsWidget> m_form;
    WorkFolder &m_workFolder;
    ObserverPointsModel m_model;
    DemInfo m_dem;
    DemGround m_ground;
    std::optional<ObserverTable> m_table; ///< this and the next members exist once the form is set up
    std::optional<PositionFields> m_position;
    std::optional<ComputingNote> m_timeNote;
    std::optional<ZoneColor> m_visibleColor;
    std::optional<ZoneColor> m_hiddenColor;
    std::optional<ZoneColor> m_noDataColor;
    std::unique_ptr<SightResultChoice> m_result;
    std::unique_ptr<SightSideFiles> m_sideFiles;
};
