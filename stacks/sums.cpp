// Sums along vectors of any length: vecdot, norm, trace; and the cross product.
#include "stacks/names.h"
#include "stacks/scale.h"

namespace kesl::stacks {
namespace {

using One = Fixed<1>;

// f(tile, element) for n elements of vectors: all at once if n is Fixed, otherwise as many as a tile has.
template <class V, class N> [[gnu::always_inline]] inline void eachPart(N n, auto f)
{
    if constexpr (isFixed<N>) {
        Tile<V, One, N> all({}, n);
        f(all, 0);
    } else
        for (N from = 0; from < n; from += largestSize) {
            Tile<V, One, int> part({}, int(std::min<N>(n - from, largestSize)));
            f(part, from);
        }
}

template <class V> void storeNumber(Objects k, V value, const auto& x)
{
    Tile<V, One, One> number({}, {});
    number(0, 0) = value;
    x.store(k, number);
}

struct Vecdot {
    static constexpr bool neverFails = true;
    static constexpr int limits[] = {0};
    static auto shapes(auto n) { return std::tuple(Shape(One{}, n), Shape(One{}, n), Shape(One{}, One{})); }
    static double cost(double n) { return 200 * (n + 1); }
    static auto withOrders(auto f, std::ptrdiff_t n) { return withOrder<std::ptrdiff_t>(n, f); }

    template <class V> static void pack(Objects k, auto n, const auto& a, const auto& b, const auto& x)
    {
        V sum{};
        eachPart<V>(n, [&](auto& s, std::ptrdiff_t from) KESL_INLINE {
            std::decay_t<decltype(s)> t(s.rows(), s.columns());
            a.load(k, s, 0, from);
            b.load(k, t, 0, from);
            each(s, [&](int i, int j) KESL_INLINE { sum = j + from ? sum + s(i, j) * t(i, j) : s(i, j) * t(i, j); });
        });
        storeNumber(k, sum, x);
    }
};

struct Trace {
    static constexpr bool neverFails = true;
    static constexpr int limits[] = {0};
    static auto shapes(auto n) { return std::tuple(Shape(n, n), Shape(One{}, One{})); }
    static double cost(double n) { return 200 * (n + 1); }
    static auto withOrders(auto f, std::ptrdiff_t n) { return withOrder<std::ptrdiff_t>(n, f); }

    template <class V> static void pack(Objects k, auto n, const auto& diagonal, const auto& x)
    {
        V sum{};
        eachPart<V>(n, [&](auto& s, std::ptrdiff_t from) KESL_INLINE {
            diagonal.load(k, s, 0, from);
            each(s, [&](int i, int j) KESL_INLINE { sum = j + from ? sum + s(i, j) : s(i, j); });
        });
        storeNumber(k, sum, x);
    }
};

struct Norm {
    static constexpr bool neverFails = true;
    static constexpr int limits[] = {0};
    static auto shapes(auto n) { return std::tuple(Shape(One{}, n), Shape(One{}, One{})); }
    static double cost(double n) { return 300 * (n + 1); }
    static auto withOrders(auto f, std::ptrdiff_t n) { return withOrder<std::ptrdiff_t>(n, f); }

    template <class V, class N> static void pack(Objects k, N n, const auto& a, const auto& x)
    {
        if constexpr (isFixed<N>) {
            Tile<V, One, N> all({}, n);
            a.load(k, all);
            storeNumber(k, normOf<V>([&](auto f) KESL_INLINE { f(all); }), x);
        } else {
            const auto eachTile = [&](auto f) {
                eachPart<V>(n, [&](auto& part, std::ptrdiff_t from) {
                    a.load(k, part, 0, from);
                    f(part);
                });
            };
            storeNumber(k, normOf<V>(eachTile), x);
        }
    }

private:
    // eachTile(f) calls f for the parts of the vector. A power of two brings the largest element to [1, 2); where it and its
    // inverse are normal numbers, it is one factor.
    template <class V> [[gnu::always_inline]] static V normOf(auto eachTile)
    {
        using T = ElementOf<V>;
        constexpr T high = sizeof(T) == 4 ? T(0x1p100) : T(0x1p1000);
        V largest{};
        eachTile([&](const auto& s) KESL_INLINE { largest = larger(largestOf(s), largest); });
        const IndexOf<V> inRange = (largest == 0) | ((largest > splat<V>(1 / high)) & (largest < splat<V>(high)));
        if (any(~inRange)) [[unlikely]] {
            IndexOf<V> exponent;
            splitExponent(largest, exponent);
            const TwoPowers<V> down(0 - exponent), up(exponent);
            return up.times(sqrt(sumOfSquares<V>(eachTile, [&](V x) KESL_INLINE { return down.times(x); })));
        }
        const V down = inversePower(largest);
        return power(largest) * sqrt(sumOfSquares<V>(eachTile, [&](V x) KESL_INLINE { return x * down; }));
    }
    template <class V> [[gnu::always_inline]] static V sumOfSquares(auto eachTile, auto scaled)
    {
        V sum{};
        eachTile([&](const auto& s) KESL_INLINE {
            each(s, [&](int i, int j) KESL_INLINE {
                const V element = scaled(s(i, j));
                sum += element * element;
            });
        });
        return sum;
    }
};

struct Cross {
    static constexpr bool neverFails = true;
    static constexpr std::array<int, 0> limits{};
    static auto shapes() { return std::tuple(Shape(One{}, Fixed<3>{}), Shape(One{}, Fixed<3>{}), Shape(One{}, Fixed<3>{})); }
    static double cost() { return 1500; }
    static auto withOrders(auto f) { return f(); }

    template <class V> static void pack(Objects k, const auto& a, const auto& b, const auto& c)
    {
        Tile<V, One, Fixed<3>> s({}, {}), t({}, {}), x({}, {});
        a.load(k, s);
        b.load(k, t);
        each(x, [&](int, int i) KESL_INLINE {
            const int i1 = (i + 1) % 3, i2 = (i + 2) % 3;
            x(0, i) = s(0, i1) * t(0, i2) - s(0, i2) * t(0, i1);
        });
        c.store(k, x);
    }
};

#define VECDOT(T)                                                                                                           \
    std::ptrdiff_t n, std::ptrdiff_t count, KESL_VECTOR_OF(const T, a), KESL_VECTOR_OF(const T, b), KESL_NUMBER_OF(T, x),   \
        int *info
#define TRACE(T) std::ptrdiff_t n, std::ptrdiff_t count, KESL_MATRIX_OF(const T, a), KESL_NUMBER_OF(T, x), int *info
#define NORM(T) std::ptrdiff_t n, std::ptrdiff_t count, KESL_VECTOR_OF(const T, a), KESL_NUMBER_OF(T, x), int *info
#define CROSS(T)                                                                                                            \
    std::ptrdiff_t count, KESL_VECTOR_OF(const T, a), KESL_VECTOR_OF(const T, b), KESL_VECTOR_OF(T, c), int *info
} // namespace

KESL_FUNCTIONS(vecdot, VECDOT, call<Vecdot>(sizes(n), count, info, KESL_VECTOR(a), KESL_VECTOR(b), KESL_NUMBER(x)))
KESL_FUNCTIONS(trace, TRACE, call<Trace>(sizes(n), count, info, diagonal(KESL_MATRIX(a)), KESL_NUMBER(x)))
KESL_FUNCTIONS(norm, NORM, call<Norm>(sizes(n), count, info, KESL_VECTOR(a), KESL_NUMBER(x)))
KESL_FUNCTIONS(cross, CROSS, call<Cross>(sizes(), count, info, KESL_VECTOR(a), KESL_VECTOR(b), KESL_VECTOR(c)))

} // namespace kesl::stacks
