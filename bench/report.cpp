#include "report.h"

#include <cstdio>
#include <dlfcn.h>
#include <fstream>
#include <map>
#include <set>
#include <sstream>
#include <stdexcept>

namespace bench {

Library::Library()
{
    Dl_info info;
    if (!dladdr(dlsym(RTLD_DEFAULT, "keslGetLibVersion"), &info)) return;
    file = info.dli_fname;
    if (file.find("x86-64-v3/") != file.npos) level = "v3";
    if (file.find("x86-64-v4/") != file.npos) level = "v4";
}

// ---- Goals

Goals::Goals(const std::string& file, const std::string& level)
{
    std::ifstream in(file);
    if (!in) throw std::runtime_error("cannot read the goals: " + file);
    const int column = level == "v4" ? 0 : level == "v3" ? 2 : 4;
    for (std::string text; std::getline(in, text);) {
        if (text.empty() || text[0] == '#') continue;
        std::istringstream words(text);
        std::string family, orders, goal[6];
        words >> family >> orders;
        for (auto& g : goal) words >> g;
        if (!words) throw std::runtime_error(file + ": not a family, orders and six goals: " + text);
        lines.push_back({family, orders, {goal[column], goal[column + 1]}});
    }
}

// "3", "3-6" or "*".
static bool isAmong(int order, const std::string& orders)
{
    const std::size_t dash = orders.find('-');
    if (orders == "*") return true;
    const int first = std::stoi(orders), last = dash == orders.npos ? first : std::stoi(orders.substr(dash + 1));
    return first <= order && order <= last;
}

double Goals::operator()(const Row& row) const
{
    const bool named = row.layout == Layout::packed && row.size == Size::cache;
    for (const auto& line : lines)
        if (line.family == "*" || (named && line.family == row.family && isAmong(row.order, line.orders))) {
            const auto& goal = line.goal[row.type == "64f"];
            return goal == "-" ? NAN : std::stod(goal);
        }
    return NAN;
}

// ---- Operations

Operations::Operations(const std::string& file)
{
    if (file.empty()) return;
    std::ifstream in(file);
    if (!in) throw std::runtime_error("cannot read the operations: " + file);
    for (std::string text; std::getline(in, text);) {
        if (text.empty() || text[0] == '#') continue;
        std::istringstream words(text);
        Line& line = lines.emplace_back();
        words >> line.family >> line.orders;
        for (double& c : line.coefficients) words >> c;
        if (!words) throw std::runtime_error(file + ": not a family, orders and four coefficients: " + text);
    }
}

double Operations::operator()(const Row& row) const
{
    for (const auto& line : lines)
        if (line.family == row.family && isAmong(row.order, line.orders)) {
            double sum = 0;
            for (const double c : line.coefficients) sum = sum * row.order + c;
            return sum;
        }
    return NAN;
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
static void table(const std::vector<Result>& results, Size size, int threads, int width, const char* title, Cell cell)
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

template <class... A> static std::string format(const char* form, A... values)
{
    char text[100];
    std::snprintf(text, sizeof text, form, values...);
    return text;
}

void tables(const std::vector<Result>& results)
{
    const auto ratio = [](const Result& r) {
        const auto goal = std::isnan(r.goal) ? std::string("(-)") : format("(%.2f)", r.goal);
        const auto share = std::isnan(r.share()) ? std::string() : format(" %.2f", r.share());
        return format("%.2f %6s%c", r.ratio(), goal.c_str(), r.missed ? '*' : ' ') + share;
    };
    const bool hasShares =
        std::any_of(results.begin(), results.end(), [](const Result& r) { return !std::isnan(r.share()); });
    table(results, Size::cache, 1, hasShares ? 18 : 13,
          "1,000 objects in cache, one thread: best alternative / library (goal), * under its goal; share of the limit, by "
          "order",
          ratio);
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
          "One call on one object, checks included: ns; times the inlined operation and times a C function, or the best "
          "alternative / library",
          [](const Result& r) {
              if (std::isnan(r.at("function"))) return format("%.1f ns %.2f", r.ns[0], r.ratio());
              return format("%.1f ns x%.1f x%.1f", r.ns[0], r.ns[0] / r.at("inlined"), r.ns[0] / r.at("function"));
          });
    const auto missed = std::count_if(results.begin(), results.end(), [](const Result& r) { return r.missed; });
    std::printf("\n%zu rows, %td under their goal\n", results.size(), missed);
}

static std::FILE* create(const std::string& path)
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
        std::fprintf(f, "\"share\": %s, \"flat_add\": %s, \"one_thread\": %s, \"ns\": {", number(r.share()).c_str(),
                     number(r.flat).c_str(), number(r.single).c_str());
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

} // namespace bench
