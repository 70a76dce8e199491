// Runs the rows: checks that all contenders of a row compute the same, measures them side by side, prints the ratios.
#include "kit.h"

#include <algorithm>
#include <benchmark/benchmark.h>
#include <cmath>
#include <cstdio>
#include <dlfcn.h>
#include <fstream>
#include <iostream>
#include <map>
#include <omp.h>
#include <regex>
#include <set>
#include <stdexcept>

// Stands in for the companion's function of this name, so that each row has the number of threads that it asks for.
static int librarysThreads = 1;
extern "C" [[gnu::visibility("default")]] int ownGetNumThreads() { return librarysThreads; }

namespace bench {

std::vector<Row>& allRows()
{
    static std::vector<Row> rows;
    return rows;
}

std::string Row::name() const
{
    return family + '/' + type + '/' + std::to_string(order) + '/' + layoutNames[int(layout)] + '/' + sizeNames[int(size)] +
           '/' + std::to_string(threads) + 't';
}

} // namespace bench

using namespace bench;

namespace {

struct Options {
    bool quick = false, smoke = false, list = false;
    std::string filter = ".", level = "best", goals, out;
};

// ---- Which library was loaded

struct Library {
    std::string file, level = "plain";
    Library()
    {
        Dl_info info;
        if (!dladdr(dlsym(RTLD_DEFAULT, "keslGetLibVersion"), &info)) return;
        file = info.dli_fname;
        if (file.find("x86-64-v3/") != file.npos) level = "v3";
        if (file.find("x86-64-v4/") != file.npos) level = "v4";
    }
};

// ---- Goals

class Goals {
    struct Line {
        std::string family, order, goal[2];
    };
    std::vector<Line> lines;

public:
    Goals(const std::string& file, const std::string& level)
    {
        std::ifstream in(file);
        if (!in) throw std::runtime_error("cannot read the goals: " + file);
        const int column = level == "v4" ? 0 : level == "v3" ? 2 : 4;
        for (std::string text; std::getline(in, text);) {
            if (text.empty() || text[0] == '#') continue;
            std::istringstream words(text);
            std::string family, order, goal[6];
            words >> family >> order;
            for (auto& g : goal) words >> g;
            if (!words) throw std::runtime_error(file + ": not a family, an order and six goals: " + text);
            lines.push_back({family, order, {goal[column], goal[column + 1]}});
        }
    }
    double operator()(const Row& row) const // NaN: none
    {
        const bool named = row.layout == Layout::packed && row.size == Size::cache;
        for (const auto& line : lines)
            if (line.family == "*" ||
                (named && line.family == row.family && (line.order == "*" || line.order == std::to_string(row.order)))) {
                const auto& goal = line.goal[row.type == "64f"];
                return goal == "-" ? NAN : std::stod(goal);
            }
        return NAN;
    }
};

// ---- Correctness: every contender's result against the library's

std::vector<int> sample(int count) // all objects, or a thousand at both ends
{
    std::vector<int> objects;
    for (int k = 0; k < count; ++k)
        if (k < 500 || k >= count - 500) objects.push_back(k);
    return objects;
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

// Returns the error of each, relative to the largest element of an object.
std::vector<double> verify(const Row& row, const Prepared& prepared)
{
    std::vector<std::vector<double>> expected;
    std::vector<double> errors;
    for (const auto& contender : prepared.contenders) {
        prepared.poison();
        run(contender, prepared.count, row.threads);
        std::size_t index = 0;
        double& error = errors.emplace_back(0);
        for (const int k : sample(prepared.count)) {
            const auto result = prepared.result(k);
            if (&contender == &prepared.contenders[0]) expected.push_back(result);
            const auto& reference = expected[index++];
            double largest = 0;
            for (const double x : reference) largest = std::fmax(largest, std::fabs(x));
            const auto untouched = [largest](double x) { return largest > 0 && std::isnan(x); }; // one triangle is written
            for (std::size_t i = 0; i < result.size(); ++i) {
                error = std::fmax(error, std::fabs(result[i] - reference[i]) / largest);
                if (!contender.aside &&
                    !(std::fabs(result[i] - reference[i]) <= prepared.tolerance * largest) && // so a NaN fails too
                    !(untouched(result[i]) && untouched(reference[i]))) {
                    char text[200];
                    std::snprintf(text, sizeof text, ": %s gives %.17g, the library %.17g in element %zu of object %d",
                                  contender.name.c_str(), result[i], reference[i], i, k);
                    throw std::runtime_error(row.name() + text);
                }
            }
        }
    }
    return errors;
}

// ---- Measuring

// Keeps the least time of each benchmark, and writes all that Google Benchmark knows as JSON.
class Collector : public benchmark::BenchmarkReporter {
    benchmark::JSONReporter json;
    std::ofstream file;
    bool begun = false;

public:
    std::map<std::string, double> least; // seconds

    explicit Collector(const std::string& path)
    {
        if (path.empty()) return;
        file.open(path);
        if (!file) throw std::runtime_error("cannot write " + path);
        json.SetOutputStream(&file);
        json.SetErrorStream(&std::cerr);
    }
    bool ReportContext(const Context& context) override
    {
        if (file.is_open() && !begun) json.ReportContext(context);
        begun = true;
        return true;
    }
    void ReportRuns(const std::vector<Run>& runs) override
    {
        for (const auto& r : runs) {
            if (r.run_type != Run::RT_Iteration) continue;
            const double time = r.real_accumulated_time / double(r.iterations);
            const auto [at, isNew] = least.try_emplace(r.run_name.function_name, time);
            if (!isNew) at->second = std::min(at->second, time);
        }
        if (file.is_open()) json.ReportRuns(runs);
    }
    void end()
    {
        if (file.is_open() && begun) json.Finalize();
    }
};

using Task = std::pair<std::string, std::function<void()>>;

// Measures all tasks of a row in short turns, in random order, and returns the least time of each in seconds.
std::vector<double> measure(Collector& collector, const std::string& name, const std::vector<Task>& tasks, int turns,
                            double turn)
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
            ->MinTime(turn)
            ->Repetitions(turns);
    collector.least.clear();
    benchmark::RunSpecifiedBenchmarks(&collector, ".");
    std::vector<double> times;
    for (const auto& task : tasks) times.push_back(collector.least.at(name + '/' + task.first));
    return times;
}

// ---- Yardsticks: a flat add of one or two arrays, and memcpy

class Flat {
    std::vector<float> memory;

public:
    void use(std::int64_t bytes) { memory.resize(std::max(memory.size(), std::size_t(bytes / 4 + 48)), 1.0f); }

    [[gnu::noinline]] static void addOne(const float* x, float* y, std::int64_t n)
    {
#pragma GCC ivdep
        for (std::int64_t i = 0; i < n; ++i) y[i] = x[i] + 1.0f;
    }
    [[gnu::noinline]] static void addTwo(const float* x, const float* y, float* z, std::int64_t n)
    {
#pragma GCC ivdep
        for (std::int64_t i = 0; i < n; ++i) z[i] = x[i] + y[i];
    }
    // Moves bytes in all: as many written as read, or half as many.
    void add(std::int64_t bytes, bool two, int threads)
    {
        const std::int64_t n = bytes / (two ? 12 : 8);
        slices(n, threads, [&](std::int64_t begin, std::int64_t length) {
            float* const p = memory.data() + begin;
            if (two) addTwo(p, p + n + 16, p + 2 * (n + 16), length);
            else addOne(p, p + n + 16, length);
        });
    }
    void copy(std::int64_t bytes, int threads)
    {
        const std::int64_t n = bytes / 8;
        slices(n, threads, [&](std::int64_t begin, std::int64_t length) {
            std::memcpy(memory.data() + n + 16 + begin, memory.data() + begin, std::size_t(length) * 4);
        });
    }

private:
    static void slices(std::int64_t n, int threads, auto body)
    {
        if (threads == 1) return body(std::int64_t{0}, n);
#pragma omp parallel num_threads(threads)
        {
            const std::int64_t t = omp_get_thread_num(), nt = omp_get_num_threads();
            body(n * t / nt, n * (t + 1) / nt - n * t / nt);
        }
    }
};

// ---- Results

struct Result {
    Row row;
    int count = 0;
    std::vector<std::string> names;
    std::vector<double> ns; // per object; the library first
    double single = NAN;    // the library on one thread, in rows of more
    double flat = NAN;      // a flat add of the same bytes, in streaming rows
    double bytes = 0;       // per object
    double goal = NAN;
    bool missed = false;

    std::vector<double> asideErrors; // NaN for those that are not aside

    double best() const
    {
        double least = NAN;
        for (std::size_t i = 1; i < ns.size(); ++i)
            if (std::isnan(asideErrors[i])) least = std::fmin(least, ns[i]);
        return least;
    }
    double ratio() const { return best() / ns[0]; }
    double at(const char* name) const
    {
        const auto i = std::find(names.begin(), names.end(), name);
        return i == names.end() ? NAN : ns[std::size_t(i - names.begin())];
    }
};

int countOf(const Row& row, bool smoke)
{
    if (smoke) return row.threads > 1 ? 3001 : 37; // with threads, above every threshold
    switch (row.size) {
    case Size::many: return 20000;
    case Size::stream: return int((std::int64_t{128} << 20) / row.objectBytes);
    default: return 1000;
    }
}

Result measure(Collector& collector, Flat& flat, const Row& row, const Prepared& prepared, bool quick)
{
    const bool stream = row.size == Size::stream;
    std::vector<Task> tasks;
    for (const auto& contender : prepared.contenders)
        tasks.push_back({contender.name, [&] { run(contender, prepared.count, row.threads); }});
    if (row.threads > 1) tasks.push_back({"one-thread", [&] { run(prepared.contenders[0], prepared.count, 1); }});
    const std::int64_t bytes = prepared.bytesRead + prepared.bytesWritten;
    const bool two = prepared.bytesRead >= 2 * prepared.bytesWritten;
    if (stream) flat.use(bytes), tasks.push_back({"flat-add", [&] { flat.add(bytes, two, row.threads); }});

    // With threads a pass counts only if nothing else took any of the processors meanwhile: more and shorter turns.
    const bool team = row.threads > 1;
    const int turns = (stream ? (team ? 25 : 9) : (team ? 60 : 15)) / (quick ? 3 : 1);
    const double turn = stream ? 1e-6 : team ? 2e-4 : 1e-3; // seconds; the shortest is one pass
    const auto times = measure(collector, row.name(), tasks, turns, turn);

    Result result;
    result.row = row;
    result.count = prepared.count;
    result.bytes = double(bytes) / prepared.count;
    for (std::size_t i = 0; i < tasks.size(); ++i) {
        const double ns = times[i] * 1e9 / prepared.count;
        if (i < prepared.contenders.size()) result.names.push_back(tasks[i].first), result.ns.push_back(ns);
        else (tasks[i].first == "flat-add" ? result.flat : result.single) = ns;
    }
    return result;
}

// Out of cache a row is as fast as it can be if it moves its bytes as a flat add does, or takes the time that it takes
// in cache; elsewhere the goal is a ratio to the best alternative.
void judge(std::vector<Result>& results, const Goals& goals)
{
    std::map<std::string, double> inCache;
    for (const auto& r : results)
        if (r.row.size == Size::cache)
            inCache[r.row.family + r.row.type + std::to_string(r.row.order) + layoutNames[int(r.row.layout)]] = r.ns[0];
    for (auto& r : results) {
        if (r.row.size == Size::one) continue;
        r.goal = goals(r.row);
        if (r.row.size != Size::stream) {
            r.missed = r.ratio() < r.goal;
            continue;
        }
        const auto cached =
            inCache.find(r.row.family + r.row.type + std::to_string(r.row.order) + layoutNames[int(r.row.layout)]);
        const double cacheTime = cached == inCache.end() ? 0 : cached->second / r.row.threads;
        r.missed = r.flat / r.ns[0] < r.goal && r.ns[0] > 1.1 * cacheTime;
    }
}

// ---- Output

void progress(std::size_t i, std::size_t n, const Result& r)
{
    std::fprintf(stderr, "[%3zu/%zu] %-34s", i + 1, n, r.row.name().c_str());
    for (std::size_t c = 0; c < r.ns.size(); ++c) {
        std::fprintf(stderr, "  %s %.2f", r.names[c].c_str(), r.ns[c]);
        if (!std::isnan(r.asideErrors[c])) std::fprintf(stderr, " (error %.1e)", r.asideErrors[c]);
    }
    if (!std::isnan(r.flat)) std::fprintf(stderr, "  flat add %.2f", r.flat);
    std::fprintf(stderr, " ns\n");
}

// One line per family, type and layout, one column per order.
template <class Cell>
void table(const std::vector<Result>& results, Size size, int threads, int width, const char* title, Cell cell)
{
    std::set<int> orders;
    std::vector<std::string> heads;
    std::map<std::string, std::map<int, const Result*>> lines;
    for (const auto& r : results) {
        if (r.row.size != size || r.row.threads != threads) continue;
        char head[100];
        std::snprintf(head, sizeof head, "%-10s %-7s %-7s", r.row.family.c_str(), r.row.type == "32f" ? "float" : "double",
                      layoutNames[int(r.row.layout)]);
        if (!lines.count(head)) heads.push_back(head);
        lines[head][r.row.order] = &r;
        orders.insert(r.row.order);
    }
    if (heads.empty()) return;
    std::printf("\n%s\n\n%-26s", title, "");
    for (const int order : orders) std::printf("  %*d", width, order);
    std::printf("\n");
    for (const auto& head : heads) {
        std::printf("%-26s", head.c_str());
        for (const int order : orders) {
            const auto at = lines[head].find(order);
            std::printf("  %*s", width, at == lines[head].end() ? "" : cell(*at->second).c_str());
        }
        std::printf("\n");
    }
}

template <class... A> std::string format(const char* form, A... values)
{
    char text[100];
    std::snprintf(text, sizeof text, form, values...);
    return text;
}

void tables(const std::vector<Result>& results)
{
    const auto ratio = [](const Result& r) {
        const auto goal = std::isnan(r.goal) ? std::string("(-)") : format("(%.2f)", r.goal);
        return format("%.2f %6s%c", r.ratio(), goal.c_str(), r.missed ? '*' : ' ');
    };
    table(results, Size::cache, 1, 13,
          "1,000 objects in cache, one thread: best alternative / library (goal), * under its goal, by order", ratio);
    table(results, Size::many, 2, 20,
          "20,000 objects, two threads: best alternative / library (goal), and the gain from the second thread, by order",
          [&](const Result& r) { return format("%s x%.1f", ratio(r).c_str(), r.single / r.ns[0]); });
    for (const int threads : {1, 2})
        table(results, Size::stream, threads, 18,
              threads == 1 ? "128 MiB, one thread: GB/s, ratio to a flat add of the same bytes (goal 0.9, or the time "
                             "in cache), to the best alternative"
                           : "128 MiB, two threads: the same",
              [](const Result& r) {
                  return format("%.0f %.2f%c %.2f", r.bytes / r.ns[0], r.flat / r.ns[0], r.missed ? '*' : ' ', r.ratio());
              });
    table(results, Size::one, 1, 20,
          "One call on one object, checks included: ns, times the inlined operation, times a C function",
          [](const Result& r) {
              return format("%.1f ns x%.1f x%.1f", r.ns[0], r.ns[0] / r.at("inlined"), r.ns[0] / r.at("function"));
          });
    const auto missed = std::count_if(results.begin(), results.end(), [](const Result& r) { return r.missed; });
    std::printf("\n%zu rows, %td under their goal\n", results.size(), missed);
}

std::FILE* create(const std::string& path)
{
    std::FILE* const file = std::fopen(path.c_str(), "w");
    if (!file) throw std::runtime_error("cannot write " + path);
    return file;
}

void writeJson(const std::string& path, const std::vector<Result>& results, const Library& library)
{
    const auto number = [](double x) { return std::isnan(x) ? std::string("null") : format("%.4g", x); };
    std::FILE* const f = create(path);
    std::fprintf(f, "{\"level\": \"%s\", \"alternatives\": \"%s\", \"compiler\": \"%s\", \"rows\": [", library.level.c_str(),
                 BENCH_PEERS, __VERSION__);
    for (const auto& r : results) {
        std::fprintf(
            f, "%s\n  {\"name\": \"%s\", \"count\": %d, \"bytes\": %.0f, \"ratio\": %s, \"goal\": %s, \"missed\": %s, ",
            &r == &results[0] ? "" : ",", r.row.name().c_str(), r.count, r.bytes, number(r.ratio()).c_str(),
            number(r.goal).c_str(), r.missed ? "true" : "false");
        std::fprintf(f, "\"flat_add\": %s, \"one_thread\": %s, \"ns\": {", number(r.flat).c_str(), number(r.single).c_str());
        for (std::size_t c = 0; c < r.ns.size(); ++c)
            std::fprintf(f, "%s\"%s\": %s", c ? ", " : "", r.names[c].c_str(), number(r.ns[c]).c_str());
        std::fprintf(f, "}}");
    }
    std::fprintf(f, "\n]}\n");
    std::fclose(f);
}

// For the plot: float and double as one block each (place, order, ratio, goal), then the families' names and places.
void writePlot(const std::string& path, const std::vector<Result>& results)
{
    std::vector<const Result*> shown;
    for (const auto& r : results)
        if (r.row.size == Size::cache && r.row.layout == Layout::packed && !std::isnan(r.goal)) shown.push_back(&r);

    std::map<std::pair<std::string, int>, int> places; // of a family's order, the same in both blocks
    std::vector<std::pair<std::string, std::vector<int>>> families;
    int place = 0;
    for (const Result* r : shown) {
        if (places.count({r->row.family, r->row.order})) continue;
        if (families.empty() || families.back().first != r->row.family) families.push_back({r->row.family, {}}), ++place;
        families.back().second.push_back(place);
        places[{r->row.family, r->row.order}] = place++;
    }
    std::FILE* const f = create(path);
    for (const char* type : {"32f", "64f"}) {
        for (const Result* r : shown)
            if (r->row.type == type)
                std::fprintf(f, "%d %d %.3f %g\n", places[{r->row.family, r->row.order}], r->row.order, r->ratio(), r->goal);
        std::fprintf(f, "\n\n");
    }
    for (const auto& [family, at] : families) std::fprintf(f, "%g \"%s\"\n", (at.front() + at.back()) / 2.0, family.c_str());
    std::fclose(f);
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
        std::string lines[2] = {"flat add", "memcpy"};
        for (auto& line : lines) line = format("%-8s%dt", line.c_str(), threads);
        for (const auto& size : sizes) {
            const auto times =
                measure(collector, std::string("yardstick/") + size.first + '/' + std::to_string(threads) + 't',
                        {{"flat-add", [&] { flat.add(size.second, false, threads); }},
                         {"memcpy", [&] { flat.copy(size.second, threads); }}},
                        quick ? 5 : 15, 1e-3);
            for (int i : {0, 1}) lines[i] += format("  %9.0f", double(size.second) / times[std::size_t(i)] / 1e9);
        }
        for (const auto& line : lines) std::printf("%s\n", line.c_str());
    }
}

Options parse(int argc, char** argv)
{
    Options options;
    for (int i = 1; i < argc; ++i) {
        const std::string a = argv[i];
        const auto value = [&](const char* key) { return a.rfind(key, 0) == 0 ? a.c_str() + std::strlen(key) : nullptr; };
        if (a == "--quick") options.quick = true;
        else if (a == "--smoke") options.smoke = true;
        else if (a == "--list") options.list = true;
        else if (const char* filter = value("--filter=")) options.filter = filter;
        else if (const char* level = value("--level=")) options.level = level;
        else if (const char* goals = value("--goals=")) options.goals = goals;
        else if (const char* out = value("--out=")) options.out = out;
        else
            throw std::runtime_error(
                "options: --filter=REGEX --level=best|v3|plain --quick --smoke --list --goals=FILE --out=PREFIX");
    }
    return options;
}

void runAll(const Options& options)
{
    std::vector<Row> rows;
    const std::regex filter(options.filter);
    for (const auto& row : allRows())
        if (std::regex_search(row.name(), filter) && (!options.quick || (row.layout == Layout::packed && row.threads == 1)))
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
    std::string arguments[] = {"bench", "--benchmark_enable_random_interleaving=true"};
    char* argv[] = {arguments[0].data(), arguments[1].data(), nullptr};
    int argc = 2;
    benchmark::Initialize(&argc, argv);
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
    std::fflush(stdout);

    std::vector<Result> results;
    for (const auto& row : rows) {
        const Prepared prepared = row.prepare(countOf(row, false));
        const auto errors = verify(row, prepared);
        results.push_back(measure(collector, flat, row, prepared, options.quick));
        for (std::size_t c = 0; c < errors.size(); ++c)
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
