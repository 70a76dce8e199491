// Products of matrices of any size, by tiles of accumulators: dst(i, j) = start + a(i, 0) * b(0, j) + a(i, 1) * b(1, j)
// ... in ascending order. A sum that starts at +0 ends as +0 where all its products are -0; one that starts at -0 is
// the sum without a start, to the last bit.
#pragma once
#include "products/rows.h"

namespace kesl {

template <class T> constexpr T plusZero = T(0);
template <class T> constexpr T noStart = -T(0);

// ---- An object as it is read, whether it is transposed or not: one type for strides, one for pointers of elements.
template <class T> struct ListedElements {
    T* const* list;
    std::int64_t shift, rowPitch, columnPitch;
    T& operator()(std::int64_t i, std::int64_t j) const { return *moved(list[i * rowPitch + j * columnPitch], shift); }
};
template <class T> Grid<T> along(Grid<T> g, std::int64_t bytes) { return {moved(g.p, bytes), g.stride1, g.stride2}; }
template <class T> ListedElements<T> along(ListedElements<T> c, std::int64_t bytes)
{
    return {c.list, c.shift + bytes, c.rowPitch, c.columnPitch};
}

// `width` is that of the matrix as it is stored. A vector is seen as a column.
template <class O> auto seen(const O& o, int k, [[maybe_unused]] int width)
{
    using T = std::remove_reference_t<decltype(o.object(0, 1, 1)(0, 0))>;
    constexpr bool vector = O::kind == Kind::vector, transposed = O::kind == Kind::transposed;
    if constexpr (O::form == P)
        return ListedElements<T>{o.p, o.shift + std::int64_t(k) * o.stride0, transposed || vector ? 1 : width,
                                 transposed ? width : !vector};
    else
        return Grid<T>{o.address(k), transposed || vector ? o.stride2 : o.stride1,
                       vector       ? 0
                       : transposed ? o.stride1
                                    : o.stride2};
}

// ---- R rows by one value of type V. An operand that `varies` is read as a pack: along j, or along the objects.
template <bool varies, class V> [[gnu::always_inline]] inline V valueIn(const auto& view, std::int64_t i, std::int64_t j)
{
    if constexpr (varies) return loadPack<V>(&view(i, j));
    else return splat<V>(view(i, j));
}
template <int R, class V, bool aVaries, bool bVaries>
[[gnu::always_inline]] inline void tile(ElementOf<V> start, auto a, auto b, auto dst, std::int64_t i, std::int64_t j, int K)
{
    V sum[R];
#pragma GCC unroll 4
    for (int r = 0; r < R; ++r) sum[r] = splat<V>(start);
    for (int k = 0; k < K; ++k) {
        const V x = valueIn<bVaries, V>(b, k, j);
#pragma GCC unroll 4
        for (int r = 0; r < R; ++r) sum[r] = sum[r] + valueIn<aVaries, V>(a, i + r, k) * x;
    }
#pragma GCC unroll 4
    for (int r = 0; r < R; ++r) storePack<V>(&dst(i + r, j), sum[r]);
}

// All columns of R rows: by packs of `bytes` and, for the rest, their halves.
template <int R, int bytes, bool packs, class T>
[[gnu::always_inline]] inline void columns(T start, auto a, auto b, auto dst, std::int64_t i, int j, int N, int K)
{
    using V = PackOrElement<T, bytes>;
    for (; j + lanes<V> <= N; j += lanes<V>) tile<R, V, false, packs>(start, a, b, dst, i, j, K);
    if constexpr (bytes > sizeof(T)) columns<R, bytes / 2, packs>(start, a, b, dst, i, j, N, K);
}

// body(Fixed<rows>, i) for M rows, four at a time.
[[gnu::always_inline]] inline void byFours(std::int64_t M, auto body)
{
    std::int64_t i = 0;
    for (; i + 4 <= M; i += 4) body(Fixed<4>{}, i);
    switch (M - i) {
    case 1: return body(Fixed<1>{}, i);
    case 2: return body(Fixed<2>{}, i);
    case 3: return body(Fixed<3>{}, i);
    }
}

// All n columns of R rows, where they are few.
template <int R, int n, class T>
[[gnu::always_inline]] inline void fewColumns(T start, auto a, auto b, auto dst, std::int64_t i, int K)
{
    using V = typename Row<T, n>::V;
    Row<T, n> sum[R];
#pragma GCC unroll 4
    for (auto& s : sum)
        for (V& v : s.v) v = splat<V>(start);
    for (int k = 0; k < K; ++k) {
        const auto x = Row<T, n>::from(&b(k, 0));
#pragma GCC unroll 4
        for (int r = 0; r < R; ++r)
            for (int p = 0; p < Row<T, n>::pieces; ++p) sum[r].v[p] = sum[r].v[p] + splat<V>(a(i + r, k)) * x.v[p];
    }
#pragma GCC unroll 4
    for (int r = 0; r < R; ++r) sum[r].to(&dst(i + r, 0));
}

// One product. `packs`: the rows of b and of dst are contiguous runs.
template <bool packs, class T, class A, class B, class Destination>
[[gnu::noinline]] void product(T start, A a, B b, Destination dst, std::int64_t M, int N, int K)
{
    byFours(M, [&](auto r, std::int64_t i) {
        columns<r, packs ? widest : int(sizeof(T)), packs>(start, a, b, dst, i, 0, N, K);
    });
}

// `count` of them, with n columns: objects first, first + stride0 bytes, ...; 0 for a single operand.
template <class T> struct Equidistant {
    Grid<T> first;
    std::int64_t stride0;
    Grid<T> operator()(int k) const { return along(first, k * stride0); }
};
template <class T> Equidistant<T> equidistant(const auto& o, int k, int width)
{
    if constexpr (o.form == S && o.isArray) return {seen(o, k, width), o.stride0};
    else return {seen(o, k, width), 0};
}
template <int n, class T> [[gnu::noinline]] void narrowProducts(T start, Equidistant<const T> a, Equidistant<const T> b,
                                                                Equidistant<T> dst, int count, std::int64_t M, int K)
{
    for (int k = 0; k < count; ++k)
        byFours(M, [&](auto r, std::int64_t i) KESL_INLINE { fewColumns<r, n>(start, a(k), b(k), dst(k), i, K); });
}

// One product of order n up to 6 that reads all of b before it stores anything: dst may lie on it.
template <class T> void productAfterReading(T start, auto a, auto b, auto dst, int n)
{
    T kept[6 * 6];
    for (int i = 0; i < n; ++i)
        for (int j = 0; j < n; ++j) kept[i * n + j] = b(i, j);
    product<false>(start, a, Grid<const T>{kept, n * std::int64_t(sizeof(T)), sizeof(T)}, dst, n, n, n);
}

// As many products as V has lanes, of objects that lie side by side.
template <class V, bool aVaries, bool bVaries, class Source, class Destination>
[[gnu::noinline]] void productOfLanes(ElementOf<V> start, Source a, Source b, Destination dst, int M, int N, int K)
{
    byFours(M, [&](auto r, std::int64_t i) {
        for (int j = 0; j < N; ++j) tile<r, V, aVaries, bVaries>(start, a, b, dst, i, j, K);
    });
}
// The same for square matrices of order n, a column at a time.
template <int n, class V, bool aVaries, bool bVaries, class Source, class Destination>
[[gnu::noinline]] void productOfLanes(Source a, Source b, Destination dst)
{
#pragma GCC unroll 1
    for (int j = 0; j < n; ++j) {
        V x[n];
#pragma GCC unroll 8
        for (int k = 0; k < n; ++k) x[k] = valueIn<bVaries, V>(b, k, j);
#pragma GCC unroll 8
        for (int i = 0; i < n; ++i) {
            V sum = valueIn<aVaries, V>(a, i, 0) * x[0];
#pragma GCC unroll 8
            for (int k = 1; k < n; ++k) sum = sum + valueIn<aVaries, V>(a, i, k) * x[k];
            storePack<V>(&dst(i, j), sum);
        }
    }
}

// body(V, bytes) for `count` objects that lie side by side: by the widest packs, then by those of 16 bytes, then one by
// one.
template <class T, int bytes = widest> [[gnu::always_inline]] inline void sideBySide(int done, int count, auto body)
{
    using V = PackOrElement<T, bytes>;
    for (; count - done >= lanes<V>; done += lanes<V>) body(V{}, done * std::int64_t(sizeof(T)));
    if constexpr (bytes > sizeof(T)) sideBySide<T, (bytes > 16 ? 16 : int(sizeof(T)))>(done, count, body);
}

} // namespace kesl
