// Products of matrices of any size, by tiles of accumulators: dst(i, j) = start + a(i, 0) * b(0, j) + a(i, 1) * b(1, j)
// ... in ascending order.
#pragma once
#include "products/rows.h"

namespace kesl {

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
template <bool packs, class T, template <class> class View>
[[gnu::noinline]] void product(T start, View<const T> a, View<const T> b, View<T> dst, std::int64_t M, int N, int K)
{
    byFours(M, [&](auto r, std::int64_t i) {
        columns<r, packs ? widest : int(sizeof(T)), packs>(start, a, b, dst, i, 0, N, K);
    });
}

// `count` of them, with n columns.
template <int n, class T> KESL_ONCE void narrowProducts(T start, const Anywhere<const T>& a, const Anywhere<const T>& b,
                                                        const Anywhere<T>& dst, int count, std::int64_t M, int K)
{
    for (int k = 0; k < count; ++k) {
        const auto x = gridOf(a, k), y = gridOf(b, k);
        const auto to = gridOf(dst, k);
        byFours(M, [&](auto r, std::int64_t i) KESL_INLINE { fewColumns<r, n>(start, x, y, to, i, K); });
    }
}

constexpr bool areNarrow(int columns) { return columns >= 3 && columns <= 8; }
template <class T> [[gnu::noinline]] void narrowProducts(const Anywhere<const T>& a, const Anywhere<const T>& b,
                                                         const Anywhere<T>& dst, int count, std::int64_t M, int K, int N)
{
    const auto of = [&](auto n) KESL_INLINE { narrowProducts<n>(plusZero<T>, a, b, dst, count, M, K); };
    if (N == 7) of(Fixed<7>{});
    else if (N == 8) of(Fixed<8>{});
    else
        withOrder(N, [&](auto n) KESL_INLINE {
            if constexpr (n > 0) of(n);
        });
}

// As many products as V has lanes, of objects that lie side by side.
template <class V, bool aVaries, bool bVaries, class T, template <class> class View>
[[gnu::noinline]] void productOfLanes(T start, View<const T> a, View<const T> b, View<T> dst, int M, int N, int K)
{
    byFours(M, [&](auto r, std::int64_t i) {
        for (int j = 0; j < N; ++j) tile<r, V, aVaries, bVaries>(start, a, b, dst, i, j, K);
    });
}

// The same for square matrices of order n, a column at a time.
template <int n, class V, bool aVaries, bool bVaries> [[gnu::noinline]] void productOfLanes(auto a, auto b, auto dst)
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

// ---- Compiled once (contiguous_32f.cpp, contiguous_64f.cpp).
// clang-format off
#ifdef __AVX2__
#define KESL_FLOAT_PACKS(X, ...) X(__VA_ARGS__, Pack<float>) X(__VA_ARGS__, Four<float>)
#else
#define KESL_FLOAT_PACKS(X, ...) X(__VA_ARGS__, Pack<float>)
#endif
#ifdef __AVX512F__
#define KESL_DOUBLE_PACKS(X, ...) X(__VA_ARGS__, Pack<double>) X(__VA_ARGS__, Four<double>)
#else
#define KESL_DOUBLE_PACKS(X, ...) X(__VA_ARGS__, Pack<double>)
#endif
#define KESL_PRODUCT_FUNCTION(how, packs, T, View) \
    how template void product<packs, T, View>(T, View<const T>, View<const T>, View<T>, std::int64_t, int, int);
#define KESL_NARROW_FUNCTION(how, T) \
    how template void narrowProducts<T>(const Anywhere<const T>&, const Anywhere<const T>&, const Anywhere<T>&, int, std::int64_t, int, int);
#define KESL_LANES_FUNCTION(how, T, a, b, View, V) \
    how template void productOfLanes<V, a, b>(T, View<const T>, View<const T>, View<T>, int, int, int);
#define KESL_LANES_FUNCTIONS(how, T, V)                                                                             \
    KESL_LANES_FUNCTION(how, T, true, true, Grid, V)  KESL_LANES_FUNCTION(how, T, true, true, ListedElements, V)      \
    KESL_LANES_FUNCTION(how, T, true, false, Grid, V) KESL_LANES_FUNCTION(how, T, true, false, ListedElements, V)     \
    KESL_LANES_FUNCTION(how, T, false, true, Grid, V) KESL_LANES_FUNCTION(how, T, false, true, ListedElements, V)
#define KESL_TILE_FUNCTIONS(how, T, PACKS)                                                                          \
    KESL_PRODUCT_FUNCTION(how, true, T, Grid) KESL_PRODUCT_FUNCTION(how, false, T, Grid)                              \
    KESL_PRODUCT_FUNCTION(how, false, T, ListedElements)                                                              \
    KESL_NARROW_FUNCTION(how, T)                                                                                      \
    PACKS(KESL_LANES_FUNCTIONS, how, T)
KESL_TILE_FUNCTIONS(extern, float, KESL_FLOAT_PACKS)
KESL_TILE_FUNCTIONS(extern, double, KESL_DOUBLE_PACKS)
// clang-format on

} // namespace kesl
