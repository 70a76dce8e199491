// bench_threads: what a second thread gains in kesl, and what it costs on a machine that has other things to do. Calls with one
// and with two threads alternate, so that both meet the same company. Prints a Markdown table.
#include "../stacks/problem.h"

#include <algorithm>
#include <chrono>
#include <csignal>
#include <cstdio>
#include <cstring>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

// Stands in for the companion's function of this name.
static int threads = 1;
extern "C" [[gnu::visibility("default")]] int ownGetNumThreads() { return threads; }

namespace {
using namespace bench;
using Clock = std::chrono::steady_clock;

double secondsOf(auto&& work)
{
    const auto start = Clock::now();
    work();
    return std::chrono::duration<double>(Clock::now() - start).count();
}

// Processes that compute as long as this object lives.
class Company {
    std::vector<pid_t> children;

public:
    explicit Company(int n)
    {
        for (int i = 0; i < n; ++i) {
            const pid_t child = fork();
            if (child == 0) {
                prctl(PR_SET_PDEATHSIG, SIGKILL);
                for (volatile unsigned x = 0;;) x = x + 1;
            }
            if (child > 0) children.push_back(child);
        }
    }
    ~Company()
    {
        for (pid_t child : children) kill(child, SIGKILL), waitpid(child, nullptr, 0);
    }
};

struct Times {
    double one, gain, typicalGain; // seconds on one thread; the ratio of the sums, and of the medians
};
Times compare(const std::function<void(Range)>& run, int count, double seconds)
{
    std::vector<double> times[2];
    double spent = 0;
    while (spent < seconds || times[0].size() < 20)
        for (int t : {0, 1}) {
            threads = 1 + t;
            times[t].push_back(secondsOf([&] { run({0, count}); }));
            spent += times[t].back();
        }
    double sums[2] = {}, medians[2];
    for (int t : {0, 1}) {
        for (double time : times[t]) sums[t] += time;
        std::nth_element(times[t].begin(), times[t].begin() + std::ptrdiff_t(times[t].size() / 2), times[t].end());
        medians[t] = times[t][times[t].size() / 2];
    }
    return {medians[0], sums[0] / sums[1], medians[0] / medians[1]};
}

void row(const char* name, int order, int bytes, double milliseconds, double seconds, int company)
{
    constexpr int few = 512;
    const auto& f = ::stacks::function(name);
    threads = 1;
    const auto sample = bench::stacks::problemOf(f, order, bytes, Layout::packed, few);
    const auto trial = bench::stacks::libraryOn(sample);
    double time = 1;
    for (int i = 0; i < 20; ++i) time = std::min(time, secondsOf([&] { trial({0, few}); }));
    const int count = std::max(1, int(milliseconds * 1e-3 / time * few));

    const auto problem = bench::stacks::problemOf(f, order, bytes, Layout::packed, count);
    const auto run = bench::stacks::libraryOn(problem);
    for (threads = 1; threads <= 2; ++threads) run({0, count}); // workers are started once
    const Times idle = compare(run, count, seconds);
    const Company others(company);
    const Times busy = compare(run, count, 4 * seconds);
    std::printf("| `kesl_%s_%s`, order %d | %d | %.2f | %.2f | %.2f | %.2f |\n", name, bytes == 4 ? "32f" : "64f", order,
                count, idle.one * 1e3, idle.typicalGain, busy.gain, busy.typicalGain);
    std::fflush(stdout);
}

} // namespace

int main(int argc, char** argv)
{
    const bool isQuick = argc > 1 && std::strcmp(argv[1], "--quick") == 0;
    const double seconds = isQuick ? 0.05 : 0.5;
    const int company = 4;
    std::printf("| call | objects | one thread, ms | gain, idle: median | gain, %d busy processes: mean | median |\n"
                "|---|--:|--:|--:|--:|--:|\n",
                company);
    for (double milliseconds : {0.1, 0.3, 1.0, 3.0, 10.0}) {
        row("inv", 4, 4, milliseconds, seconds, company);
        row("eigh", 3, 4, milliseconds, seconds, company);
        row("svd", 6, 8, milliseconds, seconds, company);
    }
}
