#include "app/batch/terminalprogress.h"

namespace
{

constexpr int lastTick = 40;
constexpr int ticksPerNumber = 4;

} // namespace

QString TerminalProgress::advance(int percent)
{
    // The ticks 2.5, 7.5 … of a tool arrive rounded down, as 2, 7 …: half a percent more leads to the same
    // tick.
    return upTo(static_cast<int>((percent + 0.5) / 2.5));
}

QString TerminalProgress::finish()
{
    return upTo(lastTick) + QStringLiteral(" - done.\n");
}

QString TerminalProgress::abandon()
{
    return m_tick < 0 ? QString() : QStringLiteral("\n");
}

QString TerminalProgress::upTo(int tick)
{
    QString text;
    while (m_tick < qMin(tick, lastTick)) {
        ++m_tick;
        text += m_tick % ticksPerNumber == 0 ? QString::number(m_tick * 100 / lastTick) : QStringLiteral(".");
    }
    return text;
}
