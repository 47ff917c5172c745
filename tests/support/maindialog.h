#pragma once

#include "app/window/processResultDialog.h"
#include "app/window/quvoGdalUtilities.h"

/// The main dialog, shown, with access to its controls.
struct ShownDialog
{
    explicit ShownDialog(const ToolPaths &tools)
        : window(tools, nullptr, {})
    {
        window.show();
    }
    template <class Widget> Widget *find(const char *name) { return window.findChild<Widget *>(name); }
    processResultDialog *result() { return window.findChild<processResultDialog *>(); }

    quvoGdalUtilities window;
};
