#include "stacks/lu.h"
#include "stacks/names.h"
#include "stacks/products.h"

namespace kesl::stacks {
namespace {

// load() brings the matrix into x.
template <class V, class N> [[gnu::always_inline]] inline IndexOf<V> byElimination(auto load, Tile<V, N, N>& x)
{
    Pivots<V, N> p;
    Preparation<V> prepared;
    const IndexOf<V> info = factorLU(load, x, p, prepared);
    invertLU(x, p);
    prepared.scaleLike(x);
    return info;
}

// x = a^-1; returns the lanes where it is known to be accurate from the diagonal of the adjugate, or from all of it. A NaN
// anywhere is in the determinant, too.
template <bool all, class V, int n>
[[gnu::always_inline]] inline IndexOf<V> byAdjugate(const Square<V, n>& a, Square<V, n>& x)
{
    x = adjugate(a);
    const V det = determinant(a, x), inverse = 1 / det;
    if constexpr (n <= 2) {
        scaleBy(inverse, x);
        return isOrdinary<1>(abs(det));
    }
    const RowSizes<V, n> rows(a);
    const IndexOf<V> sound = rows.excuse(largestCofactor<all>(x), rows.least, 8);
    scaleBy(inverse, x);
    return sound & rows.areRegular(det) & isOrdinary<n>(rows.largest);
}

// The lanes that are not done: up to order 2 with exponents apart. Others get the same bits once more.
template <class V, int n> requires(n <= 2)
[[gnu::noinline]] IndexOf<V> finish(const Square<V, n>& a, IndexOf<V>, Square<V, n>& x)
{
    const SplitDeterminant<V> det(a);
    const V inverse = 1 / det.value;
    x = adjugate(a);
    for (V& element : x.e) {
        IndexOf<V> exponent;
        const V value = splitExponent(element, exponent) * inverse;
        element = element == 0 ? element * inverse : timesPowerOfTwo(value, exponent - det.exponent);
    }
    const IndexOf<V> zeroPivot = ((a(0, 0) == 0) & (a(n - 1, 0) == 0)) ? index<V>(1) : index<V>(n);
    return notFinite(a) ? index<V>(-1) : det.value == 0 ? zeroPivot : index<V>(0);
}
// Above that once more near 1, and by elimination where that does not help.
template <class V, int n> [[gnu::noinline]] IndexOf<V> finish(const Square<V, n>& a, IndexOf<V> done, Square<V, n>& x)
{
    const auto take = [&](const Square<V, n>& y) {
        for (int e = 0; e < n * n; ++e) x.e[e] = done ? x.e[e] : y.e[e];
    };
    Square<V, n> y({}, {});
    const Normalised<V, n> normalised(a);
    const IndexOf<V> accurate = byAdjugate<true>(normalised.near, y);
    for (V& element : y.e) element = normalised.down.times(element);
    take(y);
    done |= accurate;
    if (!any(~done)) return index<V>(0);

    const IndexOf<V> info = byElimination([&] { y = a; }, y);
    take(y);
    return done ? index<V>(0) : info;
}

// The inverse of what load() brings into x.
template <class V, class N> [[gnu::always_inline]] inline IndexOf<V> invert(auto load, Tile<V, N, N>& x)
{
    if constexpr (most<N> <= 4) {
        load();
        Tile<V, N, N> y(x.rows(), x.columns());
        const IndexOf<V> done = byAdjugate<false>(x, y);
        IndexOf<V> info{};
        if (any(~done)) [[unlikely]] {
            Tile<V, N, N> result = y; // so that x and y may stay in registers
            info = finish(Tile<V, N, N>(x), done, result);
            y = result;
        }
        x = y;
        return info;
    } else return byElimination(load, x);
}

struct Inv {
    static constexpr int limits[] = {largestSize};
    static auto shapes(auto n) { return std::tuple(Shape(n, n), Shape(n, n)); }
    static double cost(double n) { return 60 * n * n * (n + 2); }

    template <class V, class N> static IndexOf<V> pack(Objects k, N n, const auto& a, const auto& x)
    {
        Tile<V, N, N> t(n, n);
        const IndexOf<V> info = invert([&]() KESL_INLINE { a.load(k, t); }, t);
        if (any(info != 0)) spoil(info != 0, t);
        x.store(k, t);
        return info;
    }
};

} // namespace

#define INV(T) std::ptrdiff_t n, std::ptrdiff_t count, KESL_MATRIX_OF(const T, a), KESL_MATRIX_OF(T, x), int *info
KESL_FUNCTIONS(inv, INV, call<Inv>(sizes(n), count, info, KESL_MATRIX(a), KESL_MATRIX(x)))

} // namespace kesl::stacks
