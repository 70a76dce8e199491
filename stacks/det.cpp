#include "stacks/lu.h"
#include "stacks/names.h"

namespace kesl::stacks {
namespace {

// The product of the pivots, its exponent carried apart.
template <class V, class N> [[gnu::always_inline]] inline V detLU(Tile<V, N, N> t)
{
    const V scale = eliminationScale(largestOf(t), t.n);
    scaleBy(scale, t);
    Pivots<V, N> p;
    const IndexOf<V> singular = factorLU(t, p);

    IndexOf<V> exponent;
    splitExponent(scale, exponent);
    exponent *= -t.n;
    V product = splat<V>(1);
    for (int i = 0; i < t.n; ++i) {
        IndexOf<V> e, carry;
        product = splitExponent(product * splitExponent(t(i, i), e), carry);
        exponent += e + carry;
        product = p[i] == i ? product : 0 - product;
    }
    return singular != 0 ? V{} : timesPowerOfTwo(product, exponent);
}

// Orders up to 3 as a sum of products, of elements that are brought near 1.
template <class V, int n> V detProducts(const Tile<V, Fixed<n>, Fixed<n>>& t, V largest)
{
    IndexOf<V> exponent, e;
    splitExponent(largest, exponent);
    const TwoPowers<V> power(0 - exponent);
    Tile<V, Fixed<n>, Fixed<n>> x = t;
    for (V& element : x.e) element = power.times(element);
    V det;
    if constexpr (n == 1) det = x(0, 0);
    else if constexpr (n == 2) det = x(0, 0) * x(1, 1) - x(0, 1) * x(1, 0);
    else {
        const auto minor = [&](int i, int j) { return x(1, i) * x(2, j) - x(1, j) * x(2, i); };
        det = x(0, 0) * minor(1, 2) - x(0, 1) * minor(0, 2) + x(0, 2) * minor(0, 1);
    }
    const V value = splitExponent(det, e);
    return det == 0 ? det : timesPowerOfTwo(value, e + n * exponent);
}

struct Det {
    static constexpr int limits[] = {largestSize};
    static auto shapes(auto n) { return std::tuple(Shape(n, n), Shape(Fixed<1>{}, Fixed<1>{})); }
    static double cost(double n) { return 30 * n * n * (n + 2); }

    template <class V, class N> static IndexOf<V> pack(Objects k, N n, const auto& a, const auto& x)
    {
        Tile<V, N, N> t(n, n);
        a.load(k, t);
        const IndexOf<V> refused = notFinite(t);
        if (any(refused)) makeHarmless(refused, t);
        Tile<V, Fixed<1>, Fixed<1>> det({}, {});
        if constexpr (most<N> > 3) det(0, 0) = detLU(t);
        else {
            // Where the magnitudes are far apart products could vanish that are all there is: there by elimination.
            const V largest = largestOf(t), far = splat<V>(sizeof(ElementOf<V>) == 4 ? 0x1p-40f : ElementOf<V>(0x1p-320));
            IndexOf<V> wide{};
            for (V element : t.e) wide |= (abs(element) < largest * far) & (element != 0);
            det(0, 0) = detProducts(t, largest);
            if (any(wide)) det(0, 0) = wide ? detLU(t) : det(0, 0);
        }
        if (any(refused)) spoil(refused, det);
        x.store(k, det);
        return refused ? index<V>(-1) : index<V>(0);
    }
};

#define DET(T) std::ptrdiff_t n, std::ptrdiff_t count, KESL_MATRIX_OF(const T, a), KESL_NUMBER_OF(T, x), int *info
} // namespace

KESL_FUNCTIONS(det, DET, call<Det>(sizes(n), count, info, KESL_MATRIX(a), KESL_NUMBER(x)))

} // namespace kesl::stacks
