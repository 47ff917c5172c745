#include "app/preview/previewqueue.h"

/// The results of this step and of those that follow it are out of date.
void PreviewQueue::outdate(PreviewStep from)
{
    m_computed = false;
    if (from == PreviewStep::Reduce)
        m_reduced = false;
    if (m_running == PreviewStep::Compute || (m_running == PreviewStep::Reduce && from == PreviewStep::Reduce))
        m_stale = true;
}

void PreviewQueue::setShown(bool shown)
{
    m_shown = shown;
    if (!shown && m_running != PreviewStep::None)
        m_stale = true;
}

void PreviewQueue::setSource(const QString &source)
{
    if (source == m_source)
        return;
    m_source = source;
    outdate(PreviewStep::Reduce);
}

void PreviewQueue::haveReduction()
{
    m_reduced = true;
}

void PreviewQueue::loseReduction()
{
    outdate(PreviewStep::Reduce);
}

void PreviewQueue::invalidate()
{
    m_computed = false;
    m_outdated = m_running == PreviewStep::Compute;
}

void PreviewQueue::discard()
{
    outdate(PreviewStep::Compute);
}

void PreviewQueue::expire()
{
    m_stale = m_stale || m_outdated;
}

void PreviewQueue::setComplete(bool complete)
{
    if (complete != m_complete)
        outdate(PreviewStep::Compute);
    m_complete = complete;
}

void PreviewQueue::hold()
{
    m_held = true;
    if (m_running != PreviewStep::None)
        m_stale = true;
}

void PreviewQueue::release()
{
    m_held = false;
}

PreviewStep PreviewQueue::next() const
{
    if (!m_shown || m_held || m_failed || m_source.isEmpty() || m_running != PreviewStep::None)
        return PreviewStep::None;
    if (!m_reduced)
        return PreviewStep::Reduce;
    return m_complete && !m_computed ? PreviewStep::Compute : PreviewStep::None;
}

void PreviewQueue::begin(PreviewStep step)
{
    m_running = step;
    m_stale = false;
    m_outdated = false;
}

void PreviewQueue::end(bool succeeded)
{
    if (!m_stale) {
        m_failed = m_failed || (!succeeded && !m_outdated);
        m_reduced = m_reduced || (succeeded && m_running == PreviewStep::Reduce);
        m_computed = succeeded && m_running == PreviewStep::Compute && !m_outdated;
    }
    m_running = PreviewStep::None;
    m_stale = false;
    m_outdated = false;
}
