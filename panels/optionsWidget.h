#pragma once

#include "dataset/deminfo.h"
#include "panels/options/processoptions.h"
#include "panels/options/toolinput.h"

#include <QString>
#include <QStringList>
#include <QWidget>

#include <functional>
#include <optional>
#include <utility>

/// Base of the option panels. Each process has one panel, which shows and edits the process's option record.
///
/// Each panel declares the signal completeChanged(), which follows every change of its options, and the slot
/// slot_onOptionsChanged(); this class itself declares no signals or slots. A new panel shows the defaults of
/// its record: no reset button is enabled and no signal follows.
class optionsWidget : public QWidget
{
public:
    explicit optionsWidget(QWidget *parent = nullptr, Qt::WindowFlags flags = {})
        : QWidget(parent, flags)
    { }

    /// A constant of each panel. The program does not use it.
    virtual bool capabilityFlag() const = 0;

    /// The options as the panel shows them.
    virtual ProcessOptions processOptions() const = 0;

    /// Shows the options as if the user had set them; completeChanged() follows. Options of another process are
    /// ignored.
    virtual void setProcessOptions(const ProcessOptions &options) = 0;

    /// The argument fragment of the options. It carries its own blanks and is inserted in the command line
    /// unchanged.
    virtual QString getCommandArguments() = 0;

    /// What a launch passes to the tool. Writes the files that the tool reads. Returns nothing where a file
    /// cannot be written, after a message box with the reason.
    virtual std::optional<ToolInput> launchInput() { return ToolInput{.fragment = getCommandArguments()}; }

    /// What a preview passes to the tool. `copy` is the path of the reduced copy of the DEM that the tool
    /// reads. Otherwise like launchInput().
    virtual std::optional<ToolInput> previewInput(const QString &copy)
    {
        Q_UNUSED(copy)
        return launchInput();
    }

    /// Whether the options are enough to launch the process.
    virtual bool isComplete() const = 0;

    /// What the options lack for a launch, as a sentence that says what to do; empty exactly where
    /// isComplete().
    virtual QString missing() const { return {}; }

    /// The DEM or band changed, or its extreme values became known.
    virtual void setDem(const DemInfo &) { }

    /// What the chosen ratio of units means for the DEM, in a sentence; empty: it needs no remark.
    virtual void setScaleHint(const QString &) { }

    /// The format of the product changed: GDAL's short driver name.
    virtual void setOutputFormat(const QString &) { }

    /// The path of the product changed; empty: it has no name yet.
    virtual void setProduct(const QString &) { }

    /// Sentences that the user confirms before a launch begins.
    virtual QStringList launchWarnings() const { return {}; }

    /// Sets the one listener that is called at each change of an option, before the completeChanged() that
    /// follows; it may be empty. completeChanged() may report a burst of changes by one signal, whereas the
    /// listener is called at every change of the burst, when the panel shows the new value. A change of several
    /// options, such as setProcessOptions(), calls it several times.
    void setChangeListener(std::function<void()> listener) { m_changeListener = std::move(listener); }

protected:
    /// Calls the listener. Panels call it at each change of an option that could change the product.
    void reportChange() const
    {
        const auto listener = m_changeListener; // the listener may set another one
        if (listener)
            listener();
    }

    /// Pause in milliseconds between the last change and completeChanged(), in panels that report a burst of
    /// changes by one signal.
    static constexpr int changeDelay = 100;

private:
    std::function<void()> m_changeListener;
};
