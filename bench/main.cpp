// The library beside its alternatives: chooses the rows, checks and measures them, and reports.
#include "flat.h"
#include "measure.h"
#include "peak.h"
#include "report.h"

#include <cstdio>
#include <omp.h>
#include <regex>
#include <stdexcept>

using namespace bench;

namespace {

struct Options {
    bool quick = false, smoke = false, list = false, alone = false;
    std::string filter = ".", level = "best", goals, operations, out;
};

Options parse(int argc, char** argv)
{
    Options options;
    for (int i = 1; i < argc; ++i) {
        const std::string a = argv[i];
        const auto value = [&](const char* key) { return a.rfind(key, 0) == 0 ? a.c_str() + std::strlen(key) : nullptr; };
        if (a == "--quick") options.quick = true;
        else if (a == "--smoke") options.smoke = true;
        else if (a == "--list") options.list = true;
        else if (a == "--alone") options.alone = true;
        else if (const char* filter = value("--filter=")) options.filter = filter;
        else if (const char* level = value("--level=")) options.level = level;
        else if (const char* goals = value("--goals=")) options.goals = goals;
        else if (const char* operations = value("--operations=")) options.operations = operations;
        else if (const char* out = value("--out=")) options.out = out;
        else
            throw std::runtime_error("options: --filter=REGEX --level=best|v3|plain --quick --alone --smoke --list "
                                     "--goals=FILE --operations=FILE --out=PREFIX");
    }
    return options;
}

void yardsticks(Collector& collector, Flat& flat, bool quick)
{
    std::printf("\nYardsticks: GB/s, read and written bytes together\n\n%-10s", "");
    const std::pair<const char*, std::int64_t> sizes[] = {
        {"32 KiB", 1 << 15}, {"512 KiB", 1 << 19}, {"8 MiB", 1 << 23}, {"128 MiB", 1 << 27}};
    for (const auto& size : sizes) std::printf("  %9s", size.first);
    std::printf("\n");
    flat.use(1 << 27);
    for (const int threads : {1, 2}) {
        std::string lines[2] = {"flat add  ", "memcpy    "};
        for (auto& line : lines) line.replace(8, 2, std::to_string(threads) + 't');
        for (const auto& size : sizes) {
            const auto times =
                measure(collector, std::string("yardstick/") + size.first + '/' + std::to_string(threads) + 't',
                        {{"flat-add", [&] { flat.add(size.second, false, threads); }},
                         {"memcpy", [&] { flat.copy(size.second, threads); }}},
                        {quick ? 5 : 15, 1e-3});
            for (std::size_t i : {0, 1}) {
                char cell[20];
                std::snprintf(cell, sizeof cell, "  %9.0f", double(size.second) / times[i] / 1e9);
                lines[i] += cell;
            }
        }
        for (const auto& line : lines) std::printf("%s\n", line.c_str());
    }
}

// What no row is faster than: operations in a nanosecond, none fused, and the bytes of a flat add, which each row measures itself.
class Limits {
    Operations operations;
    double peak[2] = {NAN, NAN}; // float, double

public:
    Limits(const std::string& file, Collector& collector) : operations(file)
    {
        if (file.empty()) return;
        constexpr std::int64_t n = 1 << 20;
        const auto times = measure(collector, "yardstick/peak",
                                   {{"32f", [] { compute<float>(n); }}, {"64f", [] { compute<double>(n); }}}, {15, 1e-3});
        for (std::size_t i : {0, 1}) peak[i] = double(n) / times[i] / 1e9;
        std::printf("Peak of products and sums, none fused: %.0f in a nanosecond in float, %.0f in double\n", peak[0],
                    peak[1]);
    }
    bool isKnown(const Row& row) const { return row.size == Size::cache && !std::isnan(operations(row)); }
    double of(const Row& row, double flat) const { return std::fmax(operations(row) / peak[row.type == "64f"], flat); }
};

Result measure(Collector& collector, Flat& flat, const Limits& limits, const Row& row, const Prepared& prepared, bool quick)
{
    std::vector<Task> tasks;
    for (const auto& contender : prepared.contenders)
        tasks.push_back({contender.name, [&] { run(contender, prepared.count, row.threads); }});
    if (row.threads > 1) tasks.push_back({"one-thread", [&] { run(prepared.contenders[0], prepared.count, 1); }});
    const std::int64_t bytes = prepared.bytesRead + prepared.bytesWritten;
    const bool two = prepared.bytesRead >= 2 * prepared.bytesWritten;
    if (row.size == Size::stream || limits.isKnown(row))
        flat.use(bytes), tasks.push_back({"flat-add", [&] { flat.add(bytes, two, row.threads); }});

    const auto times = measure(collector, row.name(), tasks, paceOf(row, quick));

    Result result;
    result.row = row;
    result.count = prepared.count;
    result.bytes = double(bytes) / prepared.count;
    for (std::size_t i = 0; i < tasks.size(); ++i) {
        const double ns = times[i] * 1e9 / prepared.count;
        if (i < prepared.contenders.size()) result.names.push_back(tasks[i].first), result.ns.push_back(ns);
        else (tasks[i].first == "flat-add" ? result.flat : result.single) = ns;
    }
    if (limits.isKnown(row)) result.limit = limits.of(row, result.flat);
    return result;
}

void runAll(const Options& options)
{
    std::vector<Row> rows;
    const std::regex filter(options.filter);
    const bool fewer = options.quick && options.filter == ".";
    for (const auto& row : allRows())
        if (std::regex_search(row.name(), filter) && (!fewer || (row.layout == Layout::packed && row.threads == 1)))
            rows.push_back(row);
    if (rows.empty()) throw std::runtime_error("no row matches " + options.filter);
    if (options.list) {
        for (const auto& row : rows) std::printf("%s\n", row.name().c_str());
        return;
    }
    const Library library;
    if (options.level != "best" && options.level != library.level)
        throw std::runtime_error("the loader took level " + library.level + " of the library, not " + options.level);
    if (options.smoke) {
        for (const auto& row : rows) verify(row, row.prepare(countOf(row, true)));
        std::printf("%zu rows: all contenders agree with level %s\n", rows.size(), library.level.c_str());
        return;
    }

    const Goals goals(options.goals, library.level);
    startBenchmark();
    Collector collector(options.out.empty() ? "" : options.out + "-all.json");
    Flat flat;

    std::printf("Library: level %s. Alternatives: -O3 -march=%s, %s %s.\n", library.level.c_str(), BENCH_PEERS,
#ifdef __clang__
                "clang",
#else
                "g++",
#endif
                __VERSION__);
    double load = 0;
    if (getloadavg(&load, 1) == 1 && load > omp_get_num_procs() - 1.5)
        std::printf("The machine is busy (load %.1f, %d processors): rows with two threads mean little.\n", load,
                    omp_get_num_procs());
    if (options.filter == ".") yardsticks(collector, flat, options.quick);
    const Limits limits(options.operations, collector);
    std::fflush(stdout);

    std::vector<Result> results;
    for (const auto& row : rows) {
        Prepared prepared = row.prepare(countOf(row, false));
        const auto errors = verify(row, prepared);
        if (options.alone) prepared.contenders.resize(1);
        results.push_back(measure(collector, flat, limits, row, prepared, options.quick));
        for (std::size_t c = 0; c < prepared.contenders.size(); ++c)
            results.back().asideErrors.push_back(prepared.contenders[c].aside ? errors[c] : NAN);
        progress(results.size() - 1, rows.size(), results.back());
    }
    collector.end();
    judge(results, goals);
    tables(results);
    if (options.out.empty()) return;
    writeJson(options.out + ".json", results, library);
    writePlot(options.out + ".dat", results);
}

} // namespace

int main(int argc, char** argv)
{
    try {
        runAll(parse(argc, argv));
    } catch (const std::exception& error) {
        std::fprintf(stderr, "bench: %s\n", error.what());
        return 1;
    }
}
