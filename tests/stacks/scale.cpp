// The first source times 2^k gives the results times a power of two, to the bit.
#include "suites.h"

#include <cmath>
#include <limits>

namespace stacks {
namespace {

int powerOf(Degree degree, int k, int order, bool upper)
{
    switch (degree) {
    case Degree::zero: return 0;
    case Degree::one: return k;
    case Degree::inverse: return -k;
    case Degree::inverseSquare: return -2 * k;
    case Degree::root: return k / 2;
    case Degree::order: return order * k;
    case Degree::upper: return upper ? k : 0;
    }
    return 0;
}

template <class T> void multiply(Values& v, int order, const auto& power)
{
    (void)order;
    for (std::ptrdiff_t k = 0; k < v.count && !v.integers; ++k)
        for (int i = 0; i < v.rows; ++i)
            for (int j = 0; j < v.cols; ++j) v.at<T>(k, i, j) = std::ldexp(v.at<T>(k, i, j), power(i <= j));
}

// A permutation of powers of two, from the smallest number to the largest, and its determinant, which is a number, too; or one that
// has an inverse. Within a matrix they span three quarters of all exponents: next to elements near overflow, which are scaled
// down, the smallest subnormal ones vanish.
template <class T> T makePermutation(Values& a, std::ptrdiff_t k, bool hasInverse, Random& random)
{
    using Limits = std::numeric_limits<T>;
    constexpr int least = Limits::min_exponent - Limits::digits, most = Limits::max_exponent - 1;
    const std::vector<int> column = random.permutation(a.rows);
    std::vector<int> exponents(size_t(a.rows), 0);
    int sum = 0;
    do {
        const int first = random.between(hasInverse ? -most : least, most);
        const int last = random.between(first, std::min(most, first + 3 * (most - least) / 4));
        sum = 0;
        for (int& e : exponents) sum += e = random.between(first, last);
    } while (!hasInverse && (sum < least || sum > most));
    bool isOdd = false;
    for (int i = 0; i < a.rows; ++i)
        for (int j = 0; j < a.rows; ++j) {
            const int at = column[size_t(i)];
            isOdd ^= j < i && column[size_t(j)] > at;
            a.at<T>(k, i, j) = j == at ? std::ldexp(T(1), exponents[size_t(i)]) : 0;
        }
    return std::ldexp(T(isOdd ? -1 : 1), sum);
}

// Where the result is a power of two, or five, and can be said: exact, from the smallest number to the largest.
template <class T> void testEnds(const Level& level, const Function& f, char type)
{
    constexpr std::ptrdiff_t count = 37;
    using Limits = std::numeric_limits<T>;
    for (const Sizes& sizes : shapes(f)) {
        if (f.name == "norm" && sizes[0] < 2) continue;
        Random random(f.name + type, 600 + int(sizes[0]));
        Problem p{&f, type, sizes, count, {}};
        p.sources.push_back(p.blank(f.sources[0], count));
        Values &a = p.sources[0], expected = p.blank(f.destinations[0], count);
        for (std::ptrdiff_t k = 0; k < count; ++k) {
            if (f.name == "norm") { // 3 and 4
                const T unit =
                    std::ldexp(T(1), random.between(Limits::min_exponent - Limits::digits, Limits::max_exponent - 4));
                const int i = random.between(1, a.rows - 1);
                a.at<T>(k, i, 0) = 3 * unit, a.at<T>(k, random.below(i), 0) = -4 * unit, expected.at<T>(k, 0, 0) = 5 * unit;
            } else {
                const T det = makePermutation<T>(a, k, f.name == "inv", random);
                if (f.name == "det") expected.at<T>(k, 0, 0) = det;
                for (int i = 0; i < a.rows && f.name == "inv"; ++i)
                    for (int j = 0; j < a.cols; ++j)
                        expected.at<T>(k, j, i) = a.at<T>(k, i, j) == 0 ? 0 : 1 / a.at<T>(k, i, j);
            }
        }
        const Outcome o = run(level, p);
        ASSERT_EQ(o.status, 0) << describe(p);
        for (std::ptrdiff_t k = 0; k < count; ++k)
            for (int i = 0; i < expected.rows; ++i)
                for (int j = 0; j < expected.cols; ++j)
                    ASSERT_EQ(o.results[0].at<T>(k, i, j), expected.at<T>(k, i, j))
                        << describe(p) << ", object " << k << ", element " << i << ", " << j;
    }
}

// make(source, results, k, random) sets object k of the source and what is exactly to come of it, without any failure.
template <class T> void testExact(const Level& level, const Function& f, char type, int seed, auto make)
{
    constexpr std::ptrdiff_t count = 37;
    for (const Sizes& sizes : shapes(f)) {
        Random random(f.name + type, seed + int(sizes[0]));
        Problem p{&f, type, sizes, count, {}};
        p.sources.push_back(p.blank(f.sources[0], count));
        Outcome expected;
        expected.info.assign(count, 0);
        for (const Operand& destination : f.destinations) expected.results.push_back(p.blank(destination, count));
        for (std::ptrdiff_t k = 0; k < count; ++k) make(p.sources[0], expected.results, k, random);
        ASSERT_EQ(difference(expected, run(level, p)), "") << describe(p) << ", exact";
    }
}
// Element (i, j) of the product of a lower and an upper triangle: l(i, m) and u(m, j).
template <class T> T productOfTriangles(int i, int j, auto l, auto u)
{
    T x = 0;
    for (int m = 0; m <= std::min(i, j); ++m) x += l(i, m) * u(m, j);
    return x;
}

// Factors of few digits, whose pivots are powers of two: their product, and what leads back, is exact down to the smallest numbers.
template <class T> void testRoots(const Level& level, const Function& cholesky, char type)
{
    using Limits = std::numeric_limits<T>;
    testExact<T>(level, cholesky, type, 800, [](Values& a, std::vector<Values>& results, std::ptrdiff_t k, Random& random) {
        const int n = a.rows,
                  power = random.between((Limits::min_exponent - Limits::digits) / 2, Limits::max_exponent / 2 - 8);
        const auto l = [&](int i, int j) -> T& { return results[0].at<T>(k, i, j); };
        for (int i = 0; i < n; ++i)
            for (int j = 0; j <= i; ++j) l(i, j) = T(i == j ? 1 << random.below(3) : random.between(-3, 3));
        for (int i = 0; i < n; ++i)
            for (int j = 0; j <= i; ++j)
                a.at<T>(k, i, j) =
                    std::ldexp(productOfTriangles<T>(i, j, l, [&](int m, int c) { return l(c, m); }), 2 * power);
        for (int i = 0; i < n; ++i)
            for (int j = 0; j <= i; ++j) l(i, j) = std::ldexp(l(i, j), power);
    });
}

// Columns times powers of two, down to where a pivot's reciprocal overflows: u's columns times the same, and nothing else changes.
// The factors have so few digits that their product is exact: halves of integers, times the power of each column.
template <class T> void testColumns(const Level& level, const Function& lu, char type)
{
    using Limits = std::numeric_limits<T>;
    testExact<T>(level, lu, type, 700, [](Values& a, std::vector<Values>& results, std::ptrdiff_t k, Random& random) {
        const int n = a.rows;
        std::vector<int> power(size_t(n), 0);
        for (int& e : power) e = random.between(0, 1) ? 0 : random.between(Limits::min_exponent - Limits::digits + 1, 0);
        const auto factor = [&](int i, int j) -> T& { return results[0].at<T>(k, i, j); };
        for (int i = 0; i < n; ++i)
            for (int j = 0; j < n; ++j) factor(i, j) = j < i ? T(random.between(-1, 1)) / 2 : T(random.between(1, 7));
        const auto l = [&](int i, int j) { return i == j ? T(1) : factor(i, j); };
        for (int i = 0; i < n; ++i)
            for (int j = 0; j < n; ++j)
                a.at<T>(k, i, j) = std::ldexp(productOfTriangles<T>(i, j, l, factor), power[size_t(j)]);
        for (int i = n - 1; i >= 0; --i) {
            const int q = random.between(i, n - 1);
            results[1].at<int>(k, i, 0) = q + 1;
            for (int j = 0; j < n; ++j) std::swap(a.at<T>(k, i, j), a.at<T>(k, q, j));
            for (int j = i; j < n; ++j) factor(i, j) = std::ldexp(factor(i, j), power[size_t(j)]);
        }
    });
}

} // namespace

void testScale(const Level& level, const Function& f)
{
    setThreads(1);
    if (f.name == "norm" || f.name == "det" || f.name == "inv")
        testEnds<float>(level, f, 'f'), testEnds<double>(level, f, 'd');
    if (f.name == "cholesky") testRoots<float>(level, f, 'f'), testRoots<double>(level, f, 'd');
    if (f.name == "lu") testColumns<float>(level, f, 'f'), testColumns<double>(level, f, 'd');
    int number = 0;
    for (const Sizes& sizes : shapes(f))
        forTypes([&](char type) {
            Random random(f.name + type, 500 + number++);
            const Problem p = makeProblem(f, type, sizes, 5, random);
            const Outcome expected = run(level, p);
            ASSERT_EQ(expected.fault, "") << describe(p);
            const int order = sizes.empty() ? 3 : int(sizes[0]);
            const bool root = f.degrees[0] == Degree::root;
            int most = f.degrees[0] == Degree::inverseSquare && type == 'f' ? 50 : 100;
            if (f.degrees[0] == Degree::order) most = std::min(100, (type == 'f' ? 100 : 900) / order);
            for (int k = -most; k <= most; k += root ? 2 : 1) {
                if (k % 7 != 0 && order > 12 && std::abs(k) < most - 4) continue; // some of them for large orders
                Problem scaled = p;
                Outcome wanted = expected;
                withType(type, [&]<class T>(T) {
                    multiply<T>(scaled.sources[0], order, [&](bool upper) {
                        return powerOf(f.data == Data::factors ? Degree::upper : Degree::one, k, order, upper);
                    });
                    for (size_t d = 0; d < wanted.results.size(); ++d)
                        multiply<T>(wanted.results[d], order,
                                    [&](bool upper) { return powerOf(f.degrees[d], k, order, upper); });
                });
                ASSERT_EQ(difference(wanted, run(level, scaled)), "") << describe(p) << ", times 2^" << k;
            }
        });
}

} // namespace stacks
