// Products of orders 1 and 2 of operands without gaps. A pack of elements, as they lie, holds whole objects, and shuffles bring the
// factors of each term to the place of its sum. Of order 2, for each four elements:
//
//     d00 d01 d10 d11  =  0  +  a00 a00 a10 a10 * b00 b01 b00 b01  +  a01 a01 a11 a11 * b10 b11 b10 b11
#pragma once
#include "frame/map.h"

namespace kesl {

// Where the factors of term k lie in their objects, for element e of a product of order n with `columns` columns.
template <int n, int columns, bool transposed> struct LeftFactor {
    static constexpr int size = n * n, sizeOfProduct = n * columns;
    static constexpr int of(int e, int k) { return transposed ? k * n + e / columns : e / columns * n + k; }
};
template <int n, int columns, bool transposed> struct RightFactor {
    static constexpr int size = n * columns, sizeOfProduct = size;
    static constexpr int of(int e, int k) { return transposed ? e % columns * n + k : k * columns + e % columns; }
};
// A vector that is added to it.
template <int n> struct Summand {
    static constexpr int size = n, sizeOfProduct = n;
    static constexpr int of(int e, int) { return e; }
};

// What an operand contributes to term k of the elements e, e + 1, ... of all products, in the lanes of V: an array, ...
template <class T, class Place, bool isArray> struct InRun {
    const T* p;
    explicit InRun(const auto& o) : p(o.p) {}

    template <int k> struct Lanes {
        static constexpr int of(int l)
        {
            return l / Place::sizeOfProduct * Place::size + Place::of(l % Place::sizeOfProduct, k);
        }
    };
    template <int k, class V> [[gnu::always_inline]] V term(std::int64_t e) const
    {
        const T* const object = p + e / Place::sizeOfProduct * Place::size;
        if constexpr (lanes<V> == 1) return object[Place::of(int(e % Place::sizeOfProduct), k)];
        else {
            constexpr int packs = Place::size / Place::sizeOfProduct; // one or two
            const V first = loadPack<V>(object), last = loadPack<V>(object + (packs - 1) * lanes<V>);
            return shuffled<Lanes<k>, lanes<V>>(first, last);
        }
    }
};
// ... and a single object, which is read once: its factors for a pack of elements, and for a product at least.
template <class T, class Place> struct InRun<T, Place, false> {
    using Wide = Pack<T>;
    static constexpr int terms = 2, elements = std::max(lanes<Wide>, Place::sizeOfProduct);
    T factors[terms][elements];

    template <class O> explicit InRun(const O& o)
    {
        constexpr int width = O::kind == Kind::vector ? Place::size : Place::size == 4 ? 2 : 1;
        T x[Place::size];
        for (int i = 0; i < Place::size; ++i) x[i] = o.stored(0, width)(i / width, i % width);
        const auto factor = [&](int e, int k) {
            return x[std::min(Place::of(e % Place::sizeOfProduct, k), Place::size - 1)]; // order 1 has no second term
        };
        const auto spread = [&]<int... l>(int k, int first, std::integer_sequence<int, l...>) {
            storePack(factors[k] + first, Wide{factor(first + l, k)...});
        };
        for (int k = 0; k < terms; ++k)
            for (int e = 0; e < elements; e += lanes<Wide>) spread(k, e, std::make_integer_sequence<int, lanes<Wide>>{});
    }
    template <int k, class V> [[gnu::always_inline]] V term(std::int64_t e) const
    {
        if constexpr (lanes<V> == 1) return factors[k][e % Place::sizeOfProduct];
        else return loadPack<V>(factors[k]);
    }
};

// dst[e] = f<V>(e) for n elements, in steps of whole objects of `size` elements: to where dst is aligned, by packs, and the rest.
template <class V, class T> [[gnu::always_inline]] inline void smallStep(std::int64_t& e, T* dst, auto f)
{
    storePack<V>(dst + e, f.template operator()<V>(e));
    e += lanes<V>;
}
template <int bytes, class T> [[gnu::always_inline]] inline void smallHead(std::int64_t& e, T* dst, auto f)
{
    if constexpr (bytes < widest) {
        if (reinterpret_cast<std::uintptr_t>(dst + e) & bytes) smallStep<PackOrElement<T, bytes>>(e, dst, f);
        smallHead<2 * bytes>(e, dst, f);
    }
}
template <int least, int bytes, class T>
[[gnu::always_inline]] inline void smallTail(std::int64_t& e, std::int64_t n, T* dst, auto f)
{
    if constexpr (bytes >= least) {
        using V = PackOrElement<T, bytes>;
        if (n - e >= lanes<V>) smallStep<V>(e, dst, f);
        smallTail<least, bytes / 2>(e, n, dst, f);
    }
}
template <int size, class T> [[gnu::always_inline]] inline void eachSmall(std::int64_t n, T* dst, auto f)
{
    constexpr int least = size * int(sizeof(T));
    std::int64_t e = 0;
    if constexpr (least > widest) // an object is more than a pack
        while (e < n) smallStep<T>(e, dst, f);
    else {
        if (n >= longRun<T>) smallHead<least>(e, dst, f);
        while (n - e >= lanes<Pack<T>>) smallStep<Pack<T>>(e, dst, f);
        smallTail<least, widest / 2>(e, n, dst, f);
    }
}

// All products of order n, with a vector added to each if there is one. Sums begin at zero.
template <int n, int columns, class T>
KESL_ONCE void smallProducts(T* dst, int count, const auto& a, const auto& b, const auto&... added)
{
    const auto element = [&]<class V>(std::int64_t e) KESL_INLINE {
        V sum = V{} + a.template term<0, V>(e) * b.template term<0, V>(e);
        if constexpr (n == 2) sum = sum + a.template term<1, V>(e) * b.template term<1, V>(e);
        return (sum + ... + added.template term<0, V>(e));
    };
    eachSmall<n * columns>(std::int64_t(count) * n * columns, dst, element);
}

// ---- Whether it was done: not if there is a gap or the order is greater.
template <class O> bool hasNoGaps(const O& o, int n)
{
    if constexpr (!O::isArray) return true;
    else return isRecord(o, n, n) && o.stride0 == (O::kind == Kind::vector ? n : n * n) * O::elementSize;
}
template <class A, class B, class D, class... Y> [[gnu::always_inline]] inline bool
smallProductsDone(int order, int count, const A& a, const B& b, const D& dst, const Y&... y)
{
    if (order > 2 || !hasNoGaps(a, order) || !hasNoGaps(b, order) || !hasNoGaps(dst, order) || !(hasNoGaps(y, order) && ...))
        return false;
    const auto products = [&]<int n>(Fixed<n>) KESL_INLINE {
        constexpr int columns = D::kind == Kind::vector ? 1 : n;
        using T = typename D::Element;
        using Left = InRun<T, LeftFactor<n, columns, n == 2 && isTransposed<A>>, A::isArray>;
        using Right = InRun<T, RightFactor<n, columns, n == 2 && isTransposed<B>>, B::isArray>;
        smallProducts<n, columns>(dst.p, count, Left(a), Right(b), InRun<T, Summand<n>, Y::isArray>(y)...);
    };
    if (order == 1) products(Fixed<1>{});
    else products(Fixed<2>{});
    return true;
}

} // namespace kesl
