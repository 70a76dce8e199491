// The inverse by the adjugate (the transposed matrix of cofactors) times the reciprocal of the determinant: closed forms
// for orders 3 to 6, and for the others an elimination for each cofactor.
#pragma once
#include "frame/constants.h"
#include "frame/objects.h"

#include <array>
#include <bit>

namespace kesl {

// A determinant or pivot below this counts as zero: 2 n^3 smallest normal numbers, the integer wrapped to 32 bits.
template <class T> constexpr T singularBelow(int n)
{
    const unsigned u = unsigned(n);
    return T(int(2 * u * u * u)) * Precision<T>::smallest;
}

// ---- Orders 3 to 6, by Laplace's expansion: the minors of more columns from those of fewer, each once.

// A set of rows is a bit mask. Its rows, the last one first:
template <int rows> constexpr auto descending = [] {
    std::array<int, std::popcount(unsigned(rows))> list{};
    for (int r = 31, i = 0; r >= 0; --r)
        if (rows >> r & 1) list[i++] = r;
    return list;
}();

// The minors of n rows: m[rows] belongs to as many columns as the set has rows.
template <int n, class V> struct Minors {
    V m[1 << n];

    // The determinant of `rows` and a column in front of those of m, expanded along this column from the last row to the
    // first, with alternating signs. An even number of rows begins with a minus, which is left to the second term.
    template <int rows, int column> [[gnu::always_inline]] V expanded(const Block<V, n, n>& a) const
    {
        constexpr auto row = descending<rows>;
        constexpr int size = int(row.size());
        const auto term = [&](auto i) KESL_INLINE { return a(row[i], column) * m[rows & ~(1 << row[i])]; };
        V sum = size % 2 ? term(Fixed<0>{}) : term(Fixed<1>{}) - term(Fixed<0>{});
        [&]<int... i>(std::integer_sequence<int, i...>) KESL_INLINE {
            constexpr int done = size % 2 ? 1 : 2;
            ((sum = i % 2 ? sum + term(Fixed<i + done>{}) : sum - term(Fixed<i + done>{})), ...);
        }(std::make_integer_sequence<int, size - (size % 2 ? 1 : 2)>{});
        return sum;
    }
    // The minors of `size` columns, the first of which is `column`, from those of the others.
    template <int size, int column> [[gnu::always_inline]] void join(const Block<V, n, n>& a)
    {
        [&]<int... rows>(std::integer_sequence<int, rows...>) KESL_INLINE {
            (
                [&]() KESL_INLINE {
                    if constexpr (std::popcount(unsigned(rows)) != size) return;
                    else if constexpr (size == 1) m[rows] = a(std::countr_zero(unsigned(rows)), column);
                    else m[rows] = expanded<rows, column>(a);
                }(),
                ...);
        }(std::make_integer_sequence<int, (1 << n)>{});
    }
    // Minors of all columns but `skipped`: those of the columns behind it are there already.
    template <int skipped> [[gnu::always_inline]] void skip(const Block<V, n, n>& a)
    {
        constexpr int first = skipped ? skipped - 1 : n - 1, last = skipped ? 0 : 1;
        constexpr int size = skipped ? n - skipped : 1; // with column `first`
        [&]<int... i>(std::integer_sequence<int, i...>)
            KESL_INLINE { (join<size + i, first - i>(a), ...); }(std::make_integer_sequence<int, first - last + 1>{});
    }
};

// False, and nothing else done, where the matrix is singular (in any lane).
template <class T, int n, class V>
[[gnu::always_inline]] inline bool invertClosed(const Block<V, n, n>& a, Block<V, n, n>& inverse)
{
    constexpr int all = (1 << n) - 1;
    Minors<n, V> minors;
    minors.template skip<0>(a);
    const V det = minors.template expanded<all, 0>(a);
    if (any(singularBelow<T>(n) > abs(det))) return false; // a NaN passes
    const V r = T(1) / det;
    [&]<int... j>(std::integer_sequence<int, j...>) KESL_INLINE {
        (
            [&]() KESL_INLINE {
                if constexpr (j > 0) minors.template skip<j>(a);
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

// src and dst are views of order n; the buffer holds n * n elements and, behind them, n row numbers.
template <class T> KeslStatus invertCommon(auto src, T* buffer, auto dst, int n)
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

} // namespace kesl
