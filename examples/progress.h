// Long work: tells on standard error how far it has come, and runs on all threads.
#pragma once
#include <chrono>
#include <cstdio>
#include <exception>

// Speaks once a second; work that is done before stays silent.
class Progress {
public:
    Progress(const char* work, double steps) : what(work), total(steps) {}

    void step(double steps = 1)
    {
        done += steps;
        if (clock::now() < next) return;
        next = clock::now() + std::chrono::seconds(1);
        std::fprintf(stderr, "%s: %.0f %%\n", what, 100 * done / total);
    }

private:
    using clock = std::chrono::steady_clock;
    const char* what;
    double total, done = 0;
    clock::time_point next = clock::now() + std::chrono::seconds(1);
};

// work(0), work(1), ... work(count - 1), each one step. An exception leaves when all threads are done.
template <class Work> void inParallel(int count, Progress& progress, Work work)
{
    std::exception_ptr failure;
#pragma omp parallel for schedule(dynamic)
    for (int i = 0; i < count; ++i) {
        std::exception_ptr mine;
        try {
            work(i);
        } catch (...) {
            mine = std::current_exception();
        }
#pragma omp critical
        {
            if (mine) failure = mine;
            progress.step();
        }
    }
    if (failure) std::rethrow_exception(failure);
}
