#include "stacks/lu.h"
#include "stacks/names.h"

namespace kesl::stacks {
namespace {

// A = L L^T, column by column, in the lower triangle (Golub & Van Loan, Matrix Computations, 4.2). Returns the order of the
// first leading minor that is not positive; what follows it has no meaning. The inverse of a root is the root times the
// inverse, which are computed at the same time; where that overflows, with care.
template <class V, class N> [[gnu::always_inline]] inline IndexOf<V> factorCholesky(Tile<V, N, N>& a, bool isCareful)
{
    IndexOf<V> info{};
    loop<N>(0, a.n, [&](int j) KESL_INLINE {
        const IndexOf<V> bad = ~(a(j, j) > 0);
        info = (bad & (info == 0)) ? index<V>(j + 1) : info;
        if (isCareful) [[unlikely]]
            a(j, j) = bad ? splat<V>(1) : a(j, j);
        const V d = sqrt(a(j, j)), reciprocal = 1 / a(j, j);
        V inverse = d * reciprocal;
        if (isCareful) [[unlikely]]
            inverse = isFinite(reciprocal) ? inverse : 1 / d;
        a(j, j) = d;
        loop<N>(j + 1, a.n, [&](int i) KESL_INLINE { a(i, j) *= inverse; });
        loop<N>(j + 1, a.n,
                [&](int i) KESL_INLINE { loop<N>(j + 1, i + 1, [&](int k) KESL_INLINE { a(i, k) -= a(i, j) * a(k, j); }); });
    });
    return info;
}

// X = L^-T L^-1 B in place of B, with the inverse of each diagonal element of L.
template <class V, class N, class M>
[[gnu::always_inline]] inline void solveCholesky(const Tile<V, N, N>& l, const V* inverse, Tile<V, N, M>& b, bool isCareful)
{
    const auto divide = [&](int k) KESL_INLINE {
        divideBy(l(k, k), inverse[k], isCareful,
                 [&](auto by) KESL_INLINE { loop<M>(0, b.m, [&](int j) KESL_INLINE { by(b(k, j)); }); });
    };
    loop<N>(0, b.n, [&](int k) KESL_INLINE {
        divide(k);
        loop<N>(k + 1, b.n,
                [&](int i) KESL_INLINE { loop<M>(0, b.m, [&](int j) KESL_INLINE { b(i, j) -= l(i, k) * b(k, j); }); });
    });
    loopDown<N>(0, b.n, [&](int k) KESL_INLINE {
        divide(k);
        loop<N>(0, k, [&](int i) KESL_INLINE { loop<M>(0, b.m, [&](int j) KESL_INLINE { b(i, j) -= l(k, i) * b(k, j); }); });
    });
}

struct Cholesky {
    static constexpr int limits[] = {largestSize};
    static auto shapes(auto n) { return std::tuple(Shape(n, n), Shape(n, n)); }
    static double cost(double n) { return 15 * n * n * (n + 2); }

    template <class V, class N> static IndexOf<V> pack(Objects k, N n, const auto& a, const auto& l)
    {
        Tile<V, N, N> t(n, n);
        Preparation<V> prepared;
        IndexOf<V> info, unclear;
        do {
            a.load(k, t);
            each(t, [&](int i, int j) KESL_INLINE { t(i, j) = j > i ? V{} : t(i, j); });
            prepared.prepare(t);
            V trace{}; // of a definite matrix: no magnitude is larger
            loop<N>(0, t.n, [&](int i) KESL_INLINE { trace += t(i, i); });
            info = factorCholesky(t, prepared.isCareful);
            unclear = needNoScale(trace) ? 0 - info : index<V>(-1);
        } while (prepared.again(unclear));
        info = prepared.info(info);
        if (prepared.isCareful) {
            scaleBy(1 / sqrt(prepared.scale), t);
            spoil(info != 0, t);
        }
        l.store(k, t);
        return info;
    }
};

struct CholeskySolve {
    static constexpr int limits[] = {largestSize, 0};
    static auto shapes(auto n, auto k) { return std::tuple(Shape(n, n), Shape(n, k), Shape(n, k)); }
    static double cost(double n, double k) { return 60 * n * n * k; }
    static auto withOrders(auto f, std::ptrdiff_t n, std::ptrdiff_t k)
    {
        return withOrder(n, [&](auto order) { return f(order, k); });
    }

    template <class V, class N>
    static IndexOf<V> pack(Objects objects, N n, std::ptrdiff_t k, const auto& a, const auto& b, const auto& x)
    {
        Tile<V, N, N> l(n, n);
        a.load(objects, l);
        V inverse[most<N>], sum{}, largest{};
        loop<N>(0, l.n, [&](int i) KESL_INLINE {
            inverse[i] = 1 / l(i, i);
            largest = larger(abs(inverse[i]), largest);
        });
        eachOfLower(l, [&](int i, int j) KESL_INLINE { sum += l(i, j); });
        const bool isCareful = any(~(isFinite(abs(sum)) & isFinite(largest)));
        IndexOf<V> info{};
        if (isCareful) [[unlikely]] {
            loop<N>(0, l.n, [&](int i) KESL_INLINE { info = ((l(i, i) == 0) & (info == 0)) ? index<V>(i + 1) : info; });
            info = lowerNotFinite(l) ? index<V>(-1) : info;
            makeHarmless(info != 0, l);
            loop<N>(0, l.n, [&](int i) KESL_INLINE { inverse[i] = 1 / l(i, i); });
        }
        solveColumns<V>(objects, n, k, b, x, [&](auto& columns) KESL_INLINE {
            solveCholesky(l, inverse, columns, isCareful);
            if (isCareful) spoil(info != 0, columns);
        });
        return info;
    }
};

#define FACTOR(T) std::ptrdiff_t n, std::ptrdiff_t count, KESL_MATRIX_OF(const T, a), KESL_MATRIX_OF(T, l), int *info
#define SOLVE(T)                                                                                                            \
    std::ptrdiff_t n, std::ptrdiff_t k, std::ptrdiff_t count, KESL_MATRIX_OF(const T, l), KESL_MATRIX_OF(const T, b),       \
        KESL_MATRIX_OF(T, x), int *info
} // namespace

KESL_FUNCTIONS(cholesky, FACTOR, call<Cholesky>(sizes(n), count, info, KESL_MATRIX(a), KESL_MATRIX(l)))
KESL_FUNCTIONS(cholesky_solve, SOLVE,
               call<CholeskySolve>(sizes(n, k), count, info, KESL_MATRIX(l), KESL_MATRIX(b), KESL_MATRIX(x)))

} // namespace kesl::stacks
