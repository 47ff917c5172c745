#include "viewshed/jobs.h"

#include <atomic>
#include <exception>
#include <mutex>
#include <thread>
#include <vector>

namespace viewshed
{

void runJobs(int jobs, int threads, const std::function<void(int)> &work,
             const std::function<void(double)> &progress)
{
    std::atomic<int> next = 0;
    std::exception_ptr failure;
    std::mutex failureGuard;
    const auto takeJobs = [&](bool tells) {
        for (int job = next++; job < jobs; job = next++) {
            try {
                work(job);
                if (tells && progress)
                    progress(static_cast<double>(job + 1) / jobs);
            } catch (...) {
                const std::lock_guard lock(failureGuard);
                failure = failure ? failure : std::current_exception();
                next = jobs;
            }
        }
    };
    {
        std::vector<std::jthread> helpers;
        for (int thread = 1; thread < threads && thread < jobs; ++thread)
            helpers.emplace_back(takeJobs, false);
        takeJobs(true);
    }
    if (failure)
        std::rethrow_exception(failure);
    if (progress)
        progress(1.0);
}

} // namespace viewshed
