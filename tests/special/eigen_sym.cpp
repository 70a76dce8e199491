// Symmetric eigenproblems at the values where something turns.
#include "../packed.h"
#include "../special.h"

#include <cmath>
#include <limits>

namespace {
template <class T> constexpr T eps = std::numeric_limits<T>::epsilon();
template <class T> using List = std::vector<T>;

Dims order(int n)
{
    Dims d;
    d['n'] = n;
    return d;
}

template <class T> struct Sym {
    int status;
    List<T> values, vectors; // vectors by rows, empty without
};
template <class T> struct Caller {
    const Level& level;
    Form form;
    Sym<T> values(int n, const List<T>& a, int count = 1) const
    {
        auto r = callPacked<T>(level, form.name<T>("EigenValuesSym"), order(n), {a}, count, form.gap());
        return {r.status, r.results[0], {}};
    }
    Sym<T> both(int n, const List<T>& a, int count = 1) const
    {
        auto r = callPacked<T>(level, form.name<T>("EigenValuesVectorsSym"), order(n), {a}, count, form.gap());
        return {r.status, r.results[1], r.results[0]};
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

template <class T> void near(const List<T>& got, const List<double>& expected, double bound = 8 * eps<T>)
{
    ASSERT_EQ(got.size(), expected.size());
    for (size_t i = 0; i < got.size(); ++i) EXPECT_NEAR(double(got[i]), expected[i], bound) << i;
}

// ||A v - lambda v|| of the worst pair.
template <class T> double residual(int n, const List<T>& a, const Sym<T>& s)
{
    double worst = 0;
    for (int c = 0; c < n; ++c) {
        double sum = 0;
        for (int i = 0; i < n; ++i) {
            double x = -double(s.values[size_t(c)]) * double(s.vectors[size_t(i * n + c)]);
            for (int k = 0; k < n; ++k) x += double(a[size_t(i * n + k)]) * double(s.vectors[size_t(k * n + c)]);
            sum += x * x;
        }
        worst = std::max(worst, std::sqrt(sum));
    }
    return worst;
}

const auto order1Body = []<class T>(const Caller<T>& c) {
    for (T x : {T(0), T(-5), T(1e-30), T(INFINITY)}) {
        EXPECT_EQ(c.values(1, {x}).status, Ok);
        EXPECT_EQ(c.values(1, {x}).values, List<T>{x});
        EXPECT_EQ(c.both(1, {x}).status, Ok);
        EXPECT_EQ(c.both(1, {x}).values, List<T>{x});
        EXPECT_EQ(c.both(1, {x}).vectors, List<T>{1});
    }
    EXPECT_TRUE(std::isnan(c.values(1, {T(NAN)}).values[0]));
    EXPECT_EQ(c.values(1, {T(NAN)}).status, Ok);
};
const Special order1("EigenSym", "order 1", everywhere(order1Body));

template <class T> struct Row2 {
    List<T> a, values, vectors;
};
const auto order2Body = []<class T>(const Caller<T>& c) {
    const T h = std::sqrt(T(0.5));
    const Row2<T> rows[] = {
        // the sign of a zero is free
        {{1, 0, 0, 1}, {1, 1}, {0, -1, 1, 0}},
        {{0, 1, 1, 0}, {1, -1}, {h, -h, h, h}},
        {{2, 0, 0, 1}, {2, 1}, {-1, 0, 0, -1}},
        {{1, 0, 0, 2}, {2, 1}, {0, -1, 1, 0}},
        // not sorted: the greater magnitude first
        {{-1, 0, 0, -3}, {-3, -1}, {0, -1, 1, 0}},
        {{-3, 0, 0, -1}, {-3, -1}, {-1, 0, 0, -1}},
        {{1, 0, 0, -1}, {1, -1}, {-1, 0, 0, -1}},
        // the element below the diagonal plays no part
        {{2, 0, 99, 1}, {2, 1}, {-1, 0, 0, -1}},
        {{2, 0, T(NAN), 1}, {2, 1}, {-1, 0, 0, -1}},
    };
    for (const Row2<T>& row : rows) {
        EXPECT_EQ(c.values(2, row.a).status, Ok);
        EXPECT_EQ(c.values(2, row.a).values, row.values);
        const Sym<T> s = c.both(2, row.a);
        EXPECT_EQ(s.status, Ok);
        EXPECT_EQ(s.values, row.values);
        near<T>(s.vectors, List<double>(row.vectors.begin(), row.vectors.end()), eps<T>);
    }
    for (int place : {0, 1, 3}) { // NaN passes every test
        List<T> a = {2, 1, 1, 2};
        a[size_t(place)] = T(NAN);
        const Sym<T> s = c.values(2, a);
        EXPECT_EQ(s.status, Ok);
        EXPECT_TRUE(std::isnan(s.values[0]) && std::isnan(s.values[1]));
        EXPECT_EQ(c.both(2, a).status, Ok);
    }
};
const Special order2("EigenSym", "order 2", everywhere(order2Body));

// The bound of the determinant at order 2: epsilon, but for values of packed arrays, where it is 2^-52 in both types.
const auto bound2Body = []<class T>(const Caller<T>& c) {
    const T values = c.form.shape == "ma" && c.form.layout.empty() ? T(0x1p-52) : eps<T>;
    for (T sign : {T(1), T(-1)}) {
        const auto a = [&](T det) { return diagonal<T>({1, sign * det}); };
        const auto above = [](T x) { return std::nextafter(x, T(1)); };
        EXPECT_EQ(c.values(2, a(0)).status, Singular);
        EXPECT_EQ(c.values(2, a(values)).status, Singular);
        EXPECT_EQ(c.values(2, a(above(values))).status, Ok);
        EXPECT_EQ(c.both(2, a(0)).status, Singular);
        EXPECT_EQ(c.both(2, a(eps<T>)).status, Singular);
        EXPECT_EQ(c.both(2, a(above(eps<T>))).status, Ok);
    }
    EXPECT_EQ(c.values(2, {T(1e-5), 0, 0, T(1e-5)}).status, // det is 1e-10
              sizeof(T) == 8 || values < eps<T> ? Ok : Singular);
    EXPECT_EQ(c.values(2, {0, 0, 0, 1}).values, (List<T>{mark, mark})) << "untouched";
    EXPECT_EQ(c.both(2, {0, 0, 0, 1}).values, (List<T>{mark, mark}));
    EXPECT_EQ(c.both(2, {0, 0, 0, 1}).vectors, List<T>(4, mark));
};
const Special bound2("EigenSym", "singular at order 2", everywhere(bound2Body));

const auto diagonalsBody = []<class T>(const Caller<T>& c) {
    for (int n = 3; n <= 9; ++n) {
        const List<T> ones(size_t(n), T(1));
        EXPECT_EQ(c.values(n, diagonal(ones)).status, Ok);
        EXPECT_EQ(c.values(n, diagonal(ones)).values, ones);
        EXPECT_EQ(c.both(n, diagonal(ones)).values, ones);
        EXPECT_EQ(c.both(n, diagonal(ones)).vectors, diagonal(ones));

        List<T> up; // sorted by the signed value; the columns of V follow
        for (int i = 0; i < n; ++i) up.push_back(T(i - 2 + (i >= 2)));
        const List<T> down(up.rbegin(), up.rend());
        EXPECT_EQ(c.values(n, diagonal(up)).values, down);
        EXPECT_EQ(c.values(n, diagonal(down)).values, down);
        const Sym<T> s = c.both(n, diagonal(up));
        EXPECT_EQ(s.status, Ok);
        EXPECT_EQ(s.values, down);
        for (int i = 0; i < n; ++i) EXPECT_EQ(std::fabs(s.vectors[size_t(i * n + n - 1 - i)]), 1);

        const List<T> zero(size_t(n), T(0));
        EXPECT_EQ(c.values(n, diagonal(zero)).status, Singular);
        EXPECT_EQ(c.values(n, diagonal(zero)).values, zero);
        EXPECT_EQ(c.both(n, diagonal(zero)).status, Singular);
        EXPECT_EQ(c.both(n, diagonal(zero)).vectors, diagonal(ones));
    }
};
const Special diagonals("EigenSym", "diagonal", everywhere(diagonalsBody));

// Whether the sort comes before the test for a singular matrix.
const auto unsortedBody = []<class T>(const Caller<T>& c) {
    const List<T> a = diagonal<T>({1, 0, 2}), as = {1, 0, 2}, sorted = {2, 1, 0};
    EXPECT_EQ(c.values(3, a).status, Singular);
    EXPECT_EQ(c.values(3, a).values, as);
    const Sym<T> s = c.both(3, a);
    EXPECT_EQ(s.status, Singular);
    const bool testFirst = c.form.array() || (sizeof(T) == 4 && c.form.layout == "2");
    EXPECT_EQ(s.values, testFirst ? as : sorted);
    EXPECT_EQ(s.vectors, testFirst ? diagonal<T>({1, 1, 1}) : (List<T>{0, 1, 0, 0, 0, 1, 1, 0, 0}));
};
const Special unsorted("EigenSym", "contents when singular", everywhere(unsortedBody));

// The test is on the product: at its bound, above it, and NaN, which passes.
const Special
    product3("EigenSym", "product of the values", everywhere([]<class T>(const Caller<T>& c) {
                 const T e = eps<T>, above = std::nextafter(e, T(1));
                 for (const auto& solve : {&Caller<T>::values, &Caller<T>::both}) {
                     const auto status = [&](const List<T>& d) { return (c.*solve)(int(d.size()), diagonal(d), 1).status; };
                     for (int n = 3; n <= 9; ++n)
                         for (int place : {0, 1, n - 1}) {
                             List<T> d(size_t(n), T(-1));
                             d[size_t(place)] = e;
                             EXPECT_EQ(status(d), Singular) << n;
                             d[size_t(place)] = above;
                             EXPECT_EQ(status(d), Ok) << n;
                         }
                     const T third = sizeof(T) == 4 ? T(0.004) : T(5e-6); // none is zero, and yet
                     EXPECT_EQ(status({third, third, third}), Singular);
                     EXPECT_EQ(status({T(NAN), 2, 1}), Ok);
                     EXPECT_EQ(status({T(INFINITY), 2, 1}), Ok);
                 }
                 // NaN is never the greater one
                 const Sym<T> s = c.values(3, diagonal<T>({T(NAN), 1, 2})), t = c.values(3, diagonal<T>({1, T(NAN), 2}));
                 EXPECT_TRUE(std::isnan(s.values[0]));
                 EXPECT_EQ((List<T>{s.values[1], s.values[2]}), (List<T>{2, 1}));
                 EXPECT_TRUE(std::isnan(t.values[1]));
                 EXPECT_EQ((List<T>{t.values[0], t.values[2]}), (List<T>{2, 1}));
             }));

// In the bottom-up direction an element enters the product each time that it splits the matrix: here the zero of the
// middle before its block is solved. Its mirror image goes top-down.
const auto interimBody = []<class T>(const Caller<T>& c) {
    const List<T> up = {1, 0, 0, 0, 0, 1, 0, 1, 0}, down = {0, 1, 0, 1, 0, 0, 0, 0, 1};
    EXPECT_EQ(c.values(3, up).status, Singular);
    near(c.values(3, up).values, {1, -1, 1}); // not sorted
    EXPECT_EQ(c.values(3, down).status, Ok);
    near(c.values(3, down).values, {1, 1, -1});
    EXPECT_EQ(c.both(3, up).status, c.form.array() ? Ok : Singular);
    const bool sorted = c.form.array() || !(sizeof(T) == 4 && c.form.layout == "2");
    near(c.both(3, up).values, sorted ? List<double>{1, 1, -1} : List<double>{1, -1, 1});
    EXPECT_EQ(c.both(3, down).status, Ok);
};
const Special interim("EigenSym", "product of the bottom-up form", everywhere(interimBody));

// Couplings that the reduction passes over: a column whose squares sum to epsilon or less, in arrays alone (and not
// with packed lists in single precision, whose bound is 2^-52); a column that is all in its first element, but not where
// single matrices get values alone.
const auto passedOverBody = []<class T>(const Caller<T>& c) {
    const T x = std::sqrt(eps<T> * T(0.4)); // its reflector is above the bound, the sum of squares is not
    const List<T> small = {1, x, x, x, 2, 0, x, 0, 3}, first = {1, 1, x, 1, 3, 0, x, 0, 6};
    const bool list = sizeof(T) == 4 && c.form.layout == "L";
    const double left = 0.5 * double(x), none = 16 * double(eps<T>);
    const double s = residual(3, small, c.both(3, small)), f = residual(3, first, c.both(3, first));
    EXPECT_EQ(c.both(3, small).status, Ok);
    if (c.form.array() && !list) EXPECT_GT(s, left);
    else EXPECT_LT(s, none);
    if (list) EXPECT_LT(f, none);
    else EXPECT_GT(f, left);
};
const Special passedOver("EigenSym", "bounds of the reduction", everywhere(passedOverBody));

// An off-diagonal element is zero where half of it is epsilon or less.
const auto negligibleBody = []<class T>(const Caller<T>& c) {
    const T x = 2 * eps<T>, above = std::nextafter(x, T(1));
    const auto a = [](T e) { return List<T>{4, 0, 0, 0, 1, e, 0, e, 1}; }; // values 1 +- e
    EXPECT_EQ(c.values(3, a(x)).values, (List<T>{4, 1, 1}));
    EXPECT_NE(c.values(3, a(above)).values, (List<T>{4, 1, 1}));
    EXPECT_EQ(c.both(3, a(x)).vectors, diagonal<T>({1, 1, 1}));
    EXPECT_NE(c.both(3, a(above)).vectors, diagonal<T>({1, 1, 1}));
};
const Special negligible("EigenSym", "negligible coupling", everywhere(negligibleBody));

// NaN and infinity beside the diagonal never become negligible.
const auto nanBody = []<class T>(const Caller<T>& c) {
    for (T bad : {T(NAN), T(INFINITY)})
        for (int n = 3; n <= 9; ++n)
            for (int i = 1; i < n; ++i) {
                List<T> a(size_t(n * n), T(1));
                for (int k = 0; k < n; ++k) a[size_t(k * n + k)] = T(n + k);
                a[size_t(i)] = a[size_t(i * n)] = bad;
                EXPECT_EQ(c.values(n, a).status, NoConvergence) << n;
                EXPECT_EQ(c.both(n, a).status, NoConvergence) << n;
            }
};
const Special nan("EigenSym", "NaN ends without convergence", everywhere(nanBody));

// Eigenvalues that are known: second differences, 2 - 2 cos(k pi / (n + 1)), and all ones.
const auto knownBody = []<class T>(const Caller<T>& c) {
    const auto differences = [](int n) {
        List<T> a(size_t(n * n));
        for (int i = 0; i < n; ++i)
            for (int j = 0; j < n; ++j) a[size_t(i * n + j)] = T(2 * (i == j) - (std::abs(i - j) == 1));
        return a;
    };
    const auto expected = [](int n) {
        List<double> e;
        for (int k = n; k >= 1; --k) e.push_back(2 - 2 * std::cos(M_PI * k / (n + 1)));
        return e;
    };
    for (int n = 3; n <= 9; ++n) {
        const double bound = 4 * n * double(eps<T>);
        List<T> ones(size_t(n * n), T(1)); // one value, and one n-1 times
        List<double> shifted(size_t(n), 2);
        for (int i = 0; i < n; ++i) ones[size_t(i * n + i)] = 3;
        shifted[0] = n + 2;
        near(c.values(n, ones).values, shifted, bound * n), near(c.both(n, ones).values, shifted, bound * n);
        EXPECT_LT(residual(n, ones, c.both(n, ones)), 2 * n * bound);
        if (n == 4 || n == 7) continue; // see below
        const List<T> a = differences(n);
        near(c.values(n, a).values, expected(n), bound), near(c.both(n, a).values, expected(n), bound);
        EXPECT_LT(residual(n, a, c.both(n, a)), 2 * bound);
    }
    // A sweep whose last rotation has next to nothing to do loses its end, and the values with it: the equal diagonal of
    // order 4 is such a case. No status tells.
    if (sizeof(T) == 8) {
        const Sym<T> v = c.values(4, differences(4)), s = c.both(4, differences(4));
        EXPECT_EQ(v.status, Ok);
        EXPECT_EQ(s.status, Ok);
        for (const List<T>& values : {v.values, s.values}) {
            double worst = 0;
            for (int i = 0; i < 4; ++i)
                worst = std::max(worst, std::fabs(double(values[size_t(i)]) - expected(4)[size_t(i)]));
            EXPECT_NEAR(worst, 0.1333, 0.0001);
        }
    }
};
const Special known("EigenSym", "known values", everywhere(knownBody));

// A singular object ends an array: those before it are complete, those behind it untouched.
const auto middleBody = []<class T>(const Caller<T>& c) {
    if (!c.form.array()) return;
    for (int n = 2; n <= 6; ++n)
        for (int count : {3, 20, 41})
            for (int bad : {0, count / 2, count - 1}) {
                List<T> a;
                for (int k = 0; k < count; ++k)
                    for (int i = 0; i < n * n; ++i) a.push_back(i % (n + 1) || k == bad ? T(0) : T(1 + i / (n + 1)));
                const Sym<T> v = c.values(n, a, count), s = c.both(n, a, count);
                EXPECT_EQ(v.status, Singular);
                EXPECT_EQ(s.status, Singular);
                for (int k = 0; k < count; ++k)
                    for (int i = 0; i < n; ++i) {
                        const bool touched = k < bad || (k == bad && n > 2);
                        const T expected = k < bad ? T(n - i) : touched ? T(0) : T(mark);
                        EXPECT_EQ(v.values[size_t(k * n + i)], expected) << k;
                        EXPECT_EQ(s.values[size_t(k * n + i)], expected) << k;
                        EXPECT_EQ(s.vectors[size_t(k * n * n + i)] == T(mark), !touched) << k;
                    }
            }
};
const Special middle("EigenSym", "singular object in an array", everywhere(middleBody));

// A list may name an element twice, as for tensors kept as six components: xx xy xz yy yz zz, each tensor by itself or
// each component of all tensors together.
template <class T> void tensors(const Level& level)
{
    const int count = 70, e = sizeof(T);
    Random random("tensors", e);
    List<T> packed, full, planes(6 * count);
    for (int k = 0; k < count; ++k) {
        T x[6];
        for (int i = 0; i < 6; ++i) {
            x[i] = T(random.unit() + (i == 0 || i == 3 || i == 5 ? 2 : -0.5));
            packed.push_back(x[i]), planes[size_t(i * count + k)] = x[i];
        }
        for (int i : {0, 1, 2, 1, 3, 4, 2, 4, 5}) full.push_back(x[i]);
    }
    const Caller<T> c{level, {"ma", "P"}};
    const Sym<T> values = c.values(3, full, count), both = c.both(3, full, count);
    ASSERT_EQ(values.status, Ok);
    ASSERT_EQ(both.status, Ok);
    for (bool soa : {false, true}) {
        List<T*> list, to;
        List<T> scratch(9), dst(3 * count), vectors(9 * count);
        for (int i : {0, 1, 2, 1, 3, 4, 2, 4, 5}) list.push_back(soa ? &planes[size_t(i * count)] : &packed[size_t(i)]);
        for (int i = 0; i < 9; ++i) to.push_back(&vectors[size_t(i)]);
        const int step = (soa ? 1 : 6) * e;
        const auto solve = [&](const std::string& operation, std::initializer_list<std::pair<const char*, void*>> pointers) {
            const Function& f = functions().at(c.form.template name<T>(operation));
            List<Value> v(f.arguments.size());
            for (Value& value : v) value.p = nullptr;
            for (auto [name, p] : pointers) v[size_t(f.at(name))].p = p;
            for (const char* name : {"stride0", "srcStride0"})
                if (f.at(name) >= 0) v[size_t(f.at(name))].i = step;
            if (f.at("dstStride0") >= 0) v[size_t(f.at("dstStride0"))].i = 9 * e;
            v[size_t(f.at("widthHeight"))].i = 3, v[size_t(f.at("count"))].i = count;
            return call(f, find(level, f.name), v);
        };
        EXPECT_EQ(solve("EigenValuesSym", {{"src", list.data()}, {"buffer", scratch.data()}, {"dst", dst.data()}}), Ok);
        EXPECT_EQ(dst, values.values);
        EXPECT_EQ(
            solve("EigenValuesVectorsSym",
                  {{"src", list.data()}, {"buffer", scratch.data()}, {"dstVectors", to.data()}, {"dstValues", dst.data()}}),
            Ok);
        EXPECT_EQ(dst, both.values);
        EXPECT_EQ(vectors, both.vectors);
    }
}
const Special sixComponents("EigenSym", "six components",
                            [](const Level& level) { tensors<float>(level), tensors<double>(level); });
} // namespace
