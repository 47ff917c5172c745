#pragma once

#include "panels/processoptions.h"

#include <QString>
#include <QWidget>

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

    /// The argument fragment of the options. It carries its own blanks and is inserted in the command line as
    /// it stands.
    virtual QString getCommandArguments() = 0;

    /// Whether the options are enough to launch the process.
    virtual bool isComplete() const = 0;
};
