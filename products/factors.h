// Square products of order 3 to 6 of operands that lie anywhere: a body for each element type and order, reached from all shapes
// and layouts but those that have a road of their own.
#pragma once
#include "frame/array_vectors.h"
#include "products/rows.h"

namespace kesl {

// A factor as it is stored: an array, or one object that serves for all.
template <class T> struct Factor {
    Array<const T> stored;
    bool isArray, isTransposed;
};
template <class T, Kind kind, bool array, Form F>
Factor<T> factor(const Operand<const T, kind, array, F>& o, int height, int width)
{
    return {{o, height, width}, array, kind == Kind::transposed};
}

// One object, the same in each lane; of an array it is nothing.
template <class T, int height, int width> struct Single {
    Block<T, height, width> e;
    explicit Single(const Factor<T>& f)
    {
        for (int i = 0; i < height && !f.isArray; ++i)
            for (int j = 0; j < width; ++j)
                e(i, j) = *(f.isTransposed ? f.stored.element(0, j, i) : f.stored.element(0, i, j));
    }
};
template <class V, int height, int width> [[gnu::always_inline]] inline void
load(const Single<ElementOf<V>, height, width>& src, Objects<V>, Block<V, height, width>& x)
{
    eachElement<height, width>([&](int i, int j) KESL_INLINE { x(i, j) = splat<V>(src.e(i, j)); });
}

// A factor in a loop over packs.
template <class T, int height, int width> struct FactorInPacks {
    bool isArray, isTransposed;
    InPacks<const T> objects;
    Single<T, height, width> single;

    FactorInPacks(const Factor<T>& f, int count)
        : isArray(f.isArray), isTransposed(f.isTransposed), objects(f.stored, isArray ? count : 0), single(f)
    {
    }
};
template <class V, int height, int width> [[gnu::always_inline]] inline void
load(const FactorInPacks<ElementOf<V>, height, width>& src, Objects<V> k, Block<V, height, width>& x)
{
    if (!src.isArray) return load(src.single, k, x);
    load(src.objects, k, x);
    if constexpr (height == width)
        if (src.isTransposed)
            eachElement<height, width>([&](int i, int j) KESL_INLINE {
                if (i < j) std::swap(x(i, j), x(j, i));
            });
}

// ---- Matrices times matrices. Sums begin with their first product, or at `start`.
template <int n, class V>
[[gnu::always_inline]] inline Block<V, n, n> times(const Block<V, n, n>& a, const Block<V, n, n>& b, auto... start)
{
    Block<V, n, n> x;
    eachElement<n, n>([&](int i, int j) {
        V sum = (splat<V>(start) + ... + (a(i, 0) * b(0, j)));
#pragma GCC unroll 8
        for (int k = 1; k < n; ++k) sum = sum + a(i, k) * b(k, j);
        x(i, j) = sum;
    });
    return x;
}
template <int n, class T> [[gnu::noinline]] void productsAnywhere(T start, const Factor<T>& first, const Factor<T>& second,
                                                                  const Array<T>& to, int count)
{
    const FactorInPacks<T, n, n> left(first, count), right(second, count);
    const InPacks dst(to, count);
    eachPack<T>(count, [&]<class V>(Objects<V> k) KESL_INLINE {
        Block<V, n, n> a, b;
        load(left, k, a), load(right, k, b);
        store(dst, k, times(a, b, start));
    });
}

// ---- Matrices times vectors: the products of the last `ahead` columns first.
template <int ahead, int n, class V>
[[gnu::always_inline]] inline Block<V, 1, n> timesVector(const Block<V, n, n>& a, const Block<V, 1, n>& x, auto... start)
{
    Block<V, 1, n> y;
#pragma GCC unroll 8
    for (int i = 0; i < n; ++i) {
        y(0, i) = (splat<V>(start) + ... + (a(i, term(0, n, ahead)) * x(0, term(0, n, ahead))));
#pragma GCC unroll 8
        for (int k = 1; k < n; ++k) y(0, i) = y(0, i) + a(i, term(k, n, ahead)) * x(0, term(k, n, ahead));
    }
    return y;
}
template <int n, class T> [[gnu::noinline]] void
vectorProductsAnywhere(T start, const Factor<T>& matrices, const Factor<T>& vectors, const Array<T>& to, int count)
{
    const FactorInPacks<T, n, n> left(matrices, count);
    const FactorInPacks<T, 1, n> right(vectors, count);
    const InPacks dst(to, count);
    eachPack<T>(count, [&]<class V>(Objects<V> k) KESL_INLINE {
        Block<V, n, n> a;
        Block<V, 1, n> x;
        load(left, k, a), load(right, k, x);
        store(dst, k, timesVector<0>(a, x, start));
    });
}
// Vectors by one matrix, whose layout is asked once.
template <int n, class T> [[gnu::noinline]] void
vectorsByOneAnywhere(T start, const Factor<T>& matrix, const Array<const T>& from, const Array<T>& to, int count)
{
    const Single<T, n, n> left(matrix);
    const auto all = [&](const auto& src, const auto& dst) KESL_INLINE {
        eachPack<T>(count, [&]<class V>(Objects<V> k) KESL_INLINE {
            Block<V, n, n> a;
            Block<V, 1, n> x;
            load(left, k, a), load(src, k, x);
            store(dst, k, timesVector<0>(a, x, start));
        });
    };
    withVectors<n>(count, all, from, to);
}

template <int n, class V> [[gnu::always_inline]] inline Block<V, 1, n> plus(Block<V, 1, n> x, const Block<V, 1, n>& y)
{
#pragma GCC unroll 8
    for (int i = 0; i < n; ++i) x(0, i) = x(0, i) + y(0, i);
    return x;
}
// ... and a vector added, in the order of keslGaxpy: of orders above 3 the product of the last column comes first.
template <int n> constexpr int aheadInGaxpy = n > 3;
template <int n, class T> [[gnu::noinline]] void gaxpyAnywhere(const Factor<T>& matrix, const Factor<T>& factors,
                                                               const Factor<T>& summands, const Array<T>& to, int count)
{
    const Single<T, n, n> left(matrix);
    const auto all = [&](const auto& src, const auto& more, const auto& dst) KESL_INLINE {
        eachPack<T>(count, [&]<class V>(Objects<V> k) KESL_INLINE {
            Block<V, n, n> a;
            Block<V, 1, n> x, y;
            load(left, k, a), load(src, k, x), load(more, k, y);
            store(dst, k, plus(timesVector<aheadInGaxpy<n>>(a, x), y));
        });
    };
    const auto areSideBySide = [](const Factor<T>& f) { return f.isArray && f.stored.lie == Lie::sideBySide; };
    using Side = VectorsSideBySide<n, const T>;
    if (!areSideBySide(factors) || to.lie != Lie::sideBySide || (summands.isArray && !areSideBySide(summands)))
        all(FactorInPacks<T, 1, n>(factors, count), FactorInPacks<T, 1, n>(summands, count), InPacks(to, count));
    else if (summands.isArray) all(Side(factors.stored), Side(summands.stored), VectorsSideBySide<n, T>(to));
    else all(Side(factors.stored), Single<T, 1, n>(summands), VectorsSideBySide<n, T>(to));
}

// ---- Compiled once (any_layout_32f.cpp, any_layout_64f.cpp).
// clang-format off
#define KESL_FACTOR_FUNCTIONS(how, T)                                                                               \
    KESL_FACTOR_FUNCTIONS_N(how, T, 3) KESL_FACTOR_FUNCTIONS_N(how, T, 4)                                             \
    KESL_FACTOR_FUNCTIONS_N(how, T, 5) KESL_FACTOR_FUNCTIONS_N(how, T, 6)
#define KESL_FACTOR_FUNCTIONS_N(how, T, n)                                                                          \
    how template void productsAnywhere<n>(T, const Factor<T>&, const Factor<T>&, const Array<T>&, int);               \
    how template void vectorProductsAnywhere<n>(T, const Factor<T>&, const Factor<T>&, const Array<T>&, int);         \
    how template void vectorsByOneAnywhere<n>(T, const Factor<T>&, const Array<const T>&, const Array<T>&, int);      \
    how template void gaxpyAnywhere<n>(const Factor<T>&, const Factor<T>&, const Factor<T>&, const Array<T>&, int);
KESL_FACTOR_FUNCTIONS(extern, float)
KESL_FACTOR_FUNCTIONS(extern, double)
// clang-format on

} // namespace kesl
