// keslDet: the determinant of one matrix, or of each matrix of an array.
#pragma once
#include "frame/any_order.h"
#include "frame/arguments.h"
#include "frame/call.h"
#include "frame/objects.h"
#include "solvers/adjugate.h"

// clang-format off
#define KESL_DET(as, F, T, k)                                                                                       \
    as##_in(k, src, F, T), as##_size(widthHeight), as##_buffer(buffer, T), as##_table(KESL_T_##T, dst, 1)
#define KESL_DETS(as, F, T, k) KESL_DET(as, F, T, k), as##_count(count)
// clang-format on

namespace kesl {

// ---- Orders 3 to 6, by Laplace's expansion along the last row: the minors of the upper rows from those of fewer, each once.
// There is no test.

// A set of columns is a bit mask; m[columns] belongs to as many of the upper rows as the set has columns. Along the row
// below, from the last column to the first, with alternating signs.
template <int n> constexpr auto upperTerms = [] {
    Terms<n> terms;
    for (int size = 1; size <= n; ++size)
        for (int columns = 1; columns < 1 << n; ++columns)
            if (std::popcount(unsigned(columns)) == size)
                for (int t = 0; t < size; ++t) {
                    const int column = Members(columns).list[t];
                    const auto sign = t == 0 ? Term::first : t % 2 ? Term::minus : Term::plus;
                    terms.term[terms.count++] = {columns, columns & ~(1 << column), size - 1, column, sign};
                }
    return terms;
}();
template <int n, class V> [[gnu::always_inline]] inline V detClosed(const Block<V, n, n>& a)
{
    Minors<n, V> minors;
    minors.template join<upperTerms<n>>(a);
    return minors.m[(1 << n) - 1];
}
// Orders 5 and 6 are long: one copy serves all kernels.
template <int n, class V> [[gnu::noinline]] V detLong(const Block<V, n, n>& a) { return detClosed<n>(a); }

// ---- Other orders, by Gaussian elimination with partial pivoting through a table of rows. The buffer holds the matrix and,
// behind it, the table. A singular matrix is no failure: alone it has the determinant 0; in an array the product so far and
// the last element are multiplied with a sign of 0, which gives a zero of either sign, or NaN where they are not finite.
template <class T, bool array> [[gnu::noinline]] T detCommon(const auto& src, T* buffer, int n)
{
    const T threshold = singularBelow<T>(n);
    int* const p = reinterpret_cast<int*>(buffer + std::int64_t(n) * n);
    const auto row = [&](int i) { return buffer + std::int64_t(p[i]) * n; };

    for (int i = 0; i < n; ++i) p[i] = i;
    for (int i = 0; i < n; ++i)
        for (int j = 0; j < n; ++j) row(i)[j] = src(i, j);
    T result = 1;
    int sign = 1;
    for (int k = 0; k < n - 1; ++k) {
        T best = abs(row(k)[k]);
        int q = k;
        for (int i = k + 1; i < n; ++i)
            if (const T x = abs(row(i)[k]); x > best) best = x, q = i;
        if (q != k) std::swap(p[q], p[k]), sign = -sign;
        if (threshold > best) { // a NaN passes
            if constexpr (!array) return 0;
            sign = 0;
            break;
        }
        const T* const rk = row(k);
        const T pivot = rk[k];
        for (int i = k + 1; i < n; ++i) {
            T* const ri = row(i);
            const T f = ri[k] / pivot;
#pragma GCC ivdep
            for (int j = k + 1; j < n; ++j) ri[j] = ri[j] - rk[j] * f;
        }
        result = pivot * result;
    }
    const T last = row(n - 1)[n - 1];
    return abs(last) > threshold ? result * (last * T(sign)) : 0; // a NaN is 0
}

// The same on packs; false where a lane is singular.
template <class T, class V> [[gnu::always_inline]] inline bool detOfTile(Tile<V> a, auto n, V& det)
{
    V product, sign;
    if (!eliminate<true>(a, n, singularBelow<T>(n), product, sign)) return false;
    const V last = a(n - 1, n - 1);
    det = abs(last) > singularBelow<T>(n) ? product * (last * sign) : V{};
    return true;
}
template <class T, class V> [[gnu::noinline]] bool detTile(Tile<V> a, int n, V& det) { return detOfTile<T>(a, n, det); }

// ---- The family.
struct Det {
    static constexpr Threshold threshold = thresholds::usual;

    template <class T, int n> [[gnu::noinline]] static void fixed(const Array<const T>& from, Table<T> dst, int count)
    {
        const InPacks src(from, count);
        eachPack<T>(count, [&]<class V>(Objects<V> k) KESL_INLINE {
            Block<V, n, n> a;
            load(src, k, a);
            storePack<V>(dst.object(k.first), n < 5 ? detClosed<n>(a) : detLong<n>(a));
        });
    }
    template <class T, class N>
    [[gnu::noinline]] static void other(const Array<const T>& from, N order, T* buffer, Table<T> dst, int count)
    {
        const InPacks src(from, count);
        eachTile<T>(order, order, count, src, [&]<class V>(Objects<V> k) KESL_INLINE -> KeslStatus {
            if constexpr (lanes<V> == 1)
                withRowViews(
                    k.first, [&](auto a) { *dst.object(k.first) = detCommon<T, true>(a, buffer, order); }, src);
            else {
                V elements[elementsOf<N>], det;
                const Tile<V> a{elements, order};
                load(src, k, a, order);
                if (!(isFixed<N> ? detOfTile<T>(a, order, det) : detTile<T>(a, order, det))) return keslStatusSingular;
                storePack<V>(dst.object(k.first), det);
            }
            return keslStatusOk;
        });
    }
    template <class T>
    [[gnu::noinline]] static void all(const Array<const T>& src, int order, T* buffer, Table<T> dst, int count)
    {
        withOrder(order, [&](auto n) {
            if constexpr (n > 0) fixed<T, n>(src, dst, count);
            else withTileOrder(order, [&](auto size) { other<T>(src, size, buffer, dst, count); });
        });
    }

    template <class T, Form>
    [[gnu::always_inline]] static KeslStatus kernel(auto src, Size order, Buffer<T> buffer, Table<T> dst, Count count)
    {
        all<T>({src, order, order}, order, buffer, dst, count);
        return keslStatusOk;
    }
    template <class T, Form>
    [[gnu::always_inline]] static KeslStatus kernel(auto src, Size order, Buffer<T> buffer, Table<T> dst, One)
    {
        withOrder(order, [&](auto n) {
            if constexpr (n == 0) *dst.p = detCommon<T, false>(src.object(0, order, order), buffer.p, order);
            else {
                const auto a = load<n, n>(src, Objects<T>{0});
                *dst.p = n < 5 ? detClosed<n>(a) : detLong<n>(a);
            }
        });
        return keslStatusOk;
    }
};

// clang-format off
// ---- The members.
struct Det_m : Det {};
struct Det_ma : Det {
    static unsigned measure(unsigned n, unsigned count) { return n * count; }
    static std::size_t scratch(std::size_t n, std::size_t) { return n * n + n; } // elements for a thread
};

} // namespace kesl

// ---- Their functions, by module.
#define KESL_DET_M(X)  X(Det, m, KESL_DET, m)
#define KESL_DET_MA(X) X(Det, ma, KESL_DETS, ma)
