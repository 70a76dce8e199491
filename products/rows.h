// Square products of order 3 to 6 by rows: dst(i, all) = a(i, 0) * b(0, all) + a(i, 1) * b(1, all) + ...
// The rows of b stand in registers, and the elements of a are broadcast.
#pragma once
#include "frame/map.h"

#include <bit>

namespace kesl {

// The first n elements of a pack, at p: by halves, none behind them is touched. Masked loads would be as fast in cache,
// but out of it they take three times as long.
template <int from> struct Upward {
    static constexpr int of(int l) { return from + l; }
};
template <int n, class V> [[gnu::always_inline]] inline V loadFirst(const ElementOf<V>* p)
{
    if constexpr (n == lanes<V>) return loadPack<V>(p);
    else if constexpr (n == 1) return V{*p};
    else {
        constexpr int half = lanes<V> / 2;
        using Half = Pack<ElementOf<V>, sizeof(V) / 2>;
        const auto low = loadFirst<std::min(n, half), Half>(p);
        if constexpr (n > half) return shuffled<Upward<0>, lanes<V>>(low, loadFirst<n - half, Half>(p + half));
        else return shuffled<Upward<0>, lanes<V>>(low, Half{});
    }
}
template <int n, class V> [[gnu::always_inline]] inline void storeFirst(ElementOf<V>* p, V x)
{
    if constexpr (n == lanes<V>) storePack<V>(p, x);
    else if constexpr (n == 1) *p = x[0];
    else {
        constexpr int half = lanes<V> / 2;
        storeFirst<std::min(n, half)>(p, shuffled<Upward<0>, half>(x, x));
        if constexpr (n > half) storeFirst<n - half>(p + half, shuffled<Upward<half>, half>(x, x));
    }
}

// A row of n elements, in one pack or, where packs are shorter, in several; the last one ends with the row.
template <class T, int n> struct Row {
    static constexpr int width = std::min(int(std::bit_ceil(unsigned(n))), widest / int(sizeof(T)));
    using V = Pack<T, width * sizeof(T)>;
    static constexpr int pieces = (n + width - 1) / width, used = std::min(n, width);
    static constexpr int at(int piece) { return piece + 1 < pieces ? piece * width : n - used; }
    V v[pieces];

    // From n contiguous elements, and from elements that lie anywhere.
    [[gnu::always_inline]] static Row from(const T* p)
    {
        Row x;
#pragma GCC unroll 4
        for (int i = 0; i < pieces; ++i) x.v[i] = loadFirst<used, V>(p + at(i));
        return x;
    }
    [[gnu::always_inline]] static Row gathered(auto element)
    {
        Row x;
#pragma GCC unroll 4
        for (int i = 0; i < pieces; ++i)
            x.v[i] = [&]<int... l>(std::integer_sequence<int, l...>) {
                return V{element(at(i) + std::min(l, used - 1))...};
            }(std::make_integer_sequence<int, width>{});
        return x;
    }
    [[gnu::always_inline]] void to(T* p) const
    {
#pragma GCC unroll 4
        for (int i = 0; i < pieces; ++i) storeFirst<used>(p + at(i), v[i]);
    }
};

// The order in which the n terms of a sum are added: the last `ahead` of them, downward, and then the others, upward.
constexpr int term(int k, int n, int ahead) { return k < ahead ? n - 1 - k : k - ahead; }

// How a sum begins: with its first product, or at zero. One that starts at +0 ends as +0 where all its products are -0; one
// that starts at -0 is the sum without a start, to the last bit.
template <class T> constexpr T plusZero = T(0);
template <class T> constexpr T noStart = -T(0);
template <bool fromZero, class V> [[gnu::always_inline]] inline V begun(V product)
{
    if constexpr (fromZero) return V{} + product;
    else return product;
}

// The product of row i of a and the rows of b.
template <bool fromZero, int ahead, class T, int n>
[[gnu::always_inline]] inline Row<T, n> rowTimes(auto a, int i, const Row<T, n>* b)
{
    Row<T, n> sum;
    using V = typename Row<T, n>::V;
#pragma GCC unroll 4
    for (int p = 0; p < Row<T, n>::pieces; ++p) {
        sum.v[p] = begun<fromZero>(splat<V>(a(i, term(0, n, ahead))) * b[term(0, n, ahead)].v[p]);
#pragma GCC unroll 8
        for (int k = 1; k < n; ++k) sum.v[p] = sum.v[p] + splat<V>(a(i, term(k, n, ahead))) * b[term(k, n, ahead)].v[p];
    }
    return sum;
}

// ---- Many rows of n elements, one behind another, each times b: as many at once as a pack holds.

// Lane l of a pack of rows: element k of its row.
template <int n, int k, int lanes> struct InItsRow {
    static constexpr int of(int l) { return std::min(l / n * n + k, lanes - 1); }
};
template <bool fromZero, int ahead, int n, class V> [[gnu::always_inline]] inline V rowsTimes(V a, const V* b)
{
    V sum = begun<fromZero>(shuffled<InItsRow<n, term(0, n, ahead), lanes<V>>, lanes<V>>(a, a) * b[term(0, n, ahead)]);
    [&]<int... k>(std::integer_sequence<int, k...>) {
        ((sum = sum + shuffled<InItsRow<n, term(k + 1, n, ahead), lanes<V>>, lanes<V>>(a, a) * b[term(k + 1, n, ahead)]),
         ...);
    }(std::make_integer_sequence<int, n - 1>{});
    return sum;
}

// finish(sum, e) is stored in place of the sum at element e; it is for a pack that holds whole rows, or for one row.
// b(k, j) is element j of row k.
struct AsItIs {
    auto operator()(auto sum, std::int64_t) const { return sum; }
};
template <bool fromZero, int ahead, int n, class T, class Finish = AsItIs>
[[gnu::always_inline]] inline void tallProduct(const T* a, auto b, T* dst, std::int64_t rows, Finish finish = {})
{
    using V = Pack<T>;
    constexpr int atOnce = lanes<V> / n;
    const std::int64_t all = rows * n;
    std::int64_t e = 0;
    if constexpr (atOnce >= 2)
        if (all >= 2 * lanes<V>) {
            V repeated[n];
#pragma GCC unroll 8
            for (int k = 0; k < n; ++k)
                repeated[k] = [&]<int... l>(std::integer_sequence<int, l...>) {
                    return V{b(k, l % n)...};
                }(std::make_integer_sequence<int, lanes<V>>{});
            // The lanes behind the last whole row are written anew by the next step.
            for (; e + lanes<V> <= all; e += atOnce * n)
                storePack<V>(dst + e, finish(rowsTimes<fromZero, ahead, n>(loadPack<V>(a + e), repeated), e));
        }
    Row<T, n> row[n];
#pragma GCC unroll 8
    for (int k = 0; k < n; ++k) row[k] = Row<T, n>::gathered([&](int j) { return b(k, j); });
    for (; e < all; e += n) finish(rowTimes<fromZero, ahead>([&](int, int k) { return a[e + k]; }, 0, row), e).to(dst + e);
}

} // namespace kesl
