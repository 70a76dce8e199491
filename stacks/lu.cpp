#include "stacks/lu.h"
#include "stacks/names.h"

namespace kesl::stacks {
namespace {

struct LU {
    static constexpr int limits[] = {largestSize};
    static auto shapes(auto n) { return std::tuple(Shape(n, n), Shape(n, n), Shape(Fixed<1>{}, n)); }
    static double cost(double n) { return 30 * n * n * (n + 2); }

    template <class V, class N> static IndexOf<V> pack(Objects k, N n, const auto& a, const auto& lu, const auto& pivots)
    {
        Tile<V, N, N> t(n, n);
        a.load(k, t);
        const Preparation<V> prepared(t);
        Pivots<V, N> p;
        factorLU(t, p);
        if (prepared.isScaled) eachOfLower(t, [&](int i, int j) KESL_INLINE { t(j, i) *= 1 / prepared.scale; });
        const IndexOf<V> info = prepared.info(index<V>(0));
        Tile<IndexOf<V>, Fixed<1>, N> places(Fixed<1>{}, n);
        loop<N>(0, t.n, [&](int i) KESL_INLINE { places(0, i) = info != 0 ? index<V>(0) : p[i] + 1; });
        if (any(info != 0)) spoil(info != 0, t);
        lu.store(k, t);
        pivots.store(k, places);
        return info;
    }
};

struct LUSolve {
    static constexpr int limits[] = {largestSize, 0};
    static auto shapes(auto n, auto k) { return std::tuple(Shape(n, n), Shape(Fixed<1>{}, n), Shape(n, k), Shape(n, k)); }
    static double cost(double n, double k) { return 60 * n * n * k; }
    static auto withOrders(auto f, std::ptrdiff_t n, std::ptrdiff_t k)
    {
        return withOrder(n, [&](auto order) { return f(order, k); });
    }

    template <class V, class N> static IndexOf<V> pack(Objects objects, N n, std::ptrdiff_t k, const auto& a,
                                                       const auto& pivots, const auto& b, const auto& x)
    {
        Tile<V, N, N> lu(n, n);
        Tile<IndexOf<V>, Fixed<1>, N> places(Fixed<1>{}, n);
        a.load(objects, lu);
        pivots.load(objects, places);
        Pivots<V, N> p;
        const bool areOrdinary = !any(~ordinaryFactors(lu));
        IndexOf<V> refused = areOrdinary ? IndexOf<V>{} : notFinite(lu), info{};
        loop<N>(0, lu.n, [&](int i) KESL_INLINE {
            p[i] = places(0, i) - 1;
            refused |= (p[i] < i) | (p[i] >= lu.n);
            info = ((lu(i, i) == 0) & (info == 0)) ? index<V>(i + 1) : info;
        });
        info = refused ? index<V>(-1) : info;
        if (any(info != 0)) [[unlikely]]
            makeHarmless(info != 0, lu);
        const V scale = areOrdinary ? splat<V>(1) : eliminationScale(largestOfUpper(lu), n);
        const bool isScaled = !areOrdinary && any(scale != 1);
        if (isScaled) [[unlikely]]
            eachOfLower(lu, [&](int i, int j) KESL_INLINE { lu(j, i) *= scale; });
        loop<N>(0, lu.n, [&](int i) KESL_INLINE { p.inverse[i] = 1 / lu(i, i); });

        solveColumns<V>(objects, n, k, b, x, [&](auto& columns) KESL_INLINE {
            if (isScaled) scaleBy(scale, columns);
            solveLU(lu, p, columns);
            if (any(info != 0)) spoil(info != 0, columns);
        });
        return info;
    }
};

#define FACTOR(T)                                                                                                           \
    std::ptrdiff_t n, std::ptrdiff_t count, KESL_MATRIX_OF(const T, a), KESL_MATRIX_OF(T, lu), KESL_VECTOR_OF(int, pivots), \
        int *info
#define SOLVE(T)                                                                                                            \
    std::ptrdiff_t n, std::ptrdiff_t k, std::ptrdiff_t count, KESL_MATRIX_OF(const T, lu),                                  \
        KESL_VECTOR_OF(const int, pivots), KESL_MATRIX_OF(const T, b), KESL_MATRIX_OF(T, x), int *info
} // namespace

KESL_FUNCTIONS(lu, FACTOR, call<LU>(sizes(n), count, info, KESL_MATRIX(a), KESL_MATRIX(lu), KESL_VECTOR(pivots)))
KESL_FUNCTIONS(lu_solve, SOLVE,
               call<LUSolve>(sizes(n, k), count, info, KESL_MATRIX(lu), KESL_VECTOR(pivots), KESL_MATRIX(b), KESL_MATRIX(x)))

} // namespace kesl::stacks
