// bench_against NEW OLD: two builds of the library, row by row, in short turns and in random order.
#include "../measure.h"
#include "routes.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <regex>
#include <stdexcept>

using namespace bench;

namespace {

constexpr double tolerated = 0.95; // of the speed of the old build

struct Options {
    std::vector<std::string> files;
    std::string filter = ".";
    bool quick = false, smoke = false, list = false, strict = false;
};

Options parse(int argc, char** argv)
{
    Options options;
    for (int i = 1; i < argc; ++i) {
        const std::string a = argv[i];
        if (a == "--quick") options.quick = true;
        else if (a == "--smoke") options.smoke = true;
        else if (a == "--list") options.list = true;
        else if (a == "--strict") options.strict = true;
        else if (a.rfind("--filter=", 0) == 0) options.filter = a.substr(9);
        else if (a.rfind("--", 0) != 0) options.files.push_back(a);
        else throw std::runtime_error("options: --filter=REGEX --quick --smoke --list --strict");
    }
    if (options.files.size() != 2 && !options.list)
        throw std::runtime_error("arguments: two library files, the new one first");
    return options;
}

std::vector<Row> rowsOf(const Options& options)
{
    std::vector<Row> rows;
    const std::regex filter(options.filter);
    const auto isQuick = [](const Row& row) { return row.threads == 1 && row.size != Size::stream; };
    for (const auto& row : allRows())
        if (std::regex_search(row.name(), filter) && (!options.quick || isQuick(row))) rows.push_back(row);
    if (rows.empty()) throw std::runtime_error("no row matches " + options.filter);
    return rows;
}

// The row's data, with the two builds as contenders that have to agree in every bit.
Prepared prepareBoth(const Row& row, bool smoke, const Build& now, const Build& before)
{
    Prepared both = row.prepare(countOf(row, smoke));
    const Contender library = both.contenders.front();
    both.contenders.clear();
    for (const auto& [name, build] : {std::pair{"new", &now}, {"old", &before}}) {
        Contender contender = library;
        contender.name = name;
        contender.run = [build = build, run = library.run](int begin, int end) { build->use(), run(begin, end); };
        both.contenders.push_back(contender);
    }
    both.tolerance = 0;
    return both;
}

struct Compared {
    std::string name;
    double now, before; // ns for an object
    double ratio() const { return before / now; }
};

// A row that seems slower is measured again: what else runs on the machine can only make a time longer.
Compared compare(Collector& collector, const Row& row, const Prepared& both)
{
    std::vector<Task> tasks;
    for (const auto& contender : both.contenders)
        tasks.push_back({contender.name, [&] { run(contender, both.count, row.threads); }});
    Compared result{row.name(), INFINITY, INFINITY};
    for (int round = 0; round < 4 && !(result.ratio() >= tolerated); ++round) {
        const auto times = measure(collector, row.name(), tasks, paceOf(row, false));
        result.now = std::min(result.now, times[0] * 1e9 / both.count);
        result.before = std::min(result.before, times[1] * 1e9 / both.count);
    }
    return result;
}

// Whether no row is slower than is tolerated.
bool report(std::vector<Compared> all)
{
    double logarithms = 0;
    for (const auto& row : all) logarithms += std::log(row.ratio());
    std::stable_sort(all.begin(), all.end(), [](const auto& a, const auto& b) { return a.ratio() < b.ratio(); });
    const auto slower = std::find_if(all.begin(), all.end(), [](const auto& row) { return row.ratio() >= tolerated; });
    std::printf("%zu rows; old time / new time: least %.2f, median %.2f, most %.2f, geometric mean %.3f\n", all.size(),
                all.front().ratio(), all[all.size() / 2].ratio(), all.back().ratio(),
                std::exp(logarithms / double(all.size())));
    std::printf("%td below %.2f%s\n", slower - all.begin(), tolerated, slower == all.begin() ? "" : ", the slowest first:");
    for (auto row = all.begin(); row != slower; ++row)
        std::printf("  %-40s %.2f  (%.2f ns, before %.2f)\n", row->name.c_str(), row->ratio(), row->now, row->before);
    return slower == all.begin();
}

int runAll(const Options& options)
{
    const auto rows = rowsOf(options);
    if (options.list) {
        for (const auto& row : rows) std::printf("%s\n", row.name().c_str());
        return 0;
    }
    const Build now(options.files[0]), before(options.files[1]);
    startBenchmark();
    Collector collector("");
    std::vector<Compared> all;
    for (const auto& row : rows) {
        const Prepared both = prepareBoth(row, options.smoke, now, before);
        verify(row, both);
        if (options.smoke) continue;
        const auto& result = all.emplace_back(compare(collector, row, both));
        std::fprintf(stderr, "[%3zu/%zu] %-40s %6.2f  (%.2f ns, before %.2f)\n", all.size(), rows.size(),
                     result.name.c_str(), result.ratio(), result.now, result.before);
    }
    if (options.smoke) {
        std::printf("%zu rows: both builds agree\n", rows.size());
        return 0;
    }
    return report(all) || !options.strict ? 0 : 1;
}

} // namespace

int main(int argc, char** argv)
{
    try {
        return runAll(parse(argc, argv));
    } catch (const std::exception& error) {
        std::fprintf(stderr, "bench_against: %s\n", error.what());
        return 2;
    }
}
