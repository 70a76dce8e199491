#include "stacks/lu.h"
#include "stacks/names.h"

namespace kesl::stacks {
namespace {

struct Solve {
    static constexpr int limits[] = {largestSize, 0};
    static auto shapes(auto n, auto k) { return std::tuple(Shape(n, n), Shape(n, k), Shape(n, k)); }
    static double cost(double n, double k) { return 30 * n * n * (n + 2 * k); }
    static auto withOrders(auto f, std::ptrdiff_t n, std::ptrdiff_t k)
    {
        return withOrder(n, [&](auto order) { return f(order, k); });
    }

    template <class V, class N>
    static IndexOf<V> pack(Objects objects, N n, std::ptrdiff_t k, const auto& a, const auto& b, const auto& x)
    {
        Tile<V, N, N> lu(n, n);
        Pivots<V, N> p;
        Preparation<V> prepared;
        const IndexOf<V> info = factorLU([&]() KESL_INLINE { a.load(objects, lu); }, lu, p, prepared);
        solveColumns<V>(objects, n, k, b, x, [&](auto& columns) KESL_INLINE {
            prepared.scaleLike(columns);
            solveLU(lu, p, columns, prepared.isCareful);
            if (prepared.isCareful) spoil(info != 0, columns);
        });
        return info;
    }
};

#define SOLVE(T)                                                                                                            \
    std::ptrdiff_t n, std::ptrdiff_t k, std::ptrdiff_t count, KESL_MATRIX_OF(const T, a), KESL_MATRIX_OF(const T, b),       \
        KESL_MATRIX_OF(T, x), int *info
} // namespace

KESL_FUNCTIONS(solve, SOLVE, call<Solve>(sizes(n, k), count, info, KESL_MATRIX(a), KESL_MATRIX(b), KESL_MATRIX(x)))

} // namespace kesl::stacks
