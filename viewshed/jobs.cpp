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
    std::exception_ptr problem;
    std::mutex problemGuard;
    const auto runRemaining = [&](bool reports) {
        for (int job = next++; job < jobs; job = next++) {
            try {
                work(job);
                if (reports && progress)
                    progress(static_cast<double>(job + 1) / jobs);
            } catch (...) {
                const std::lock_guard lock(problemGuard);
                problem = problem ? problem : std::current_exception();
                next = jobs;
            }
        }
    };
    {
        std::vector<std::jthread> helpers;
        for (int thread = 1; thread < threads && thread < jobs; ++thread)
            helpers.emplace_back(runRemaining, false);
        runRemaining(true);
    }
    if (problem)
        std::rethrow_exception(problem);
    if (progress)
        progress(1.0);
}

} // namespace viewshed
