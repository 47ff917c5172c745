#pragma once

#include <QString>

/// A step of a preview.
enum class PreviewStep
{
    None,
    Reduce, ///< a reduced copy of the DEM
    Compute ///< the product of that copy
};

/// What the previews need next, and whether what runs is still wanted. It knows no window, no clock and no
/// process: whoever owns it tells what happened, and asks.
///
/// At most one step runs at a time. Whatever makes its outcome useless makes it stale: its owner ends it, and
/// nothing of it counts.
class PreviewQueue
{
public:
    /// Whether the previews can be seen; hidden ones need nothing.
    void setShown(bool shown);

    /// Names what is to be reduced: the DEM's file and the part of it; empty: there is none. A name that is the
    /// current one changes nothing.
    void setSource(const QString &source);

    /// A reduced copy of the current source is at hand already, or not any more.
    void haveReduction();
    void loseReduction();
    bool hasReduction() const { return m_reduced; }

    /// The product is another one now.
    void invalidate();

    /// Whether the options are enough for a product; an incomplete panel has no preview.
    void setComplete(bool complete);

    /// A real run is on; nothing else runs meanwhile.
    void hold();
    void release();

    /// The step that may begin now; None while one runs, and when there is nothing to do.
    PreviewStep next() const;

    void begin(PreviewStep step);

    /// The running step has ended. A failure that still matters switches the previews off for good.
    void end(bool good);

    PreviewStep running() const { return m_running; }

    /// Whether the running step is to be ended.
    bool isStale() const { return m_stale; }

    /// Whether a failure switched the previews off.
    bool hasFailed() const { return m_failed; }

private:
    void outdate(PreviewStep from);

    QString m_source;
    bool m_shown = false;
    bool m_complete = false;
    bool m_held = false;
    bool m_failed = false;
    bool m_reduced = false;
    bool m_computed = false;
    PreviewStep m_running = PreviewStep::None;
    bool m_stale = false;
};
