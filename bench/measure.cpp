#include "measure.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <iostream>
#include <limits>
#include <omp.h>
#include <stdexcept>

// Stands in for the companion's function of this name, so that each row has the number of threads that it asks for.
static int librarysThreads = 1;
extern "C" [[gnu::visibility("default")]] int ownGetNumThreads() { return librarysThreads; }

namespace bench {

int countOf(const Row& row, bool smoke)
{
    if (smoke) return row.threads > 1 ? 3001 : 37; // with threads, above every threshold
    switch (row.size) {
    case Size::many: return 20000;
    case Size::stream: return int((std::int64_t{128} << 20) / row.objectBytes);
    default:
        return int(std::clamp<std::int64_t>((1 << 20) / row.objectBytes, 64, 1000)); // large ones as many as stay in cache
    }
}

void run(const Contender& contender, int count, int threads)
{
    librarysThreads = threads;
    if (contender.threadsItself || threads == 1) return contender.run(0, count);
#pragma omp parallel num_threads(threads)
    {
        const std::int64_t t = omp_get_thread_num(), n = omp_get_num_threads();
        contender.run(int(count * t / n), int(count * (t + 1) / n));
    }
}

// ---- Correctness: every contender's result against the library's

static std::vector<int> sample(int count) // all objects, or a thousand at both ends
{
    std::vector<int> objects;
    for (int k = 0; k < count; ++k)
        if (k < 500 || k >= count - 500) objects.push_back(k);
    return objects;
}

// A NaN is the same as a NaN where one triangle of an object is written, but nowhere else anything but an error.
double errorOf(double x, double expected, double largest)
{
    if (x == expected || (std::isnan(x) && std::isnan(expected) && largest > 0)) return 0;
    const double error = std::fabs(x - expected) / largest;
    return std::isnan(error) ? INFINITY : error;
}

std::vector<double> verify(const Row& row, const Prepared& prepared)
{
    const std::vector<int> objects = sample(prepared.count);
    std::vector<std::vector<double>> expected; // of the library
    std::vector<double> errors;
    for (const auto& contender : prepared.contenders) {
        prepared.poison();
        run(contender, prepared.count, row.threads);
        if (expected.empty())
            for (const int k : objects) expected.push_back(prepared.result(k));
        double& worst = errors.emplace_back(0);
        const double allowed = contender.aside ? std::numeric_limits<double>::max() : prepared.tolerance;
        for (std::size_t index = 0; index < objects.size(); ++index) {
            const auto& reference = expected[index];
            const auto result = prepared.result(objects[index]);
            double largest = 0;
            for (const double x : reference) largest = std::fmax(largest, std::fabs(x));
            for (std::size_t i = 0; i < result.size(); ++i) {
                const double error = errorOf(result[i], reference[i], largest);
                worst = std::max(worst, error);
                if (error <= allowed) continue;
                char text[200];
                std::snprintf(text, sizeof text, ": %s gives %.17g, the library %.17g in element %zu of object %d",
                              contender.name.c_str(), result[i], reference[i], i, objects[index]);
                throw std::runtime_error(row.name() + text);
            }
        }
    }
    return errors;
}

// ---- Measuring

Collector::Collector(const std::string& path)
{
    if (path.empty()) return;
    file.open(path);
    if (!file) throw std::runtime_error("cannot write " + path);
    json.SetOutputStream(&file);
    json.SetErrorStream(&std::cerr);
}

bool Collector::ReportContext(const Context& context)
{
    if (file.is_open() && !begun) json.ReportContext(context);
    begun = true;
    return true;
}

void Collector::ReportRuns(const std::vector<Run>& runs)
{
    for (const auto& r : runs) {
        if (r.run_type != Run::RT_Iteration) continue;
        const double time = r.real_accumulated_time / double(r.iterations);
        const auto [at, isNew] = least.try_emplace(r.run_name.function_name, time);
        if (!isNew) at->second = std::min(at->second, time);
    }
    if (file.is_open()) json.ReportRuns(runs);
}

void Collector::end()
{
    if (file.is_open() && begun) json.Finalize();
}

// With threads a pass counts only if nothing else took any of the processors meanwhile: more and shorter turns.
Pace paceOf(const Row& row, bool quick)
{
    const bool stream = row.size == Size::stream, team = row.threads > 1;
    const int turns = stream ? (team ? 25 : 9) : (team ? 60 : 15);
    return {quick ? turns / 3 : turns, stream ? 1e-6 : team ? 2e-4 : 1e-3};
}

void startBenchmark()
{
    std::string arguments[] = {"bench", "--benchmark_enable_random_interleaving=true"};
    char* argv[] = {arguments[0].data(), arguments[1].data(), nullptr};
    int argc = 2;
    benchmark::Initialize(&argc, argv);
}

std::vector<double> measure(Collector& collector, const std::string& name, const std::vector<Task>& tasks, Pace pace)
{
    benchmark::ClearRegisteredBenchmarks();
    for (const auto& [taskName, task] : tasks)
        benchmark::RegisterBenchmark((name + '/' + taskName).c_str(),
                                     [&task = task](benchmark::State& state) {
                                         for (auto _ : state) {
                                             task();
                                             benchmark::ClobberMemory();
                                         }
                                     })
            ->UseRealTime()
            ->Unit(benchmark::kNanosecond)
            ->MinTime(pace.seconds)
            ->Repetitions(pace.turns);
    collector.least.clear();
    benchmark::RunSpecifiedBenchmarks(&collector, ".");
    std::vector<double> times;
    for (const auto& task : tasks) times.push_back(collector.least.at(name + '/' + task.first));
    return times;
}

} // namespace bench
