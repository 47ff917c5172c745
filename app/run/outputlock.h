#pragma once

#include <QLockFile>
#include <QString>

#include <memory>

/// Prevents two runs, of the window or the batch program, from writing the same output. The lock is a hidden
/// file beside the output, ".<output's name>.lock". It ends with this object or with its process.
class OutputLock
{
public:
    /// Tries to lock an output and removes what dead runs left beside it. Does not wait, except for up to a
    /// second where the lock file names no process. The output's folder exists; the output itself need not.
    explicit OutputLock(const QString &output);

    /// Why the output could not be locked, in a sentence; empty when the lock is held.
    QString problem() const { return m_problem; }

private:
    std::unique_ptr<QLockFile> m_lock;
    QString m_problem;
};
