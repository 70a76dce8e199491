#include "matrices.h"

#include <algorithm>
#include <cmath>
#include <functional>
#include <lapacke.h>
#include <stdexcept>

// LAPACK's generator of matrices with given eigenvalues; it has no C interface.
extern "C" void dlatme_(const int* n, const char* dist, int* seed, double* d, const int* mode, const double* cond,
                        const double* dmax, const char* ei, const char* rsign, const char* upper, const char* sim,
                        double* ds, const int* modes, const double* conds, const int* kl, const int* ku, const double* anorm,
                        double* a, const int* lda, double* work, int* info, size_t, size_t, size_t, size_t, size_t, size_t);

namespace stacks {
namespace {

struct Seed {
    int four[4];
    explicit Seed(Random& random)
    {
        for (int& s : four) s = random.below(4096);
        four[3] |= 1;
    }
};

// How the given values lie in [1/condition, 1]: one large, one small, geometric, arithmetic, random logarithms, random.
constexpr int modes[] = {1, 2, 3, 4, 5, 6, -1, -2, -3, -4, -5};

std::vector<double> latms(int m, int n, char symmetry, int mode, double condition, double norm, Random& random)
{
    Seed seed(random);
    std::vector<double> a(size_t(m * n)), d(size_t(std::min(m, n)));
    if (LAPACKE_dlatms(LAPACK_ROW_MAJOR, m, n, 'S', seed.four, symmetry, d.data(), mode, condition, 1, m - 1, n - 1, 'N',
                       a.data(), n) != 0)
        throw std::runtime_error("dlatms");
    for (double& x : a) x *= norm;
    return a;
}

std::vector<double> latme(int n, int mode, double condition, double conditionOfVectors, int mode2, Random& random)
{
    Seed seed(random);
    std::vector<double> a(size_t(n * n), 0), d(size_t(n), 0), ds(size_t(n), 0), work(size_t(3 * n), 0);
    const double one = 1;
    const int band = std::max(n - 1, 1);
    const char signs = std::abs(mode) == 6 ? 'F' : 'T';
    int info;
    dlatme_(&n, "S", seed.four, d.data(), &mode, &condition, &one, " ", &signs, "T", "T", ds.data(), &mode2,
            &conditionOfVectors, &band, &band, &one, a.data(), &n, work.data(), &info, 1, 1, 1, 1, 1, 1);
    if (info != 0) throw std::runtime_error("dlatme");
    return a;
}

using Element = std::function<double(int, int)>;
TestMatrix fromElements(const char* name, int m, int n, const Element& element, bool regular)
{
    TestMatrix a{name, m, n, {}};
    a.regular = regular;
    for (int i = 0; i < m; ++i)
        for (int j = 0; j < n; ++j) a.elements.push_back(element(i, j));
    return a;
}

std::vector<TestMatrix> bySpectrum(int m, int n, char symmetry, char type, Random& random)
{
    const Precision p = precisionOf(type);
    std::vector<TestMatrix> list;
    for (double condition : {2.0, std::sqrt(p.badly()), p.badly()})
        for (int mode : modes)
            list.push_back(
                {"mode " + std::to_string(mode), m, n, latms(m, n, symmetry, mode, condition, 1, random), condition == 2});
    for (double norm : {p.small, p.large})
        for (int mode : {3, 4})
            list.push_back({norm < 1 ? "small" : "large", m, n, latms(m, n, symmetry, mode, 2, norm, random), true});
    return list;
}

// The usual special cases, symmetric if so wanted.
void addSpecial(std::vector<TestMatrix>& list, int m, int n, bool symmetric, Random& random)
{
    const auto add = [&](const char* name, const Element& element, bool regular = false) {
        list.push_back(fromElements(name, m, n, element, regular));
    };
    const std::vector<double> noise = [&] {
        std::vector<double> x(size_t(m * n));
        for (double& v : x) v = 2 * random.unit() - 1;
        return x;
    }();
    add("zero", [](int, int) { return 0.0; });
    add(
        "identity", [](int i, int j) { return double(i == j); }, true);
    add("all ones", [](int, int) { return 1.0; });
    add(
        "graded downwards", [](int i, int j) { return i == j ? std::exp2(-2.0 * i) : std::exp2(-2.0 * std::max(i, j)) / 8; },
        true);
    add(
        "graded upwards",
        [&](int i, int j) { return i == j ? std::exp2(2.0 * i - n) : std::exp2(2.0 * std::min(i, j) - n) / 8; }, true);
    add("one element", [](int i, int j) { return double(i + j == 1); });
    add(
        "second difference", [](int i, int j) { return i == j                 ? 2.0
                                                       : std::abs(i - j) == 1 ? -1.0
                                                                              : 0.0; }, true);
    add("integers", [&](int i, int j) { return double((symmetric ? i + j : 3 * i + j) % 5 - 2); });
    if (symmetric) {
        add("Wilkinson", [&](int i, int j) { return i == j ? std::abs(i - (n - 1) / 2.0) : double(std::abs(i - j) == 1); });
        add(
            "anti-diagonal", [&](int i, int j) { return double(i + j == n - 1); }, true);
        return;
    }
    add("random", [&](int i, int j) { return noise[size_t(i * n + j)]; });
    add("zero column", [&](int i, int j) { return j == n / 2 ? 0 : noise[size_t(i * n + j)]; });
    add("equal columns", [&](int i, int j) { return noise[size_t(i * n + std::max(j - 1, 0))]; });
    add("upper triangle", [&](int i, int j) { return i > j ? 0 : noise[size_t(i * n + j)]; });
    add(
        "Kahan", [](int i, int j) { return i > j ? 0 : std::pow(0.8, i) * (i == j ? 1 : -0.6); }, true);
}

} // namespace

Precision precisionOf(char type)
{
    return type == 'f' ? Precision{0x1p-24, 0x1p-104, 0x1p104} : Precision{0x1p-53, 0x1p-971, 0x1p971};
}

std::vector<TestMatrix> generalMatrices(int m, int n, char type, Random& random)
{
    std::vector<TestMatrix> list = bySpectrum(m, n, 'N', type, random);
    addSpecial(list, m, n, false, random);
    if (m >= n)
        for (int round = 0; round < 4; ++round) {
            TestMatrix a{"scaled columns", m, n, latms(m, n, 'N', 3, 2, 1, random)};
            a.scaledColumns = true;
            for (int j = 0; j < n; ++j) {
                const int most = type == 'f' ? 20 : 4; // the reference has no more than eleven bits to spare for doubles
                const double factor = std::exp2(random.between(-most, most));
                for (int i = 0; i < m; ++i) a.elements[size_t(i * n + j)] *= factor;
            }
            list.push_back(a);
        }
    if (m == n && n >= 2 && n <= 4) // where sums of products lose digits, and elimination takes over, object by object
        for (int round = 0; round < 60; ++round) {
            std::vector<double> a = latms(n, n, 'N', 1, std::exp2(1 + round % 20 / 2.0), 1, random);
            for (int i = 0; i < n && round >= 20; ++i) {
                const double factor = std::exp2(random.between(-10, 0));
                for (int j = 0; j < n; ++j) a[size_t(round < 40 ? i * n + j : j * n + i)] *= factor;
            }
            list.push_back({"near rank one", n, n, a});
        }
    return list;
}

std::vector<TestMatrix> symmetricMatrices(int n, char type, Random& random)
{
    std::vector<TestMatrix> list = bySpectrum(n, n, 'S', type, random);
    addSpecial(list, n, n, true, random);
    for (double width : {1.0, 3.0}) { // blocks by far smaller than the rest, bands
        Seed seed(random);
        const int band = std::min(n - 1, int(width));
        std::vector<double> a(size_t(n * n), 0), d(size_t(n), 0);
        if (LAPACKE_dlatms(LAPACK_ROW_MAJOR, n, n, 'S', seed.four, 'S', d.data(), 4, 100, 1, band, band, 'N', a.data(), n) !=
            0)
            throw std::runtime_error("dlatms");
        list.push_back({"band", n, n, a});
    }
    return list;
}

std::vector<TestMatrix> definiteMatrices(int n, char type, Random& random) { return bySpectrum(n, n, 'P', type, random); }

std::vector<TestMatrix> spectralMatrices(int n, char type, Random& random)
{
    const Precision p = precisionOf(type);
    std::vector<TestMatrix> list;
    for (double vectors : {1.0, 1 / std::sqrt(p.eps), 0.1 / p.eps})
        for (double condition : {2.0, std::sqrt(p.badly()), p.badly()})
            for (int mode : {1, 3, 4, 5, -5, 6, -3})
                list.push_back(
                    {"eigenvalues, mode " + std::to_string(mode), n, n, latme(n, mode, condition, vectors, 4, random)});
    for (double norm : {p.small, p.large}) {
        list.push_back({norm < 1 ? "small" : "large", n, n, latme(n, 4, 2, 1, 4, random)});
        for (double& x : list.back().elements) x *= norm;
    }
    addSpecial(list, n, n, false, random);
    for (double corner : {0.0, 1.0}) // defective, and a cycle, of which plain shifts make nothing
        list.push_back(fromElements(
            corner == 0 ? "Jordan block" : "cycle", n, n,
            [&](int i, int j) { return double(j == i + 1) + corner * double(i == n - 1 && j == 0); }, corner != 0));
    list.push_back(fromElements(
        "rotation", n, n, [](int i, int j) { return i / 2 != j / 2 ? 0.0
                                                    : i == j       ? 0.6
                                                    : i < j        ? 0.8
                                                                   : -0.8; }, true));
    list.push_back(fromElements(
        "Frank", n, n, [&](int i, int j) { return j < i - 1 ? 0.0 : double(n - std::max(i, j)); }, true));
    for (int most : {8, type == 'f' ? 28 : 200})
        for (bool graded : {false, true}) {
            std::vector<int> d(size_t(n), 0);
            for (int i = 0; i < n; ++i) d[size_t(i)] = graded ? most - 2 * most * i / n : random.between(-most, most);
            std::vector<double> b = latme(n, 4, 2, 1, 4, random);
            for (int i = 0; i < n; ++i)
                for (int j = 0; j < n; ++j) b[size_t(i * n + j)] *= std::exp2(d[size_t(i)] - d[size_t(j)]);
            list.push_back({"badly balanced", n, n, b});
            list.back().units = d;
        }
    return list;
}

} // namespace stacks
