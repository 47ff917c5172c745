#pragma once

#include <QString>

/// A step of a preview.
enum class PreviewStep
{
    None,
    Reduce, ///< makes a reduced copy of the DEM
    Compute ///< makes the product of that copy
};

/// Decides which step the previews need next, and whether the running step is still needed. It knows no window,
/// no clock and no child process: its owner reports events and then queries next() and isStale().
///
/// At most one step runs at a time. A change that makes its result useless makes the step stale: the owner
/// stops it, and its result is ignored. A change of options alone makes a computation outdated: its result is
/// still shown, as one frame of a picture that follows the user's hand, and the next computation begins after
/// it with the newest options.
class PreviewQueue
{
public:
    /// Whether the previews are visible. Hidden ones need no step.
    void setShown(bool shown);

    /// Identifies the DEM's file and the part of it to reduce; empty: there is no DEM. The identifier that is
    /// set already changes nothing.
    void setSource(const QString &source);

    /// A reduced copy of the current source exists already.
    void haveReduction();
    /// The reduced copy no longer exists.
    void loseReduction();
    bool hasReduction() const { return m_reduced; }

    /// The options changed, so that the product is out of date.
    void invalidate();

    /// The process changed: the product is of no use any more.
    void discard();

    /// The running computation is outdated and takes longer than its result is worth.
    void expire();

    /// Whether the options changed while the running computation runs.
    bool isOutdated() const { return m_outdated; }

    /// Whether the options suffice to compute a product. There is no Compute step while they do not.
    void setComplete(bool complete);

    /// A real run begins or ends. No step may run between.
    void hold();
    void release();

    /// The step that may begin now; None while one runs and where nothing is needed.
    PreviewStep next() const;

    /// The step was started.
    void begin(PreviewStep step);

    /// The running step has ended. A failure of a step that is neither stale nor outdated switches the previews
    /// off for good.
    void end(bool succeeded);

    PreviewStep running() const { return m_running; }

    /// Whether the owner should stop the running step.
    bool isStale() const { return m_stale; }

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
    bool m_outdated = false; ///< see isOutdated()
};
