#pragma once

#include "dataset/extremes.h"
#include "panels/options/processoptions.h"

#include <QString>
#include <QStringList>
#include <QWidget>

/// The DEM that the options are for.
struct DemInfo
{
    QString path;           ///< as GDAL is given it; empty while there is no DEM
    int band = 1;           ///< from 1
    Extremes extremes;      ///< of the band
    bool searching = false; ///< the extreme values are being looked for
    QString state = {};     ///< tells a file that was written anew from the one before

    bool isSameFileAs(const DemInfo &other) const { return path == other.path && state == other.state; }
    bool isSameBandAs(const DemInfo &other) const { return isSameFileAs(other) && band == other.band; }
};

/// Base of the option panels, one a process.
///
/// Each panel declares the signal completeChanged(), which follows every change of its options, and the slot
/// slot_onOptionsChanged(); this class is no meta-object of its own.
class optionsWidget : public QWidget
{
public:
    explicit optionsWidget(QWidget *parent = nullptr, Qt::WindowFlags flags = {})
        : QWidget(parent, flags)
    { }

    /// A constant of each panel. Nothing asks for it.
    virtual bool capabilityFlag() const = 0;

    /// The options as they are set.
    virtual ProcessOptions processOptions() const = 0;

    /// Shows the options as if they had been set by hand; completeChanged() follows. Those of another process
    /// are left alone.
    virtual void setProcessOptions(const ProcessOptions &options) = 0;

    /// The argument fragment of the options. It carries its own blanks and is inserted in the command line as
    /// it stands.
    virtual QString getCommandArguments() = 0;

    /// The argument fragment for a reduced copy of the DEM.
    virtual QString previewArguments(const QString &) { return getCommandArguments(); }

    /// Whether the options are enough to launch the process.
    virtual bool isComplete() const = 0;

    /// There is another DEM or band, or more is known of it.
    virtual void setDem(const DemInfo &) { }

    /// Sentences that a launch is asked about before it begins.
    virtual QStringList launchWarnings() const { return {}; }
};
