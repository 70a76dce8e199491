// Square matrices of order 3 to 6 times vectors: by packs of objects, four objects at a time, one by one; and many vectors
// by one matrix as rows of a tall one.
#pragma once
#include "products/factors.h"
#include "products/records.h"
#include "products/tiles.h"

namespace kesl {

// ---- By packs of objects.
template <bool fromZero, int n, class D> KESL_ONCE void timesVectors(auto a, auto x, D dst, int count)
{
    using T = typename D::Element;
    withRuns<n>(
        [&](auto from, auto to) {
            eachPack<T>(count, [&]<class V>(Objects<V> k) KESL_INLINE {
                const auto vector = load<1, n>(from, k); // first: the matrix needs most of the registers
                const auto matrix = load<n, n>(a, k);
                if constexpr (fromZero) store(to, k, timesVector<0>(matrix, vector, plusZero<T>));
                else store(to, k, timesVector<0>(matrix, vector));
            });
        },
        x, dst);
}

// Order 4, four objects at a time, for packs of two rows or of four: the products of their elements are brought into the
// order of the terms, and the sums then from rows into objects.
template <class V> struct ByGroups { // of four lanes
    template <int a, int b, bool pairs> struct Of {
        // lanes a and b of a group, each from both sources; or, for pairs, these and the next
        static constexpr int of(int l)
        {
            const int group = l / 4 * 4, other = lanes<V>;
            return pairs ? group + a + l % 2 + (l % 4 / 2) * other : group + (l % 4 / 2 ? b : a) + l % 2 * other;
        }
    };
    [[gnu::always_inline]] static void transpose(V* x)
    {
        constexpr int n = lanes<V>;
        const V a = shuffled<Of<0, 1, false>, n>(x[0], x[1]), b = shuffled<Of<2, 3, false>, n>(x[0], x[1]);
        const V c = shuffled<Of<0, 1, false>, n>(x[2], x[3]), d = shuffled<Of<2, 3, false>, n>(x[2], x[3]);
        x[0] = shuffled<Of<0, 0, true>, n>(a, c), x[1] = shuffled<Of<2, 2, true>, n>(a, c);
        x[2] = shuffled<Of<0, 0, true>, n>(b, d), x[3] = shuffled<Of<2, 2, true>, n>(b, d);
    }
    static V repeated([[maybe_unused]] const ElementOf<V>* p)
    {
#if defined(__AVX512F__)
        if constexpr (sizeof(*p) == 4) return V(_mm512_broadcast_f32x4(_mm_loadu_ps(p)));
        else return V(_mm512_broadcast_f64x4(_mm256_loadu_pd(p)));
#else
        return V{};
#endif
    }
};
// Element (row, object) in lane row * 4 + object, to lane object * 4 + row, from `first` on.
template <int first> struct RowsToObjects {
    static constexpr int of(int l) { return (l + first) % 4 * 4 + (l + first) / 4; }
};
template <bool fromZero, class T> [[gnu::always_inline]] inline int fourObjects(auto a, auto x, auto dst, int count)
{
    using V = Pack<T>;
    constexpr int parts = 16 / lanes<V>; // of an object
    int k = 0;
    for (; k + 4 <= count; k += 4) {
        V sum[parts];
#pragma GCC unroll 2
        for (int p = 0; p < parts; ++p) {
            V term[4];
#pragma GCC unroll 4
            for (int o = 0; o < 4; ++o)
                term[o] = loadPack<V>(a.address(k + o) + p * lanes<V>) * ByGroups<V>::repeated(x.address(k + o));
            ByGroups<V>::transpose(term);
            sum[p] = begun<fromZero>(term[0]) + term[1];
            sum[p] = (sum[p] + term[2]) + term[3];
        }
        T* const to = dst.address(k);
        if constexpr (parts == 1) storePack<V>(to, shuffled<RowsToObjects<0>, 16>(sum[0], sum[0]));
        else {
            storePack<V>(to, shuffled<RowsToObjects<0>, 8>(sum[0], sum[1]));
            storePack<V>(to + 8, shuffled<RowsToObjects<8>, 8>(sum[0], sum[1]));
        }
    }
    return k;
}

// One object of doubles of order 5 or 6, two rows at a time, whose pairs of elements change places: less than it takes to
// bring as many objects as a pack has lanes into their lanes.
template <bool fromZero, int n, class T> [[gnu::always_inline]] inline void timesByPairs(auto a, const T* x, T* dst)
{
    using Pair = Pack<T, 2 * sizeof(T)>;
    T y[n + 1];
#pragma GCC unroll 3
    for (int i = 0; i < n; i += 2) {
        const int below = std::min(i + 1, n - 1); // of an odd order the last row is its own neighbour
        Pair sum;
#pragma GCC unroll 3
        for (int j = 0; j + 1 < n; j += 2) {
            const Pair upper = loadPack<Pair>(a.row(i) + j), lower = loadPack<Pair>(a.row(below) + j);
            const Pair product = shuffled<OfPairs<0>, 2>(upper, lower) * splat<Pair>(x[j]);
            sum = j == 0 ? begun<fromZero>(product) : sum + product;
            sum = sum + shuffled<OfPairs<1>, 2>(upper, lower) * splat<Pair>(x[j + 1]);
        }
        if constexpr (n % 2 == 1) sum = sum + Pair{a(i, n - 1), a(below, n - 1)} * splat<Pair>(x[n - 1]);
        storePack(y + i, sum);
    }
#pragma GCC unroll 6
    for (int i = 0; i < n; ++i) dst[i] = y[i];
}
// The matrix as the right factor of vectors that are rows.
template <class A> struct Flipped {
    const A& a;
    auto operator()(int i, int j) const { return a(j, i); }
};

// Vectors without any gap go as the rows of a tall matrix, but not those of three doubles by packs of eight, where shuffles within the
// whole pack and stores across cache lines cost more than sorting the elements.
template <int n, class T> constexpr bool asRows = !(n == 3 && sizeof(T) == 8 && widest == 64);

} // namespace kesl
