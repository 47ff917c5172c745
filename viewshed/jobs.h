#pragma once

#include <functional>

namespace viewshed
{

/// Runs work(0) … work(jobs − 1), each once, on so many threads; the calling one is one of them, and alone
/// tells the progress (from 0 to 1). The first exception of a job ends the run and is thrown again.
void runJobs(int jobs, int threads, const std::function<void(int)> &work,
             const std::function<void(double)> &progress);

} // namespace viewshed
