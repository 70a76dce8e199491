// General eigenproblems at the values where something turns. The library works on the transpose H of its input, so the
// right vectors y satisfy H y = lambda y, the left ones y' H = lambda y'.
#include "../packed.h"
#include "../special.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace {
template <class T> constexpr T eps = std::numeric_limits<T>::epsilon();
template <class T> constexpr T safeMin = std::numeric_limits<T>::min() * 2;
template <class T> using List = std::vector<T>;

Dims order(int n)
{
    Dims d;
    d['n'] = n;
    return d;
}

template <class T> struct General {
    int status;
    List<T> re, im, right, left; // vectors by rows, empty without
};
template <class T> struct Caller {
    const Level& level;
    Form form;
    Packed<T> solve(const char* operation, int n, const List<T>& a, int count) const
    {
        return callPacked<T>(level, form.name<T>(operation), order(n), {a}, count, form.gap());
    }
    General<T> values(int n, const List<T>& a, int count = 1) const
    {
        const auto r = solve("EigenValues", n, a, count);
        return {r.status, r.results[0], r.results[1], {}, {}};
    }
    General<T> both(int n, const List<T>& a, int count = 1) const
    {
        const auto r = solve("EigenValuesVectors", n, a, count);
        return {r.status, r.results[2], r.results[3], r.results[0], r.results[1]};
    }
    General<T> right(int n, const List<T>& a, int count = 1) const
    {
        const auto r = solve("EigenValuesVectorsRight", n, a, count);
        return {r.status, r.results[1], r.results[2], r.results[0], {}};
    }
    General<T> left(int n, const List<T>& a, int count = 1) const
    {
        const auto r = solve("EigenValuesVectorsLeft", n, a, count);
        return {r.status, r.results[1], r.results[2], {}, r.results[0]};
    }
    std::vector<General<T>> all(int n, const List<T>& a, int count = 1) const
    {
        return {values(n, a, count), both(n, a, count), right(n, a, count), left(n, a, count)};
    }
};

template <class T> List<T> diagonal(const List<T>& d)
{
    const size_t n = d.size();
    List<T> a(n * n);
    for (size_t i = 0; i < n; ++i) a[i * n + i] = d[i];
    return a;
}

// A test of every member, by a generic function that takes a Caller.
auto everywhere(auto body)
{
    return [body](const Level& level) {
        for (const Form& form : squareForms) {
            SCOPED_TRACE(form.shape + " " + form.layout);
            body(Caller<float>{level, form});
            body(Caller<double>{level, form});
        }
    };
}

template <class T> void near(const List<T>& got, const List<double>& expected, double bound = 4 * eps<T>)
{
    ASSERT_EQ(got.size(), expected.size());
    for (size_t i = 0; i < got.size(); ++i) EXPECT_NEAR(double(got[i]), expected[i], bound) << i;
}

// Of one set of vectors, which the function under test may not have.
template <class T> void expectVectors(const List<T>& got, const List<T>& expected)
{
    if (!got.empty()) { EXPECT_EQ(got, expected); }
}
template <class T> void nearVectors(const List<T>& got, const List<double>& expected)
{
    if (!got.empty()) near(got, expected);
}

const auto sizesBody = [](const Level& level) {
    struct Row {
        const char* function;
        int order, bytes;
    };
    const Row rows[] = {{"keslEigenValuesGetBufSize_32f", 3, 96},         {"keslEigenValuesGetBufSize_64f", 3, 192},
                        {"keslEigenValuesGetBufSize_32f", 1, 24},         {"keslEigenValuesGetBufSize_64f", 6, 528},
                        {"keslEigenValuesVectorsGetBufSize_32f", 3, 168}, {"keslEigenValuesVectorsGetBufSize_64f", 3, 336},
                        {"keslEigenValuesVectorsGetBufSize_32f", 1, 32},  {"keslEigenValuesVectorsGetBufSize_64f", 6, 1104}};
    for (const Row& row : rows) {
        int bytes = -1;
        std::vector<Value> values(2);
        const auto status = [&](int n, int* p) {
            values[0].p = nullptr, values[0].i = n, values[1].p = p;
            return call(functions().at(row.function), find(level, row.function), values);
        };
        EXPECT_EQ(status(row.order, &bytes), Ok);
        EXPECT_EQ(bytes, row.bytes) << row.function;
        EXPECT_EQ(status(0, &bytes), BadSize);
        EXPECT_EQ(status(-1, &bytes), BadSize);
        EXPECT_EQ(bytes, row.bytes);
        EXPECT_EQ(status(3, nullptr), NullPointer);
        EXPECT_EQ(status(0, nullptr), NullPointer);
    }
};
const Special sizes("EigenGeneral", "buffer sizes", sizesBody);

// The reported size is not exceeded, and values alone leave its last 3 n elements.
const auto bufferBody = []<class T>(const Caller<T>& c) {
    for (int n = 1; n <= 9; ++n) {
        List<T> a(size_t(n * n));
        for (int i = 0; i < n * n; ++i) a[size_t(i)] = T((i * 7 + n) % 11 - 5);
        const List<T> scratch = c.solve("EigenValues", n, a, 1).scratch;
        for (size_t i = size_t(n * n + 2 * n); i < scratch.size(); ++i) EXPECT_EQ(scratch[i], T(mark));
    }
};
const Special buffer("EigenGeneral", "buffer", everywhere(bufferBody));

const auto order1Body = []<class T>(const Caller<T>& c) {
    for (T x : {T(0), T(-5), T(1e-30), T(INFINITY)})
        for (const General<T>& g : c.all(1, {x})) {
            EXPECT_EQ(g.status, Ok);
            EXPECT_EQ(g.re, List<T>{x});
            EXPECT_EQ(g.im, List<T>{0});
            EXPECT_FALSE(std::signbit(g.im[0]));
            expectVectors<T>(g.right, List<T>{1});
            expectVectors<T>(g.left, List<T>{1});
        }
};
const Special order1("EigenGeneral", "order 1", everywhere(order1Body));

struct Row2 {
    List<double> a, re, im, right, left;
};
const auto order2Body = []<class T>(const Caller<T>& c) {
    const double h = std::sqrt(0.5), t = 1 / std::sqrt(26.0), q = std::sqrt(0.2);
    const Row2 rows[] = {
        {{0, -1, 1, 0}, {0, 0}, {1, -1}, {h, 0, 0, h}, {h, 0, 0, -h}}, // a quarter turn
        {{1, 0, 5, 2}, {1, 2}, {0, 0}, {1, 5 * t, 0, t}, {t, 0, -5 * t, 1}},
        {{1, 5, 0, 2}, {2, 1}, {0, 0}, {0, -t, 1, 5 * t}, {5 * t, -1, t, 0}}, // exchanged
        {{3, 0, 0, -4}, {3, -4}, {0, 0}, {1, 0, 0, 1}, {1, 0, 0, 1}},
        {{0, 0, 0, 0}, {0, 0}, {0, 0}, {1, 0, 0, 1}, {1, 0, 0, 1}},
        {{0, 4, -1, 0}, {0, 0}, {2, -2}, {0, q, 2 * q, 0}, {2 * q, 0, 0, q}}, // the greatest element is real
        {{0, -4, 1, 0}, {0, 0}, {2, -2}, {0, -q, 2 * q, 0}, {2 * q, 0, 0, -q}},
    };
    for (const Row2& row : rows) {
        const List<T> a(row.a.begin(), row.a.end());
        SCOPED_TRACE(testing::PrintToString(row.a));
        for (const General<T>& g : c.all(2, a)) {
            EXPECT_EQ(g.status, Ok);
            near(g.re, row.re), near(g.im, row.im);
            nearVectors(g.right, row.right);
            nearVectors(g.left, row.left);
        }
    }
    // Equal diagonal elements always give a pair, also where the product of the others is positive. Such a block keeps
    // the rotation of the one before it; there was none, so that vectors vanish and cannot be normalised.
    for (const General<T>& g : c.all(2, {1, 2, 3, 1})) {
        EXPECT_EQ(g.status, Ok);
        near(g.re, {1, 1}), near(g.im, {std::sqrt(6.0), -std::sqrt(6.0)});
        for (const List<T>& vectors : {g.right, g.left})
            for (T x : vectors) EXPECT_TRUE(std::isnan(x));
    }
    // Real values of a matrix whose diagonal differs.
    for (const General<T>& g : c.all(2, {4, 1, 2, 3})) near(g.re, {5, 2}, 8 * eps<T>), near(g.im, {0, 0}, 0);
    for (int place = 0; place < 4; ++place) { // NaN needs no sweep at this order
        List<T> a = {1, 2, 3, 4};
        a[size_t(place)] = T(NAN);
        for (const General<T>& g : c.all(2, a)) {
            EXPECT_EQ(g.status, Ok);
            EXPECT_TRUE(std::isnan(g.re[0]) || std::isnan(g.re[1]));
        }
    }
};
const Special order2("EigenGeneral", "order 2", everywhere(order2Body));

// Values alone: a coupling of epsilon or less is none, whatever stands beside it. With vectors its neighbours count.
const auto deflationBody = []<class T>(const Caller<T>& c) {
    for (T x : {sizeof(T) == 4 ? T(0x1p-24) : T(0x1p-52), T(0x1p-80)}) { // whose roots are exact
        const List<T> a = {0, x, -x, 0};
        EXPECT_EQ(c.values(2, a).im, (List<T>{0, 0}));
        EXPECT_EQ(c.both(2, a).im, (List<T>{x, -x}));
        EXPECT_EQ(c.right(2, a).im, (List<T>{x, -x}));
        EXPECT_EQ(c.left(2, a).im, (List<T>{x, -x}));
    }
    const T above = std::nextafter(eps<T>, T(1));
    near(c.values(2, {0, above, -above, 0}).im, {above, -above}, double(2 * eps<T> * eps<T>));
    // 16 and 16: with vectors everything up to 32 epsilon is nothing
    EXPECT_EQ(c.values(2, {16, 4 * eps<T>, -4, 16}).im, (List<T>{4 * std::sqrt(eps<T>), -4 * std::sqrt(eps<T>)}));
    for (T x : {4 * eps<T>, 32 * eps<T>}) EXPECT_EQ(c.both(2, {16, x, -4, 16}).im, (List<T>{0, 0}));
    EXPECT_NE(c.both(2, {16, 33 * eps<T>, -4, 16}).im, (List<T>{0, 0}));
};
const Special deflation("EigenGeneral", "deflation", everywhere(deflationBody));

// Diagonal matrices: in their order, unsorted, no matter which are zero; a real value has a positive zero beside it.
const auto diagonalBody = []<class T>(const Caller<T>& c) {
    for (int n = 2; n <= 9; ++n)
        for (const bool zero : {false, true}) {
            List<T> d;
            for (int i = 0; i < n; ++i) d.push_back(zero ? T(0) : T((i * 5) % 7 - 3));
            for (const General<T>& g : c.all(n, diagonal(d))) {
                EXPECT_EQ(g.status, Ok);
                EXPECT_EQ(g.re, d);
                EXPECT_EQ(g.im, List<T>(size_t(n), T(0)));
                for (T x : g.im) EXPECT_FALSE(std::signbit(x));
                const List<T> identity = diagonal(List<T>(size_t(n), T(1)));
                expectVectors<T>(g.right, identity);
                expectVectors<T>(g.left, identity);
            }
        }
};
const Special diagonals("EigenGeneral", "diagonal", everywhere(diagonalBody));

// Cyclic permutations, whose values are the roots of unity: sweeps by the ordinary shifts change nothing, the exceptional
// ones at 10 and 20 do. Tried at each order, as the shifts count anew for each value.
const auto permutationBody = []<class T>(const Caller<T>& c) {
    for (int n = 3; n <= 9; ++n) {
        List<T> a(size_t(n * n));
        for (int i = 0; i < n; ++i) a[size_t(i * n + (i + 1) % n)] = 1;
        for (const General<T>& g : c.all(n, a)) {
            EXPECT_EQ(g.status, Ok);
            std::vector<bool> found(size_t(n), false);
            for (int i = 0; i < n; ++i) {
                const double re = double(g.re[size_t(i)]), im = double(g.im[size_t(i)]);
                EXPECT_NEAR(std::hypot(re, im), 1, 20 * double(eps<T>));
                const double turn = std::atan2(im, re) * n / (2 * M_PI);
                EXPECT_NEAR(turn, std::round(turn), 20 * n * double(eps<T>));
                found[size_t((int(std::round(turn)) + n) % n)] = true;
            }
            EXPECT_EQ(found, std::vector<bool>(size_t(n), true)) << n;
        }
    }
};
const Special permutations("EigenGeneral", "cyclic permutation", everywhere(permutationBody));

// The rotation of the last block stays for a block that needs one and has none: here the identity, of a quarter turn.
const auto lastRotationBody = []<class T>(const Caller<T>& c) {
    const List<T> a = {1, 2, 0, 0, 3, 1, 0, 0, 0, 0, 5, -1, 0, 0, 1, 5};
    const double re = std::sqrt(0.6), im = std::sqrt(0.4), h = std::sqrt(0.5); // 1 and sqrt(6)/3, normalised
    for (const General<T>& g : c.all(4, a)) {
        EXPECT_EQ(g.status, Ok);
        near(g.re, {1, 1, 5, 5}), near(g.im, {std::sqrt(6.0), -std::sqrt(6.0), 1, -1});
        nearVectors(g.right, {re, 0, 0, 0, 0, im, 0, 0, 0, 0, h, 0, 0, 0, 0, h});
        nearVectors(g.left, {0, im, 0, 0, re, 0, 0, 0, 0, 0, h, 0, 0, 0, 0, -h});
    }
};
const Special lastRotation("EigenGeneral", "last rotation", everywhere(lastRotationBody));

// A failure keeps what was found: values from the last one upwards; vectors come only at the end.
const auto nanBody = []<class T>(const Caller<T>& c) {
    const T m = T(mark), bad = T(NAN);
    for (const General<T>& g : c.all(4, {2, 1, bad, 0, 1, 3, 1, 0, 1, 1, 4, 0, 0, 0, 0, 7})) {
        EXPECT_EQ(g.status, NoConvergence);
        EXPECT_EQ(g.re, (List<T>{m, m, m, 7}));
        EXPECT_EQ(g.im, (List<T>{m, m, m, 0}));
        for (const List<T>& vectors : {g.right, g.left})
            for (T x : vectors) EXPECT_EQ(x, m);
    }
    for (int n = 3; n <= 9; ++n)
        for (int place = 0; place<n * n; place += n> 5 ? 7 : 1) {
            List<T> a(size_t(n * n));
            for (int i = 0; i < n * n; ++i) a[size_t(i)] = T((i * 7 + n) % 11 - 4.5);
            a[size_t(place)] = bad;
            for (const General<T>& g : c.all(n, a)) EXPECT_EQ(g.status, NoConvergence) << n << ' ' << place;
        }
};
const Special nan("EigenGeneral", "NaN ends without convergence", everywhere(nanBody));

// The object in the middle of an array: those before it are complete, those behind it untouched.
const auto middleBody = []<class T>(const Caller<T>& c) {
    if (!c.form.array()) return;
    for (int n = 3; n <= 6; ++n)
        for (int count : {3, 20, 41})
            for (int bad : {0, count / 2, count - 1}) {
                List<T> a;
                for (int k = 0; k < count; ++k)
                    for (int i = 0; i < n * n; ++i)
                        a.push_back(k == bad ? i % (n + 1) ? T(NAN) : T(1) : T(i % (n + 1) ? 0 : 1 + i / (n + 1)));
                for (const General<T>& g : c.all(n, a, count)) {
                    EXPECT_EQ(g.status, NoConvergence);
                    for (int k = 0; k < count; ++k)
                        for (int i = 0; i < n; ++i) {
                            const size_t at = size_t(k * n + i);
                            EXPECT_EQ(g.re[at], k < bad ? T(1 + i) : T(mark)) << n << ' ' << k;
                            EXPECT_EQ(g.im[at], k < bad ? T(0) : T(mark));
                            for (const List<T>* vectors : {&g.right, &g.left})
                                if (!vectors->empty()) {
                                    EXPECT_EQ((*vectors)[at * size_t(n) + size_t(i)], k < bad ? T(1) : T(mark));
                                }
                        }
                }
            }
};
const Special middle("EigenGeneral", "failing object in an array", everywhere(middleBody));

// The two ends of the substitution. NaN above a tiny number makes a block that is nothing beside what counts as zero: for
// a real value the call ends there as a success, for a pair it fails. Values are complete, vectors of the object and
// everything behind it untouched. The right set meets the blocks before a value's own, the left set those behind it.
const auto endsBody = []<class T>(const Caller<T>& c) {
    const T s = safeMin<T>, tiny = 8 * s, least = 2 * s, d = T(0x1p-60), bad = T(NAN), m = T(mark);
    struct Row {
        List<T> a;
        int status;
        bool right, left; // whether that set meets the block
    };
    const Row rows[] = {
        {{0, tiny, 0, 0, bad, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 5}, Ok, true, false},
        {{least, 0, 0, 0, 0, 0, tiny, 0, 0, bad, 0, 0, 0, 0, 0, 5}, Ok, false, true},
        {{0, tiny, 0, 0, bad, 0, 0, 0, 0, 0, d, 1, 0, 0, bad, d}, Failed, true, false},
        {{d, 1, 0, 0, bad, d, 0, 0, 0, 0, 0, tiny, 0, 0, bad, 0}, Failed, false, true},
        // seen from the right, no NaN in the pair itself
        {{s / 4, tiny, 0, 0, bad, 3 * s / 4, 0, 0, 0, 0, 3 * s / 4, tiny, bad, 0, -tiny, s / 4}, Failed, true, true},
    };
    const List<T> good = diagonal<T>({1, 2, 3, 4});
    for (const Row& row : rows) {
        List<T> a = row.a;
        const int count = c.form.array() ? 3 : 1, own = count / 2;
        if (c.form.array()) a.insert(a.begin(), good.begin(), good.end()), a.insert(a.end(), good.begin(), good.end());
        EXPECT_EQ(c.values(4, a, count).status, Ok);
        const std::pair<General<T>, bool> results[] = {
            {c.both(4, a, count), true}, {c.right(4, a, count), row.right}, {c.left(4, a, count), row.left}};
        for (const auto& [g, ends] : results) {
            EXPECT_EQ(g.status, ends ? row.status : Ok);
            for (int k = 0; k < count; ++k)
                for (int i = 0; i < 4; ++i) {
                    EXPECT_EQ(g.re[size_t(4 * k + i)] == m, ends && k > own) << k;
                    EXPECT_EQ(g.im[size_t(4 * k + i)] == m, ends && k > own) << k;
                    for (const List<T>* vectors : {&g.right, &g.left})
                        for (int j = 0; j < 4 && !vectors->empty(); ++j)
                            EXPECT_EQ((*vectors)[size_t((4 * k + i) * 4 + j)] == m, ends && k >= own) << k;
                }
        }
    }
};
const Special ends("EigenGeneral", "early ends of the substitution", everywhere(endsBody));

// Most vectors of double precision have shifts of single precision, but not both sets of a single matrix: the same
// values up to rounding, other bits.
const Special shifts("EigenGeneral", "precision of the shifts", [](const Level& level) {
    Random random("shifts", 0);
    int differ = 0;
    for (int round = 0; round < 100; ++round) {
        const int n = 4 + round % 3;
        List<double> a(size_t(n * n));
        for (int i = 0; i < n; ++i)
            for (int j = 0; j < n; ++j) a[size_t(i * n + j)] = random.unit() + (i == j ? 3 * i : 0);
        const auto wide = Caller<double>{level, {"m", ""}}.both(n, a), listed = Caller<double>{level, {"m", "P"}}.both(n, a);
        const auto right = Caller<double>{level, {"m", ""}}.right(n, a), left = Caller<double>{level, {"m", ""}}.left(n, a);
        const auto array = Caller<double>{level, {"ma", ""}}.both(n, a);
        EXPECT_EQ(wide.right, listed.right);
        EXPECT_EQ(right.right, array.right);
        EXPECT_EQ(left.left, array.left);
        EXPECT_EQ(right.re, left.re);
        differ += wide.right != right.right;
        List<double> x = wide.re, y = right.re; // they may come in another order
        std::sort(x.begin(), x.end()), std::sort(y.begin(), y.end());
        near(y, x, 1e-12);
    }
    EXPECT_GT(differ, 50);
});
} // namespace
