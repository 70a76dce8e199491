#include "stacks/lu.h"
#include "stacks/names.h"
#include "stacks/products.h"

namespace kesl::stacks {
namespace {

// The product of the pivots, with its exponent carried apart where it leaves the range in which no digit is lost.
template <class V, class N> [[gnu::always_inline]] inline V productOf(const Tile<V, N, N>& lu, IndexOf<V> isOdd, V scale)
{
    using T = ElementOf<V>;
    constexpr T high = sizeof(T) == 4 ? T(0x1p+100) : T(0x1p+1000);
    V product = lu(0, 0);
    IndexOf<V> inRange = (abs(product) < splat<V>(high)) & (abs(product) > splat<V>(1 / high)) & (scale == 1);
    loop<N>(1, lu.n, [&](int i) KESL_INLINE {
        product *= lu(i, i);
        inRange &= (abs(product) < splat<V>(high)) & (abs(product) > splat<V>(1 / high));
    });
    if (any(~inRange)) [[unlikely]] {
        IndexOf<V> exponent;
        splitExponent(scale, exponent);
        exponent *= -lu.n;
        product = splat<V>(1);
        loop<N>(0, lu.n, [&](int i) KESL_INLINE {
            IndexOf<V> e, carry;
            product = splitExponent(product * splitExponent(lu(i, i), e), carry);
            exponent += e + carry;
        });
        product = timesPowerOfTwo(product, exponent);
    }
    return isOdd ? 0 - product : product;
}

// load(tile) brings the matrix.
template <class V, class N> [[gnu::always_inline]] inline V byElimination(N n, auto load)
{
    Tile<V, N, N> lu(n, n);
    Pivots<V, N> p;
    Preparation<V> prepared;
    const IndexOf<V> info = factorLU([&]() KESL_INLINE { load(lu); }, lu, p, prepared);
    IndexOf<V> isOdd{};
    loop<N>(0, lu.n, [&](int i) KESL_INLINE { isOdd ^= p[i] != i; });
    const V det = productOf(lu, isOdd, prepared.scale);
    return info == 0 ? det : info > 0 ? V{} : notANumber<V>();
}

// By products; returns the lanes where the determinant is known to be accurate from the cofactors that it is made of.
template <class V, int n> [[gnu::always_inline]] inline IndexOf<V> byProducts(const Square<V, n>& a, V& det)
{
    const auto column = cofactors(a);
    const RowSizes<V, n> rows(a);
    det = determinant(a, column);
    const IndexOf<V> sound = rows.excuse(largestOf(column), rows.first, n < 4 ? 16 : 64);
    return sound & rows.areRegular(det) & isOrdinary<n>(rows.largest);
}

// The lanes that are not done: once more near 1, and by elimination where that does not help.
template <class V, int n> [[gnu::noinline]] V finish(const Square<V, n>& a, IndexOf<V> done, V det)
{
    if (const Normalised<V, n> normalised(a); any(normalised.exponent != 0)) {
        V near;
        IndexOf<V> e;
        const IndexOf<V> accurate = byProducts(normalised.near, near);
        const V value = splitExponent(near, e);
        det = done ? det : timesPowerOfTwo(value, e + n * normalised.exponent);
        done |= accurate;
        if (!any(~done)) return det;
    }
    return done ? det : byElimination<V>(Fixed<n>{}, [&](auto& lu) { lu = a; });
}

template <class V, class N> [[gnu::always_inline]] inline V determinantOf(N n, auto load)
{
    if constexpr (most<N> <= 5) {
        Tile<V, N, N> a(n, n);
        load(a);
        V det;
        const IndexOf<V> done = byProducts(a, det);
        return any(~done) ? finish(Tile<V, N, N>(a), done, det) : det;
    } else return n == 0 ? splat<V>(1) : byElimination<V>(n, load);
}

struct Det {
    static constexpr int limits[] = {largestSize};
    static auto shapes(auto n) { return std::tuple(Shape(n, n), Shape(Fixed<1>{}, Fixed<1>{})); }
    static double cost(double n) { return 30 * n * n * (n + 2); }

    template <class V, class N> static IndexOf<V> pack(Objects k, N n, const auto& a, const auto& x)
    {
        Tile<V, Fixed<1>, Fixed<1>> det({}, {});
        det(0, 0) = determinantOf<V>(n, [&](auto& t) KESL_INLINE { a.load(k, t); });
        x.store(k, det);
        return det(0, 0) != det(0, 0) ? index<V>(-1) : index<V>(0);
    }
};

#define DET(T) std::ptrdiff_t n, std::ptrdiff_t count, KESL_MATRIX_OF(const T, a), KESL_NUMBER_OF(T, x), int *info
} // namespace

KESL_FUNCTIONS(det, DET, call<Det>(sizes(n), count, info, KESL_MATRIX(a), KESL_NUMBER(x)))

} // namespace kesl::stacks
