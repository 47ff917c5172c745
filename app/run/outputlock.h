#pragma once

#include <QLockFile>
#include <QString>
#include <QStringList>

#include <memory>
#include <vector>

/// Prevents two runs, of the window or the batch program, from writing the same output. The lock is a hidden
/// file beside each output, ".<output's name>.lock". It ends with this object or with its process.
class OutputLock
{
public:
    /// Tries to lock an output and removes what dead runs left beside it. Does not wait, except for up to a
    /// second where the lock file names no process. The output's folder exists; the output itself need not.
    explicit OutputLock(const QString &output)
        : OutputLock(QStringList{output})
    { }

    /// Locks several outputs. Where one of them cannot be locked, the lock has a problem, and the caller ends
    /// it.
    explicit OutputLock(const QStringList &outputs);

    /// Why an output could not be locked, in a sentence; empty when the lock is held.
    QString problem() const { return m_problem; }

    /// Whether the problem is that another run holds the lock, which it will give back.
    bool isHeldByOther() const { return m_isHeldByOther; }

private:
    void lock(const QString &output);

    std::vector<std::unique_ptr<QLockFile>> m_locks;
    QString m_problem;
    bool m_isHeldByOther = false;
};
