#include "accuracy.h"

#include "lapack.h"
#include "problems.h"
#include "suites.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <iostream>
#include <ostream>
#include <thread>

namespace stacks {
namespace {

constexpr int orders[] = {1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15, 16, 20, 24, 32};
int groupOf(int order)
{
    return *std::find_if(std::begin(groups), std::end(groups), [&](int g) { return order <= g; });
}

std::vector<TestMatrix> matricesFor(const Function& f, int rows, int cols, char type, Random& random)
{
    switch (f.data) {
    case Data::symmetric: return symmetricMatrices(rows, type, random);
    case Data::definite:
    case Data::lower: return definiteMatrices(rows, type, random);
    default: break;
    }
    std::vector<TestMatrix> all =
        f.name.starts_with("eig") ? spectralMatrices(rows, type, random) : generalMatrices(rows, cols, type, random);
    if (f.data == Data::regular || f.data == Data::factors)
        std::erase_if(all, [](const TestMatrix& a) { return !a.regular; });
    return all;
}

void fill(Values& v, std::ptrdiff_t k, char type, const auto& element)
{
    withType(type, [&]<class T>(T) {
        for (int i = 0; i < v.rows; ++i)
            for (int j = 0; j < v.cols; ++j) v.at<T>(k, i, j) = T(element(i, j));
    });
}

// One object for each matrix. Functions that want factors get those of LAPACK.
Problem problemOf(const Function& f, char type, const Sizes& sizes, const std::vector<TestMatrix>& matrices, Random& random)
{
    Problem p{&f, type, sizes, std::ptrdiff_t(matrices.size()), {}};
    for (const Operand& o : f.sources) p.sources.push_back(p.blank(o, p.count));
    for (std::ptrdiff_t k = 0; k < p.count; ++k) {
        const TestMatrix& a = matrices[size_t(k)];
        fill(p.sources[0], k, type, a);
        double largest = 0;
        for (double x : a.elements) largest = std::max(largest, std::abs(x));
        const double unit = std::exp2(std::floor(std::log2(std::max(largest, 1e-300))));
        if (f.sources.size() > 1) fill(p.sources.back(), k, type, [&](int, int) { return unit * (2 * random.unit() - 1); });
    }
    if (f.data == Data::factors || f.data == Data::lower) {
        const Function& factor = function(f.data == Data::lower ? "cholesky" : "lu");
        const Outcome factors = lapack({&factor, type, {sizes[0]}, p.count, {p.sources[0]}});
        p.sources[0] = factors.results[0];
        if (f.data == Data::factors) p.sources[1] = factors.results[1];
    }
    return p;
}

std::vector<Sizes> sizesOf(const Function& f, int order, Random& random)
{
    Sizes sizes(f.sizes.size(), order);
    const auto larger = [&] { return std::min<std::ptrdiff_t>(order + 1 + random.below(5), limit); };
    if (f.sizes.back() == "k") sizes.back() = random.between(1, 4);
    std::vector<Sizes> all = {sizes};
    if (f.sizes[0] == "m") {
        all.push_back(sizes), all.back()[0] = larger();
        if (!f.tall) all.push_back(sizes), all.back()[1] = larger();
    }
    return all;
}

void add(Figures& figures, const Level& level, const Problem& p, const std::vector<TestMatrix>& matrices, int group)
{
    const Outcome ours = run(level, p), theirs = lapack(p);
    for (std::ptrdiff_t k = 0; k < p.count; ++k) {
        const TestMatrix& matrix = matrices[size_t(k)];
        const bool exists = !theirs.results.empty(), solved = exists && theirs.info[size_t(k)] == 0;
        if (exists && !solved &&
            (p.function->data == Data::definite || p.function->data == Data::regular || p.function->data == Data::factors))
            continue; // rounding has made it indefinite or singular
        const auto note = [&](const Ratio& r) -> Worst& {
            Worst& worst = figures[r.what][group];
            worst.limit = r.limit;
            return worst;
        };
        if (!ours.fault.empty() || ours.info[size_t(k)] != 0) {
            Worst& worst = note({"fails", INFINITY, 0});
            worst.ours = INFINITY, worst.where = describe(p) + ", " + matrix.name + ours.fault;
            continue;
        }
        for (const Ratio& r : judge(p, ours, k, matrix)) {
            Worst& worst = note(r);
            if (r.value > worst.ours) worst.ours = r.value, worst.where = describe(p) + ", " + matrix.name;
        }
        if (solved)
            for (const Ratio& r : judge(p, theirs, k, matrix)) {
                Worst& worst = note(r);
                worst.lapacks = std::max(worst.lapacks, r.value);
            }
    }
}

} // namespace

void eachTestProblem(const Function& f, char type, const Body& body)
{
    for (int order : orders) {
        Random random(f.name + type, 900 + order);
        for (const Sizes& sizes : sizesOf(f, order, random))
            for (long round = 0; round < cases(1); ++round) {
                const int height = rows(f, sizes, f.sources[0]), width = cols(f, sizes, f.sources[0]);
                const std::vector<TestMatrix> matrices = matricesFor(f, height, width, type, random);
                body(problemOf(f, type, sizes, matrices, random), matrices, groupOf(order));
            }
    }
}

Figures figuresOf(const Level& level, const Function& f, char type)
{
    Figures figures;
    eachTestProblem(f, type, [&](const Problem& p, const std::vector<TestMatrix>& matrices, int group) {
        add(figures, level, p, matrices, group);
    });
    return figures;
}

void testAccuracy(const Level& level, const Function& f)
{
    if (!isJudged(f)) GTEST_SKIP() << "defined to the bit";
    setThreads(1);
    forTypes([&](char type) {
        for (const auto& [what, byOrder] : figuresOf(level, f, type))
            for (const auto& [order, worst] : byOrder)
                EXPECT_TRUE(worst.ours <= worst.limit)
                    << f.name << type << ", " << what << ": " << worst.ours << " where " << worst.limit
                    << " is allowed, LAPACK's is " << worst.lapacks << "; " << worst.where;
    });
}

// Many random symmetric matrices of the orders that the world is full of.
void testRandom(const Level& level, const Function& f)
{
    if (f.name != "eigh") GTEST_SKIP() << "symmetric eigenproblems only";
    setThreads(int(std::thread::hardware_concurrency()));
    constexpr std::ptrdiff_t batch = 20000;
    for (int n : {3, 6}) {
        double worst = 0;
        for (long round = 0; round < cases(5); ++round) { // 100 million of each: KESL_TEST_EFFORT=100000
            Random random("symmetric", int(round) * 10 + n);
            Problem p{&f, 'f', {n}, batch, {}};
            p.sources.push_back(p.blank(f.sources[0], batch));
            for (std::ptrdiff_t k = 0; k < batch; ++k) // of any size, now and then with elements that differ by much
                fill(p.sources[0], k, 'f',
                     [&, size = std::exp2(random.between(-100, 100)), spread = k % 4 ? 0 : 12](int, int) {
                         return size * (2 * random.unit() - 1) * std::exp2(-spread * random.unit());
                     });
            const Outcome o = run(level, p);
            ASSERT_EQ(o.fault, "");
            ASSERT_EQ(o.status, 0) << "failures among symmetric matrices of order " << n << ", round " << round;
            for (std::ptrdiff_t k = 0; k < batch; ++k) {
                const float *a = p.sources[0].object<float>(k), *w = o.results[0].object<float>(k),
                            *v = o.results[1].object<float>(k);
                double residual = 0, departure = 0, norm = 0;
                for (int j = 0; j < n; ++j) {
                    double r = 0, d = 0, s = 0;
                    for (int i = 0; i < n; ++i) {
                        double x = 0, y = 0;
                        for (int l = 0; l < n; ++l) {
                            x += double(v[i * n + l]) * double(w[l]) * double(v[j * n + l]);
                            y += double(v[l * n + i]) * double(v[l * n + j]);
                        }
                        const double element = double(i >= j ? a[i * n + j] : a[j * n + i]);
                        r += std::abs(element - x), d += std::abs(double(i == j) - y), s += std::abs(element);
                    }
                    residual = std::max(residual, r), departure = std::max(departure, d), norm = std::max(norm, s);
                }
                const double unit = n * 0x1p-23, ratio = std::max(residual / (norm * unit), departure / unit);
                worst = std::max(worst, std::isnan(ratio) ? INFINITY : ratio);
            }
        }
        EXPECT_LE(worst, 50) << "order " << n;
        std::printf("order %d: worst ratio %.3g of %td matrices\n", n, worst, batch * cases(5));
    }
    setThreads(1);
}

std::string rounded(double ratio)
{
    char text[20];
    const char* const form = ratio < 0 ? "–" : ratio >= 1000 ? "%.0e" : ratio >= 10 ? "%.0f" : "%.1f";
    std::snprintf(text, sizeof text, form, ratio);
    return text;
}

void printPage(std::ostream& out, const Level& level)
{
    for (char type : {'f', 'd'}) {
        out << "\n## " << (type == 'f' ? "32f" : "64f")
            << "\n\n| function | ratio | limit | orders 1–4 | 5–8 | 9–16 | 20–32 |\n|---|---|--:|--:|--:|--:|--:|\n";
        for (const Function& f : functions()) {
            if (!isJudged(f)) continue;
            std::cerr << f.name << type << '\n';
            for (const auto& [what, byOrder] : figuresOf(level, f, type)) {
                const Worst& first = byOrder.begin()->second;
                const auto isKept = [](const auto& entry) { return entry.second.limit == 0 && entry.second.ours == 0; };
                if (std::all_of(byOrder.begin(), byOrder.end(), isKept)) continue; // a promise without a measure
                out << "| `" << f.name << "` | " << what << " | " << first.limit << " |";
                for (int group : groups) {
                    const auto found = byOrder.find(group);
                    out << ' '
                        << (found == byOrder.end() ? "–"
                                                   : rounded(found->second.ours) + " / " + rounded(found->second.lapacks))
                        << " |";
                }
                out << '\n';
            }
        }
    }
}

} // namespace stacks
