// Vectors of n elements for bodies so short that they should not ask for each pack how its objects lie.
#pragma once
#include "frame/array_blocks.h"

namespace kesl {

template <int n, class T> struct VectorRun {
    T* p;
    T* operator()(int k) const { return p + std::int64_t(k) * n; }
};
template <int n, class T> struct VectorsSideBySide {
    T* p[n];
    explicit VectorsSideBySide(const Array<T>& a)
    {
        for (int i = 0; i < n; ++i) p[i] = a.element(0, 0, i);
    }
};
template <class V, int n>
[[gnu::always_inline]] inline void load(const VectorRun<n, const ElementOf<V>>& src, Objects<V> k, Block<V, 1, n>& x)
{
    if constexpr (lanes<V> == 1) eachElement<1, n>([&](int, int i) KESL_INLINE { x(0, i) = src(k.first)[i]; });
    else loadTable<n>(src(k.first), x.e[0]);
}
template <class V, int n>
[[gnu::always_inline]] inline void store(const VectorRun<n, ElementOf<V>>& dst, Objects<V> k, const Block<V, 1, n>& x)
{
    if constexpr (lanes<V> == 1) eachElement<1, n>([&](int, int i) KESL_INLINE { dst(k.first)[i] = x(0, i); });
    else storeTable<n>(dst(k.first), x.e[0]);
}
template <class V, int n>
[[gnu::always_inline]] inline void load(const VectorsSideBySide<n, const ElementOf<V>>& src, Objects<V> k, Block<V, 1, n>& x)
{
    eachElement<1, n>([&](int, int i) KESL_INLINE { x(0, i) = loadPack<V>(src.p[i] + k.first); });
}
template <class V, int n> [[gnu::always_inline]] inline void store(const VectorsSideBySide<n, ElementOf<V>>& dst,
                                                                   Objects<V> k, const Block<V, 1, n>& x)
{
    eachElement<1, n>([&](int, int i) KESL_INLINE { storePack<V>(dst.p[i] + k.first, x(0, i)); });
}
// f(src, dst) with what load and store take.
template <int n, class T>
[[gnu::always_inline]] inline void withVectors(int count, auto f, const Array<const T>& src, const Array<T>& dst)
{
    const auto both = [&](Lie lie) { return src.lie == lie && dst.lie == lie; };
    if (both(Lie::run)) f(VectorRun<n, const T>{src.first}, VectorRun<n, T>{dst.first});
    else if (both(Lie::sideBySide)) f(VectorsSideBySide<n, const T>(src), VectorsSideBySide<n, T>(dst));
    else f(InPacks(src, count), InPacks(dst, count));
}

} // namespace kesl
