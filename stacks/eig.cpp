#include "stacks/general.h"
#include "stacks/names.h"

namespace kesl::stacks {
namespace {

struct Eig {
    static constexpr int limits[] = {largestSize};
    static auto shapes(auto n)
    {
        return std::tuple(Shape(n, n), Shape(Fixed<1>{}, n), Shape(Fixed<1>{}, n), Shape(n, n), Shape(n, n));
    }
    static double cost(double n) { return 2500 * n * n * (n + 2); }
    static auto withOrders(auto f, std::ptrdiff_t n) { return withGeneralOrder(f, n); }

    template <class V, class N>
    static IndexOf<V> pack(Objects k, N n, const auto& a, const auto& wr, const auto& wi, const auto& vr, const auto& vl)
    {
        Tile<V, N, N> t(n, n), right(n, n), left(n, n);
        Tile<V, Fixed<1>, N> re({}, n), im({}, n);
        a.load(k, t);
        const IndexOf<V> info = general<true>(t, re, im, vr.p ? &right : nullptr, vl.p ? &left : nullptr);
        wr.store(k, re), wi.store(k, im);
        if (vr.p) vr.store(k, right);
        if (vl.p) vl.store(k, left);
        return info;
    }
};

} // namespace

#define EIG(T)                                                                                                              \
    std::ptrdiff_t n, std::ptrdiff_t count, KESL_MATRIX_OF(const T, a), KESL_VECTOR_OF(T, wr), KESL_VECTOR_OF(T, wi),       \
        KESL_MATRIX_OF(T, vr), KESL_MATRIX_OF(T, vl), int *info
KESL_FUNCTIONS(eig, EIG,
               call<Eig>(sizes(n), count, info, KESL_MATRIX(a), KESL_VECTOR(wr), KESL_VECTOR(wi), optional(KESL_MATRIX(vr)),
                         optional(KESL_MATRIX(vl))))

} // namespace kesl::stacks
