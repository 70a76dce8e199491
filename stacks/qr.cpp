#include "stacks/qr.h"
#include "stacks/names.h"

namespace kesl::stacks {
namespace {

struct Qr {
    static constexpr int limits[] = {largestSize, largestSize};
    static constexpr bool isTall = true;
    static auto shapes(auto m, auto n) { return std::tuple(Shape(m, n), Shape(m, n), Shape(n, n)); }
    static double cost(double m, double n) { return 100 * n * (m * n + 8); }
    static auto withOrders(auto f, std::ptrdiff_t m, std::ptrdiff_t n) { return withSquare<6>(m, n, f); }

    template <class V, class M, class N>
    static IndexOf<V> pack(Objects k, M m, N n, const auto& a, const auto& q, const auto& r)
    {
        Tile<V, M, N> x(m, n);
        Tile<V, N, M> columns(n, m);
        Tile<V, N, N> triangle(n, n);
        a.load(k, x);
        transpose(x, columns);
        const IndexOf<V> info = qr(columns, triangle);
        transpose(columns, x);
        transpose(triangle);
        if (any(info != 0)) spoil(info != 0, x), spoil(info != 0, triangle);
        q.store(k, x);
        r.store(k, triangle);
        return info;
    }
};

struct LstSq {
    static constexpr int limits[] = {largestSize, largestSize, 0};
    static constexpr bool isTall = true;
    static auto shapes(auto m, auto n, auto k) { return std::tuple(Shape(m, n), Shape(m, k), Shape(n, k)); }
    static double cost(double m, double n, double k) { return 50 * n * (m * (n + 2 * k) + 8); }
    static auto withOrders(auto f, std::ptrdiff_t m, std::ptrdiff_t n, std::ptrdiff_t k) { return f(int(m), int(n), k); }

    template <class V, class M, class N, class K>
    static IndexOf<V> pack(Objects objects, M m, N n, K k, const auto& a, const auto& b, const auto& x)
    {
        Tile<V, M, N> rows(m, n);
        Tile<V, N, M> columns(n, m);
        a.load(objects, rows);
        transpose(rows, columns);
        Factors<V, N> factors;
        const MaskOf<V> refused = factor(columns, factors);
        const IndexOf<V> info = rank(factors, refused, n);
        eachPanel<V>(m, k, [&]<class Width>(Tile<V, M, Width>& right, std::ptrdiff_t first) {
            b.load(objects, right, 0, first);
            Tile<V, N, Width> left(n, right.columns());
            for (int j = 0; j < right.m; ++j) {
                V y[most<M>];
                loop<M>(0, m, [&](int i) KESL_INLINE { y[i] = right(i, j); });
                leastSquares(columns, factors, y);
                loop<N>(0, n, [&](int i) KESL_INLINE { left(i, j) = y[i]; });
            }
            if (any(info != 0)) spoil(info != 0, left);
            x.store(objects, left, 0, first);
        });
        return info;
    }
};

#define QR(T)                                                                                                               \
    std::ptrdiff_t m, std::ptrdiff_t n, std::ptrdiff_t count, KESL_MATRIX_OF(const T, a), KESL_MATRIX_OF(T, q),             \
        KESL_MATRIX_OF(T, r), int *info
#define LSTSQ(T)                                                                                                            \
    std::ptrdiff_t m, std::ptrdiff_t n, std::ptrdiff_t k, std::ptrdiff_t count, KESL_MATRIX_OF(const T, a),                 \
        KESL_MATRIX_OF(const T, b), KESL_MATRIX_OF(T, x), int *info
} // namespace

KESL_FUNCTIONS(qr, QR, call<Qr>(sizes(m, n), count, info, KESL_MATRIX(a), KESL_MATRIX(q), KESL_MATRIX(r)))
KESL_FUNCTIONS(lstsq, LSTSQ, call<LstSq>(sizes(m, n, k), count, info, KESL_MATRIX(a), KESL_MATRIX(b), KESL_MATRIX(x)))

} // namespace kesl::stacks
