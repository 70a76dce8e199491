#include "stacks/general.h"
#include "stacks/names.h"

namespace kesl::stacks {
namespace {

struct EigVals {
    static constexpr int limits[] = {largestSize};
    static auto shapes(auto n) { return std::tuple(Shape(n, n), Shape(Fixed<1>{}, n), Shape(Fixed<1>{}, n)); }
    static double cost(double n) { return 1000 * n * n * (n + 2); }
    static auto withOrders(auto f, std::ptrdiff_t n) { return withGeneralOrder(f, n); }

    template <class V, class N> static IndexOf<V> pack(Objects k, N n, const auto& a, const auto& wr, const auto& wi)
    {
        Tile<V, N, N> t(n, n);
        Tile<V, Fixed<1>, N> re({}, n), im({}, n);
        a.load(k, t);
        const IndexOf<V> info = general<false, V, N>(t, re, im, nullptr, nullptr);
        wr.store(k, re), wi.store(k, im);
        return info;
    }
};

} // namespace

#define EIGVALS(T)                                                                                                          \
    std::ptrdiff_t n, std::ptrdiff_t count, KESL_MATRIX_OF(const T, a), KESL_VECTOR_OF(T, wr), KESL_VECTOR_OF(T, wi),       \
        int *info
KESL_FUNCTIONS(eigvals, EIGVALS, call<EigVals>(sizes(n), count, info, KESL_MATRIX(a), KESL_VECTOR(wr), KESL_VECTOR(wi)))

} // namespace kesl::stacks
