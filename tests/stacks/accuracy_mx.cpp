// The ratios of keslmx on the same matrices. Its results are fixed, and so are these figures: nothing is asserted.
#include "accuracy.h"
#include "keslmx.h"
#include "lapack.h"
#include "mx.h"

#include <algorithm>
#include <cmath>
#include <iostream>

namespace stacks {
namespace {

// What is left of one measure. Matrices whose norm is near under- or overflow are apart.
struct Measure {
    double limit = 0, furthest = 0; // above the limit
    std::map<int, Worst> within;    // the limit, by the largest order of a group
    long above = 0, judged = 0, extremeAbove = 0, extremeJudged = 0;
};
struct MxFigures {
    std::map<std::string, Measure> measures;
    std::map<int, long> calls; // by the largest order of a group
    std::map<std::string, std::map<int, long>> statuses;
};

const char* nameOf(int status)
{
    switch (status) {
    case keslStatusSingular: return "Singular";
    case keslStatusNoConvergence: return "NoConvergence";
    case keslStatusNotPositiveDefinite: return "NotPositiveDefinite";
    case keslStatusDivideByZero: return "DivideByZero";
    case keslStatusFailed: return "Failed";
    default: return "another";
    }
}

void note(Measure& measure, const Ratio& r, bool extreme, int group)
{
    const bool above = r.value > r.limit;
    measure.limit = r.limit;
    ++(extreme ? measure.extremeJudged : measure.judged);
    if (above) ++(extreme ? measure.extremeAbove : measure.above);
    if (extreme) return;
    if (above) measure.furthest = std::max(measure.furthest, r.value);
    else measure.within[group].ours = std::max(measure.within[group].ours, r.value);
}

void add(MxFigures& all, const Problem& p, const std::vector<TestMatrix>& matrices, int group, bool isScaled)
{
    const Outcome theirs = lapack(p);
    for (Shape shape : {Shape::single, Shape::array, Shape::oneForAll}) {
        const Outcome ours = mx(p, shape);
        if (ours.results.empty()) continue;
        for (std::ptrdiff_t k = 0; k < p.count; ++k) {
            const TestMatrix& matrix = matrices[size_t(k)];
            const bool extreme = !isScaled && (matrix.name == "small" || matrix.name == "large");
            ++all.calls[group];
            if (const int status = ours.info[size_t(k)]; status != keslStatusOk) {
                ++all.statuses[nameOf(status)][group];
                continue;
            }
            for (const Ratio& r : judge(p, ours, k, matrix))
                if (r.what != "largest component real")
                    note(all.measures[r.what], r, extreme, group); // it is up to rounding
            if (theirs.info[size_t(k)] != 0 || extreme) continue;
            for (const Ratio& r : judge(p, theirs, k, matrix)) {
                double& worst = all.measures[r.what].within[group].lapacks;
                worst = std::max(worst, r.value);
            }
        }
    }
}

// As the header wants them: greatest elements near 2^28 or 2^56.
Problem scaled(Problem p)
{
    withType(p.type, [&]<class T>(T) {
        for (std::ptrdiff_t k = 0; k < p.count; ++k) {
            T* const a = p.sources[0].object<T>(k);
            int exponent = 0;
            T largest = 0;
            for (std::ptrdiff_t i = 0; i < p.sources[0].elements(); ++i) largest = std::max(largest, std::abs(a[i]));
            std::frexp(largest, &exponent);
            for (std::ptrdiff_t i = 0; i < p.sources[0].elements(); ++i)
                a[i] = std::ldexp(a[i], (sizeof(T) == 4 ? 28 : 56) - exponent);
        }
    });
    return p;
}

struct Row {
    std::string name;
    MxFigures figures;
};
std::vector<Row> rowsOf(char type)
{
    std::vector<Row> list;
    for (const Function& f : functions()) {
        if (nameInMx(f).empty()) continue;
        std::cerr << nameInMx(f) << type << '\n';
        for (const bool scales : {false, true}) {
            if (scales && f.data != Data::symmetric) continue;
            Row& row = list.emplace_back(Row{'`' + nameInMx(f) + '`' + (scales ? ", scaled" : ""), {}});
            eachTestProblem(f, type, [&](const Problem& p, const std::vector<TestMatrix>& matrices, int group) {
                if (p.sources[0].rows >= p.sources[0].cols)
                    add(row.figures, scales ? scaled(p) : p, matrices, group, scales);
            });
        }
    }
    return list;
}

void printRatios(std::ostream& out, const std::vector<Row>& list)
{
    out << "| function | ratio | limit | orders 1–4 | 5–8 | 9–16 | 20–32 | above the limit | near under- and overflow |\n"
           "|---|---|--:|--:|--:|--:|--:|--:|--:|\n";
    const auto share = [](long part, long whole) {
        return part == 0 ? whole == 0 ? std::string("–") : "0" : std::to_string(part) + " of " + std::to_string(whole);
    };
    for (const auto& [name, figures] : list)
        for (const auto& [what, m] : figures.measures) {
            if (m.limit == 0 && m.above + m.extremeAbove == 0) continue; // a promise without a measure, and it is kept
            out << "| " << name << " | " << what << " | ";
            if (m.limit > 0) out << m.limit;
            for (int group : groups) {
                const auto found = m.within.find(group);
                const bool shown = m.limit > 0 && found != m.within.end();
                out << " | " << (shown ? rounded(found->second.ours) + " / " + rounded(found->second.lapacks) : "");
            }
            const bool measured = m.above > 0 && std::isfinite(m.furthest);
            out << " | " << share(m.above, m.judged) << (measured ? ", to " + rounded(m.furthest) : "") << " | "
                << share(m.extremeAbove, m.extremeJudged) << " |\n";
        }
}

void printStatuses(std::ostream& out, const std::vector<Row>& list)
{
    out << "| function | status | orders 1–4 | 5–8 | 9–16 | 20–32 |\n|---|---|--:|--:|--:|--:|\n";
    for (const auto& [name, figures] : list)
        for (const auto& [status, byOrder] : figures.statuses) {
            out << "| " << name << " | " << status;
            for (int group : groups)
                out << " | " << (byOrder.contains(group) ? byOrder.at(group) : 0) << " of " << figures.calls.at(group);
            out << " |\n";
        }
}

} // namespace

void printMx(std::ostream& out)
{
    for (char type : {'f', 'd'}) {
        const std::vector<Row> list = rowsOf(type);
        out << "\n## " << (type == 'f' ? "32f" : "64f") << "\n\n";
        printRatios(out, list);
        out << '\n';
        printStatuses(out, list);
    }
}

} // namespace stacks
