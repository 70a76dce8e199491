#include "stacks/svd.h"
#include "stacks/names.h"

namespace kesl::stacks {
namespace {

// The tall one of a and its transpose, its columns as the rows of the tile.
template <class V, class N, class M> void loadTall(Objects k, const auto& a, bool isTall, Tile<V, N, M>& tall)
{
    if (!isTall) return a.load(k, tall);
    Tile<V, M, N> rows(tall.columns(), tall.rows());
    a.load(k, rows);
    transpose(rows, tall);
}
auto least(auto m, auto n) { return m < n ? m : n; }
auto greatest(auto m, auto n) { return m < n ? n : m; }

struct SvdVals {
    static constexpr int limits[] = {largestSize, largestSize};
    static auto shapes(auto m, auto n) { return std::tuple(Shape(m, n), Shape(Fixed<1>{}, least(m, n))); }
    static double cost(double m, double n) { return 90 * m * n * (least(m, n) + 6); }
    static auto withOrders(auto f, std::ptrdiff_t m, std::ptrdiff_t n) { return withSquare<4>(m, n, f); }

    template <class V, class M, class N> static IndexOf<V> pack(Objects k, M m, N n, const auto& a, const auto& s)
    {
        const N order = least(m, n);
        Tile<V, N, M> tall(order, greatest(m, n));
        loadTall(k, a, m >= n, tall);
        Tile<V, N, N> right(order, order);
        Tile<V, Fixed<1>, N> values({}, order);
        const IndexOf<V> info = svd<false>(tall, values, right);
        if (any(info != 0)) spoil(info != 0, values);
        s.store(k, values);
        return info;
    }
};

struct Svd {
    static constexpr int limits[] = {largestSize, largestSize};
    static auto shapes(auto m, auto n)
    {
        const auto p = least(m, n);
        return std::tuple(Shape(m, n), Shape(m, p), Shape(Fixed<1>{}, p), Shape(p, n));
    }
    static double cost(double m, double n) { return 120 * m * n * (least(m, n) + 6); }
    static auto withOrders(auto f, std::ptrdiff_t m, std::ptrdiff_t n) { return withSquare<4>(m, n, f); }

    template <class V, class M, class N>
    static IndexOf<V> pack(Objects k, M m, N n, const auto& a, const auto& u, const auto& s, const auto& vt)
    {
        const N order = least(m, n);
        Tile<V, N, M> tall(order, greatest(m, n));
        loadTall(k, a, m >= n, tall);
        Tile<V, N, N> right(order, order);
        Tile<V, Fixed<1>, N> values({}, order);
        const IndexOf<V> info = svd<true>(tall, values, right);
        if (any(info != 0)) spoil(info != 0, tall), spoil(info != 0, values), spoil(info != 0, right);
        s.store(k, values);
        if (m >= n) {
            Tile<V, M, N> left(m, n);
            transpose(tall, left);
            u.store(k, left);
            vt.store(k, right);
        } else { // of the transpose: left and right exchanged, so it is the others that shall point forwards
            const auto length = tall.columns();
            for (int j = 0; j < order; ++j) {
                const MaskOf<V> back = pointsBack(&tall(j, 0), length);
                turn(back, &tall(j, 0), length);
                turn(back, &right(j, 0), order);
            }
            transpose(right);
            u.store(k, right);
            vt.store(k, tall);
        }
        return info;
    }
};

#define SVDVALS(T)                                                                                                          \
    std::ptrdiff_t m, std::ptrdiff_t n, std::ptrdiff_t count, KESL_MATRIX_OF(const T, a), KESL_VECTOR_OF(T, s), int *info
#define SVD(T)                                                                                                              \
    std::ptrdiff_t m, std::ptrdiff_t n, std::ptrdiff_t count, KESL_MATRIX_OF(const T, a), KESL_MATRIX_OF(T, u),             \
        KESL_VECTOR_OF(T, s), KESL_MATRIX_OF(T, vt), int *info
} // namespace

KESL_FUNCTIONS(svdvals, SVDVALS, call<SvdVals>(sizes(m, n), count, info, KESL_MATRIX(a), KESL_VECTOR(s)))
KESL_FUNCTIONS(svd, SVD,
               call<Svd>(sizes(m, n), count, info, KESL_MATRIX(a), KESL_MATRIX(u), KESL_VECTOR(s), KESL_MATRIX(vt)))

} // namespace kesl::stacks
