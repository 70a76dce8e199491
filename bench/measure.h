// How rows are checked and measured, whatever they are compared with.
#pragma once
#include "row.h"

#include <benchmark/benchmark.h>
#include <fstream>
#include <map>

namespace bench {

int countOf(const Row&, bool smoke);                       // objects
void run(const Contender&, int count, int threads);        // on all objects
std::vector<double> verify(const Row&, const Prepared&);   // the error of each; throws if one is wrong
double errorOf(double x, double expected, double largest); // relative to the largest element of the object

// Keeps the least time of each benchmark, and writes all that Google Benchmark knows as JSON.
class Collector : public benchmark::BenchmarkReporter {
    benchmark::JSONReporter json;
    std::ofstream file;
    bool begun = false;

public:
    std::map<std::string, double> least; // seconds

    explicit Collector(const std::string& path); // none: no JSON
    bool ReportContext(const Context&) override;
    void ReportRuns(const std::vector<Run>&) override;
    void end();
};

// Measures all tasks of a row in short turns, in random order, and returns the least time of each in seconds.
using Task = std::pair<std::string, std::function<void()>>;
struct Pace {
    int turns;
    double seconds; // of a turn; the shortest is one pass
};
Pace paceOf(const Row&, bool quick);
void startBenchmark();
std::vector<double> measure(Collector&, const std::string& name, const std::vector<Task>&, Pace);

} // namespace bench
