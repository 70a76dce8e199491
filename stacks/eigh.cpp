#include "stacks/names.h"
#include "stacks/symmetric.h"

namespace kesl::stacks {
namespace {

template <class V, class N> void spoilAny(IndexOf<V> info, Tile<V, Fixed<1>, N>& values, auto&... others)
{
    if (!any(info != 0)) return;
    spoil(info != 0, values);
    (spoil(info != 0, others), ...);
}

struct EigValsH {
    static constexpr int limits[] = {largestSize};
    static auto shapes(auto n) { return std::tuple(Shape(n, n), Shape(Fixed<1>{}, n)); }
    static double cost(double n) { return n * n * (1800 + 60 * n); }
    static auto withOrders(auto f, std::ptrdiff_t n) { return withFixed<6>(n, f); }

    template <class V, class N> static IndexOf<V> pack(Objects k, N n, const auto& a, const auto& w)
    {
        Tile<V, N, N> t(n, n);
        Tile<V, Fixed<1>, N> values({}, n);
        a.load(k, t);
        transpose(t);
        const IndexOf<V> info = eigh<false>(t, values);
        spoilAny(info, values);
        w.store(k, values);
        return info;
    }
};

struct EigH {
    static constexpr int limits[] = {largestSize};
    static auto shapes(auto n) { return std::tuple(Shape(n, n), Shape(Fixed<1>{}, n), Shape(n, n)); }
    static double cost(double n) { return n * n * (1700 + 215 * n); }
    static auto withOrders(auto f, std::ptrdiff_t n) { return withFixed<6>(n, f); }

    template <class V, class N> static IndexOf<V> pack(Objects k, N n, const auto& a, const auto& w, const auto& v)
    {
        Tile<V, N, N> t(n, n);
        Tile<V, Fixed<1>, N> values({}, n);
        a.load(k, t);
        transpose(t);
        const IndexOf<V> info = eigh<true>(t, values);
        spoilAny(info, values, t);
        transpose(t);
        w.store(k, values);
        v.store(k, t);
        return info;
    }
};

#define EIGVALSH(T) std::ptrdiff_t n, std::ptrdiff_t count, KESL_MATRIX_OF(const T, a), KESL_VECTOR_OF(T, w), int *info
#define EIGH(T)                                                                                                             \
    std::ptrdiff_t n, std::ptrdiff_t count, KESL_MATRIX_OF(const T, a), KESL_VECTOR_OF(T, w), KESL_MATRIX_OF(T, v), int *info
} // namespace

KESL_FUNCTIONS(eigvalsh, EIGVALSH, call<EigValsH>(sizes(n), count, info, KESL_MATRIX(a), KESL_VECTOR(w)))
KESL_FUNCTIONS(eigh, EIGH, call<EigH>(sizes(n), count, info, KESL_MATRIX(a), KESL_VECTOR(w), KESL_MATRIX(v)))

} // namespace kesl::stacks
