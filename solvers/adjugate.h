// The inverse by the adjugate (the transposed matrix of cofactors) times the reciprocal of the determinant: closed forms
// for orders 3 to 6, and for the others an elimination for each cofactor.
#pragma once
#include "frame/any_order.h"
#include "frame/constants.h"

#include <bit>

namespace kesl {

// A determinant or pivot below this counts as zero: 2 n^3 smallest normal numbers, the integer wrapped to 32 bits.
template <class T> constexpr T singularBelow(int n)
{
    const unsigned u = unsigned(n);
    return T(int(2 * u * u * u)) * Precision<T>::smallest;
}

// ---- Orders 3 to 6, by Laplace's expansion: the minors of more columns from those of fewer, each once.

// A set of rows, or columns, is a bit mask. Its members, the last one first:
struct Members {
    int list[6]{}, size = 0;
    constexpr explicit Members(int set)
    {
        for (int r = 5; r >= 0; --r)
            if (set >> r & 1) list[size++] = r;
    }
};

// m[to] becomes, or grows or shrinks by, element (row, column) times m[from]; m[0] is 1.
struct Term {
    int to, from, row, column;
    enum Sign { first, plus, minus } sign;
};

// The terms of minors, in their order.
template <int n> struct Terms {
    Term term[1024]{};
    int count = 0;

    // The determinant of `rows` and a column in front of those that m has, expanded along this column from the last row to
    // the first, with alternating signs. An even number of rows begins with a minus, which is left to the second term.
    constexpr void expand(int rows, int column)
    {
        const Members set(rows);
        const bool even = set.size % 2 == 0;
        for (int t = 0; t < set.size; ++t) {
            const int i = even && t < 2 ? 1 - t : t, row = set.list[i];
            const auto sign = t == 0 ? Term::first : (i % 2 == 0) != even ? Term::plus : Term::minus;
            term[count++] = {rows, rows & ~(1 << row), row, column, sign};
        }
    }
    // Minors of all columns but `skipped`: those of the columns behind it are there already.
    constexpr void skip(int skipped)
    {
        int size = skipped ? n - skipped : 1; // with column `first`
        for (int column = skipped ? skipped - 1 : n - 1; column >= (skipped ? 0 : 1); --column, ++size)
            for (int rows = 1; rows < 1 << n; ++rows)
                if (std::popcount(unsigned(rows)) == size) expand(rows, column);
    }
};
// All but the first column, and the whole; all but column j.
template <int n> constexpr auto determinantTerms = [] {
    Terms<n> terms;
    terms.skip(0), terms.expand((1 << n) - 1, 0);
    return terms;
}();
template <int n, int j> constexpr auto minorTerms = [] {
    Terms<n> terms;
    terms.skip(j);
    return terms;
}();

// The minors of n rows: m[rows] belongs to as many columns as the set has rows.
template <int n, class V> struct Minors {
    V m[1 << n];

    template <Term t> [[gnu::always_inline]] void add(const Block<V, n, n>& a)
    {
        V x = a(t.row, t.column);
        if constexpr (t.from != 0) x = x * m[t.from];
        if constexpr (t.sign == Term::first) m[t.to] = x;
        else if constexpr (t.sign == Term::plus) m[t.to] = m[t.to] + x;
        else m[t.to] = m[t.to] - x;
    }
    template <const auto& terms> [[gnu::always_inline]] void join(const Block<V, n, n>& a)
    {
        [&]<int... i>(std::integer_sequence<int, i...>)
            KESL_INLINE { (add<terms.term[i]>(a), ...); }(std::make_integer_sequence<int, terms.count>{});
    }
};

// False, and nothing else done, where the matrix is singular (in any lane).
template <class T, int n, class V>
[[gnu::always_inline]] inline bool invertClosed(const Block<V, n, n>& a, Block<V, n, n>& inverse)
{
    constexpr int all = (1 << n) - 1;
    Minors<n, V> minors;
    minors.template join<determinantTerms<n>>(a);
    const V det = minors.m[all]; // NOLINT(clang-analyzer-core.uninitialized.Assign): it does not follow the table of terms
    if (any(singularBelow<T>(n) > abs(det))) return false; // a NaN passes
    const V r = T(1) / det;
    [&]<int... j>(std::integer_sequence<int, j...>) KESL_INLINE {
        (
            [&]() KESL_INLINE {
                if constexpr (j > 0) minors.template join<minorTerms<n, j>>(a);
#pragma GCC unroll 8
                for (int i = 0; i < n; ++i) {
                    const V minor = minors.m[all & ~(1 << i)];
                    inverse(j, i) = ((i + j) % 2 ? V{} - minor : minor) * r;
                }
            }(),
            ...);
    }(std::make_integer_sequence<int, n>{});
    return true;
}
// Orders 5 and 6 are long: one copy serves all kernels.
template <class T, int n, class V> [[gnu::noinline]] bool invertLong(const Block<V, n, n>& a, Block<V, n, n>& inverse)
{
    return invertClosed<T>(a, inverse);
}

// ---- Other orders.

// Gaussian elimination with partial pivoting by an index table, for the determinant alone.
template <class T> struct Elimination {
    T* a;   // rows of `pitch` elements
    int* p; // p[i] is the row that stands i-th
    int pitch;
    T threshold;
    T pivots = 1; // their product, but for the last
    int sign = 1;

    T* row(int i) const { return a + std::int64_t(p[i]) * pitch; }

    // False at the first pivot below the threshold, with everything as it stands then.
    bool run(int order)
    {
        for (int i = 0; i < order; ++i) p[i] = i;
        for (int k = 0; k < order - 1; ++k) {
            T best = abs(row(k)[k]);
            int q = k;
            for (int i = k + 1; i < order; ++i)
                if (const T x = abs(row(i)[k]); x > best) best = x, q = i;
            if (q != k) std::swap(p[q], p[k]), sign = -sign;
            if (threshold > best) return false;
            const T* const rk = row(k);
            const T r = 1 / rk[k];
            for (int i = k + 1; i < order; ++i) {
                T* const ri = row(i);
                const T f = ri[k] * r;
#pragma GCC ivdep
                for (int j = k + 1; j < order; ++j) ri[j] = ri[j] - rk[j] * f;
            }
            pivots = pivots * rk[k];
        }
        return true;
    }
};

// The same on packs, with quotients instead of products with a reciprocal if it `divides`; false where a lane has a pivot
// below the threshold.
template <bool divides, class V>
[[gnu::always_inline]] inline bool eliminate(Tile<V> a, auto n, ElementOf<V> threshold, V& pivots, V& sign)
{
    using T = ElementOf<V>;
    pivots = sign = splat<V>(1);
    for (int k = 0; k < n - 1; ++k) {
        V best;
        const MaskOf<V> q = pivotRow(a, k, n, best);
        if (any(threshold > best)) return false; // a NaN passes
        exchangeRows(a, k, q, n);
        sign = q == k ? sign : -sign;
        const V *const rk = a.row(k), pivot = rk[k], r = T(1) / pivot;
        for (int i = k + 1; i < n; ++i) {
            V* const ri = a.row(i);
            const V f = divides ? ri[k] / pivot : ri[k] * r;
            for (int j = k + 1; j < n; ++j) ri[j] = ri[j] - rk[j] * f;
        }
        pivots = pivots * pivot;
    }
    return true;
}

// src and dst are views of order n; the buffer holds n * n elements and, behind them, n row numbers.
template <class T> [[gnu::noinline]] KeslStatus invertCommon(const auto& src, T* buffer, const auto& dst, int n)
{
    const T threshold = singularBelow<T>(n); // that of the whole matrix, for its minors too
    int* const p = reinterpret_cast<int*>(buffer + std::int64_t(n) * n);

    for (int i = 0; i < n; ++i)
        for (int j = 0; j < n; ++j) buffer[std::int64_t(i) * n + j] = src(i, j);
    Elimination<T> whole{buffer, p, n, threshold};
    if (!whole.run(n)) return keslStatusSingular;
    const T det = whole.pivots * (T(whole.sign) * whole.row(n - 1)[n - 1]);
    if (threshold >= abs(det)) return keslStatusSingular; // not strict, unlike every other test
    const T r = 1 / det;

    for (int i = 0; i < n; ++i)
        for (int j = 0; j < n; ++j) {
            for (int y = 0; y < n - 1; ++y)
                for (int x = 0; x < n - 1; ++x) buffer[std::int64_t(y) * n + x] = src(y + (y >= i), x + (x >= j));
            Elimination<T> minor{buffer, p, n, threshold};
            const T pivots =
                minor.run(n - 1) ? minor.pivots : threshold; // a singular minor counts as the threshold, not as 0
            const T last = minor.row(n - 2)[n - 2];
            const T cofactor = abs(last) > threshold ? pivots * (last * T(minor.sign)) : threshold;
            dst(j, i) = cofactor * r * T((i + j) % 2 ? -1 : 1);
        }
    return keslStatusOk;
}

// The same on packs; false where a lane is singular, or a minor of it.
template <class T, class V, class N> [[gnu::always_inline]] inline bool invertOfTile(Tile<V> a, Tile<V> inverse, N n)
{
    V work[elementsOf<N>];
    const T threshold = singularBelow<T>(n);
    V pivots, sign;
    const auto copy = [&](auto size, auto element) KESL_INLINE {
        for (int y = 0; y < size; ++y)
            for (int x = 0; x < size; ++x) work[y * size + x] = element(y, x);
        return Tile<V>{work, size};
    };
    const Tile<V> whole = copy(n, a);
    if (!eliminate<false>(whole, n, threshold, pivots, sign)) return false;
    const V det = pivots * (sign * whole(n - 1, n - 1));
    if (any(threshold >= abs(det))) return false;
    const V r = T(1) / det;

    for (int i = 0; i < n; ++i)
        for (int j = 0; j < n; ++j) {
            const Tile<V> minor = copy(n - 1, [&](int y, int x) KESL_INLINE { return a(y + (y >= i), x + (x >= j)); });
            if (!eliminate<false>(minor, n - 1, threshold, pivots, sign)) return false;
            const V last = minor(n - 2, n - 2);
            const V cofactor = abs(last) > threshold ? pivots * (last * sign) : splat<V>(threshold);
            inverse(j, i) = cofactor * r * T((i + j) % 2 ? -1 : 1);
        }
    return true;
}
template <class T, class V> [[gnu::noinline]] bool invertTile(Tile<V> a, Tile<V> inverse, int n)
{
    return invertOfTile<T>(a, inverse, n);
}

} // namespace kesl
