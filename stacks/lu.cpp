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
        Pivots<V, N> p;
        Preparation<V> prepared;
        const IndexOf<V> found = factorLU([&]() KESL_INLINE { a.load(k, t); }, t, p, prepared);
        const IndexOf<V> info = found < 0 ? found : index<V>(0); // a zero pivot is no failure
        if (prepared.isCareful) {
            eachOfLower(t, [&](int i, int j) KESL_INLINE { t(j, i) *= 1 / prepared.scale; });
            spoil(info != 0, t);
        }
        Tile<IndexOf<V>, Fixed<1>, N> places(Fixed<1>{}, n);
        loop<N>(0, t.n, [&](int i) KESL_INLINE { places(0, i) = info != 0 ? index<V>(0) : p[i] + 1; });
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
        loop<N>(0, lu.n, [&](int i) KESL_INLINE {
            p[i] = places(0, i) - 1;
            p.inverse[i] = 1 / lu(i, i);
        });
        const IndexOf<V> unusual = ~areUsual(lu, p);
        const bool isCareful = any(unusual);
        IndexOf<V> info{};
        V scale = splat<V>(1);
        if (isCareful) [[unlikely]] {
            info = refuse(lu, p);
            makeHarmless(info != 0, lu);
            scale = unusual ? eliminationScale(largestOfUpper(lu), n) : scale;
            eachOfLower(lu, [&](int i, int j) KESL_INLINE { lu(j, i) *= scale; });
            loop<N>(0, lu.n, [&](int i) KESL_INLINE { p.inverse[i] = 1 / lu(i, i); });
        }
        solveColumns<V>(objects, n, k, b, x, [&](auto& columns) KESL_INLINE {
            if (isCareful) scaleBy(scale, columns);
            solveLU(lu, p, columns, isCareful);
            if (isCareful) spoil(info != 0, columns);
        });
        return info;
    }

private:
    // Lanes where the factors can be used as they are.
    template <class V, class N>
    [[gnu::always_inline]] static IndexOf<V> areUsual(const Tile<V, N, N>& lu, const Pivots<V, N>& p)
    {
        V lower{}, upper{}, inverse{};
        IndexOf<V> inside = index<V>(-1);
        eachOfLower(lu, [&](int i, int j) KESL_INLINE {
            upper += abs(lu(j, i));
            if (j < i) lower += lu(i, j);
        });
        loop<N>(0, lu.n, [&](int i) KESL_INLINE {
            inverse = larger(abs(p.inverse[i]), inverse);
            inside &= (p[i] >= i) & (p[i] < lu.n);
        });
        return inside & needNoScale(upper) & isFinite(abs(lower)) & isFinite(inverse);
    }
    // The infos: factors that are not finite, rows that are none, the first pivot that is 0.
    template <class V, class N> static IndexOf<V> refuse(const Tile<V, N, N>& lu, const Pivots<V, N>& p)
    {
        IndexOf<V> refused = notFinite(lu), info{};
        loop<N>(0, lu.n, [&](int i) KESL_INLINE {
            refused |= (p[i] < i) | (p[i] >= lu.n);
            info = ((lu(i, i) == 0) & (info == 0)) ? index<V>(i + 1) : info;
        });
        return refused ? index<V>(-1) : info;
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
