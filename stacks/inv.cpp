#include "stacks/lu.h"
#include "stacks/names.h"

namespace kesl::stacks {
namespace {

struct Inv {
    static constexpr int limits[] = {largestSize};
    static auto shapes(auto n) { return std::tuple(Shape(n, n), Shape(n, n)); }
    static double cost(double n) { return 60 * n * n * (n + 2); }

    template <class V, class N> static IndexOf<V> pack(Objects k, N n, const auto& a, const auto& x)
    {
        Tile<V, N, N> t(n, n);
        a.load(k, t);
        const IndexOf<V> refused = notFinite(t);
        if (any(refused)) makeHarmless(refused, t);
        const V scale = eliminationScale(largestOf(t), n);
        scaleBy(scale, t);

        Pivots<V, N> p;
        IndexOf<V> info = factorLU(t, p);
        invertLU(t, p);
        scaleBy(scale, t);
        info = refused ? index<V>(-1) : info;
        if (any(info != 0)) spoil(info != 0, t);
        x.store(k, t);
        return info;
    }
};

} // namespace

#define INV(T) std::ptrdiff_t n, std::ptrdiff_t count, KESL_MATRIX_OF(const T, a), KESL_MATRIX_OF(T, x), int *info
KESL_FUNCTIONS(inv, INV, call<Inv>(sizes(n), count, info, KESL_MATRIX(a), KESL_MATRIX(x)))

} // namespace kesl::stacks
