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
//
// P is the product of the largest magnitudes in the rows, u the unit roundoff. Where the cofactors are small, they and the
// terms made of them have errors of at most 6, 88, 830 u P at orders 3, 4, 5, each product and sum on the way being as large
// as it can be; what comes after is less than 30 u times an element and a cofactor. Elimination is as if n^2 elements had
// changed by n (2^n - 1) u times the largest: 189, 960, 3875 u times an element and a cofactor. So P may be 16, 8, 4 times
// as large as these.
template <class V, int n> [[gnu::always_inline]] inline IndexOf<V> byProducts(const Square<V, n>& a, V& det)
{
    const auto column = cofactors(a);
    det = determinant(a, column);
    if constexpr (n <= 2) return isOrdinary<1>(abs(det));
    const RowSizes<V, n> rows(a);
    const IndexOf<V> sound = rows.excuse(largestOf(column), rows.first, 1 << (7 - n));
    return sound & rows.areRegular(det) & isOrdinary<n>(rows.largest);
}

// The lanes that are not done: up to order 2 with exponents apart.
template <class V, int n> requires(n <= 2) [[gnu::noinline]] V finish(const Square<V, n>& a, IndexOf<V>, V)
{
    const SplitDeterminant<V> det(a);
    return notFinite(a) ? notANumber<V>() : det.value == 0 ? V{} : timesPowerOfTwo(det.value, det.exponent);
}
// Above that once more near 1, and by elimination where that does not help.
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
