// bench_threads kesl|keslmx: what threads gain in a library, and what they cost on a machine that has other things to do. Prints the
// rows of a Markdown table. Calls on one thread and on as many as the library takes alternate, so that both meet the same company.
#include "../../tests/company.h"
#include "../stacks/problem.h"

#include <algorithm>
#include <atomic>
#include <chrono>
#include <cmath>
#include <cstdio>
#include <keslcorex.h>
#include <thread>

namespace {
using namespace bench;
using namespace bench::stacks;

double secondsOf(auto&& work)
{
    using Clock = std::chrono::steady_clock;
    const auto start = Clock::now();
    work();
    return std::chrono::duration<double>(Clock::now() - start).count();
}

// A function and its objects: so many as take the library two milliseconds on one thread.
struct Subject {
    std::string name;
    std::shared_ptr<Problem> problem;
    std::function<void(Range)> run;
    int count = 0, winsFrom = 0;
    double microseconds = 0, gain = 0, limit = 0; // of winsFrom on one thread; of all objects, by the library and at most
};

double medianOf(std::vector<double>& v)
{
    std::nth_element(v.begin(), v.begin() + std::ptrdiff_t(v.size() / 2), v.end());
    return v[v.size() / 2];
}

// One thread's time / that of threads: of the medians, or of the sums, which the longest calls decide.
struct Gain {
    double median, mean, one; // seconds on one thread
};
Gain gainOf(const Subject& subject, int count, double seconds)
{
    std::vector<double> times[2];
    double spent = 0, sums[2] = {};
    while (spent < seconds || times[0].size() < 5)
        for (int t : {0, 1}) {
            keslCoreSetNumThreads(t == 0 ? 1 : 0);
            times[t].push_back(secondsOf([&] { subject.run({0, count}); }));
            sums[t] += times[t].back(), spent += times[t].back();
        }
    const double one = medianOf(times[0]), all = medianOf(times[1]);
    return {one / all, sums[0] / sums[1], one};
}

// What the machine allows: the gain of two threads that need nothing of each other. Each calls for half of the objects.
double limitOf(const Subject& subject)
{
    keslCoreSetNumThreads(1);
    const int half = subject.count / 2;
    std::vector<double> alone, together;
    for (int turn = 0; turn < 25; ++turn) {
        alone.push_back(secondsOf([&] { subject.run({0, subject.count}); }));
        enum { begun, ready, asked, done };
        std::atomic<int> state = begun;
        std::thread second([&] {
            state = ready;
            while (state != asked) {}
            subject.run({half, subject.count});
            state = done;
        });
        while (state != ready) {}
        together.push_back(secondsOf([&] {
            state = asked;
            subject.run({0, half});
            while (state != done) {}
        }));
        second.join();
    }
    return medianOf(alone) / medianOf(together);
}

// An empty one if the library has no such function.
Subject subjectOf(const ::stacks::Function& f, bool isKesl)
{
    const int order = f.sizes.empty() ? 3 : 4, most = 1 << 20;
    const auto runOf = [&](const std::shared_ptr<Problem>& problem) -> std::function<void(Range)> {
        if (isKesl) return [problem, run = libraryOn(*problem)](Range range) { run(range); };
        for (const Alternative& other : alternatives())
            if (other.function == f.name && other.suits(*problem))
                return [problem, run = other.run](Range range) { run(*problem, range); };
        return nullptr;
    };
    keslCoreSetNumThreads(1);
    Subject subject;
    for (double work = 0; work < 2e-3 && subject.count < most;) { // again and again, until they fill the time
        const double enough = work > 0 ? 2.2e-3 / work * subject.count : 1000;
        subject.count = int(std::min<double>(most, enough));
        subject.problem = std::make_shared<Problem>(problemOf(f, order, sizeof(float), Layout::packed, subject.count));
        subject.run = runOf(subject.problem);
        if (!subject.run) return {};
        work = 1;
        for (int i = 0; i < 10; ++i) work = std::min(work, secondsOf([&] { subject.run({0, subject.count}); }));
    }
    subject.name = (isKesl ? "kesl_" : "keslmx ") + f.name;
    return subject;
}

} // namespace

int main(int argc, char** argv)
{
    const std::string library = argc == 2 ? argv[1] : "";
    if (library != "kesl" && library != "keslmx") return std::fprintf(stderr, "bench_threads kesl|keslmx\n"), 2;
    std::vector<Subject> subjects;
    for (const auto& f : ::stacks::functions()) {
        Subject subject = subjectOf(f, library == "kesl");
        if (!subject.run) continue;
        keslCoreSetNumThreads(0);
        for (int i = 0; i < 3; ++i) subject.run({0, subject.count}); // workers are started once
        subject.gain = gainOf(subject, subject.count, 0.1).median;
        subject.limit = limitOf(subject);
        for (int count = subject.count; count > 50; count /= 2) {
            const Gain here = gainOf(subject, count, 0.02);
            if (here.median < 1.1) break;
            subject.winsFrom = count, subject.microseconds = here.one * 1e6;
        }
        subjects.push_back(std::move(subject));
    }
    const Company others(4);
    for (const Subject& s : subjects) {
        const Gain busy = gainOf(s, s.count, 1);
        const std::string wins =
            s.winsFrom ? std::to_string(s.winsFrom) + " | " + std::to_string(std::lround(s.microseconds)) : "– | –";
        std::printf("| `%s` | %s | %d | %.2f | %.2f | %.2f | %.2f |\n", s.name.c_str(), wins.c_str(), s.count, s.gain,
                    s.limit, busy.mean, busy.median);
        std::fflush(stdout);
    }
}
