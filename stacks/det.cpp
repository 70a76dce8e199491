#include "stacks/lu.h"
#include "stacks/names.h"
#include "stacks/products.h"

namespace kesl::stacks {
namespace {

// The product of the pivots, its exponent carried apart.
template <class V, class N> V byElimination(Tile<V, N, N> a)
{
    const Preparation<V> prepared(a);
    Pivots<V, N> p;
    const IndexOf<V> singular = factorLU(a, p);

    IndexOf<V> exponent;
    splitExponent(prepared.scale, exponent);
    exponent *= -a.n;
    V product = splat<V>(1);
    for (int i = 0; i < a.n; ++i) {
        IndexOf<V> e, carry;
        product = splitExponent(product * splitExponent(a(i, i), e), carry);
        exponent += e + carry;
        product = p[i] == i ? product : 0 - product;
    }
    const V det = singular != 0 ? V{} : timesPowerOfTwo(product, exponent);
    return prepared.refused ? notANumber<V>() : det;
}

// Orders up to 2: by products where these are sound, once more near 1 otherwise, and by elimination where that does not help.
template <class V, int n> [[gnu::noinline]] V finish(const Square<V, n>& a, IndexOf<V> done, IndexOf<V> isOrdinary, V det)
{
    const Normalised<V, n> normalised(a, isOrdinary);
    const V near = determinant(normalised.near);
    IndexOf<V> e;
    const V value = splitExponent(near, e);
    det = done ? det : timesPowerOfTwo(value, e + n * normalised.exponent);
    done |= isSound(near, largestOf(normalised.near), Fixed<n>{});
    return any(~done) ? (done ? det : byElimination(a)) : det;
}
template <class V, class N> V determinantOf(const Tile<V, N, N>& a)
{
    if constexpr (most<N> <= 2) {
        const V det = determinant(a);
        const IndexOf<V> isOrdinary = ordinary(a), done = isSound(det, largestOf(a), N{}) & isOrdinary;
        return any(~done) ? finish(a, done, isOrdinary, det) : det;
    } else return byElimination(a);
}

struct Det {
    static constexpr int limits[] = {largestSize};
    static auto shapes(auto n) { return std::tuple(Shape(n, n), Shape(Fixed<1>{}, Fixed<1>{})); }
    static double cost(double n) { return 30 * n * n * (n + 2); }

    template <class V, class N> static IndexOf<V> pack(Objects k, N n, const auto& a, const auto& x)
    {
        Tile<V, N, N> t(n, n);
        a.load(k, t);
        Tile<V, Fixed<1>, Fixed<1>> det({}, {});
        det(0, 0) = determinantOf(t);
        x.store(k, det);
        return any(~(abs(det(0, 0)) <= splat<V>(std::numeric_limits<ElementOf<V>>::max())))
                   ? (notFinite(t) ? index<V>(-1) : index<V>(0))
                   : index<V>(0);
    }
};

#define DET(T) std::ptrdiff_t n, std::ptrdiff_t count, KESL_MATRIX_OF(const T, a), KESL_NUMBER_OF(T, x), int *info
} // namespace

KESL_FUNCTIONS(det, DET, call<Det>(sizes(n), count, info, KESL_MATRIX(a), KESL_NUMBER(x)))

} // namespace kesl::stacks
