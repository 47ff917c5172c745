#pragma once

#include <QLockFile>
#include <QString>

#include <memory>

/// Keeps a second run, of this program or another one of ours, from writing the same output. The lock is a file
/// in the temporary directory, named after the output's canonical path, and ends with the object or with its
/// process.
class OutputLock
{
public:
    /// Takes the lock of an output in an existing folder.
    explicit OutputLock(const QString &output);

    /// Why the output is not free, in a sentence; empty when the lock is held.
    QString problem() const { return m_problem; }

private:
    std::unique_ptr<QLockFile> m_lock;
    QString m_problem;
};
