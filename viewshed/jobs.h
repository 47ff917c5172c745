#pragma once

#include <functional>

namespace viewshed
{

/// Calls work(0) … work(jobs − 1), each once, on up to `threads` threads, one of which is the calling thread.
/// Returns when all are done. Only the calling thread calls `progress` (which may be empty), with the share
/// that is done, from 0 to 1. The first exception of `work` or `progress` keeps further jobs from starting and
/// is thrown again on the calling thread.
void runJobs(int jobs, int threads, const std::function<void(int)> &work,
             const std::function<void(double)> &progress);

} // namespace viewshed
