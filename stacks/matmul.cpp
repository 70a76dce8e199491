#include "products/tiles.h"
#include "stacks/names.h"

#include <climits>

namespace kesl::stacks {
namespace {

// c = a b, or c += a b if it goes on with a sum.
template <class V, class M, class K, class N>
[[gnu::always_inline]] inline void multiply(const Tile<V, M, K>& a, const Tile<V, K, N>& b, Tile<V, M, N>& c, bool goesOn)
{
    each(c, [&](int i, int j) KESL_INLINE {
        V sum = goesOn ? c(i, j) + a(i, 0) * b(0, j) : a(i, 0) * b(0, j);
        loop<K>(1, a.m, [&](int k) KESL_INLINE { sum += a(i, k) * b(k, j); });
        c(i, j) = sum;
    });
}

// The same for single objects without gaps in their rows, by rows of b. All of b is read before anything is stored, and a row
// of a before that of c: c may be either of them.
template <int n, class T>
[[gnu::always_inline]] inline void multiplyByRows(kesl::Rows<const T> a, kesl::Rows<const T> b, kesl::Rows<T> c)
{
    Row<T, n> rows[n];
#pragma GCC unroll 8
    for (int i = 0; i < n; ++i) rows[i] = Row<T, n>::from(b.row(i));
#pragma GCC unroll 8
    for (int i = 0; i < n; ++i) rowTimes<false, 0>(a, i, rows).to(c.row(i));
}

// Of any size, where c is neither a nor b.
template <class T> [[gnu::noinline]] void multiplyByRows(Grid<const T> a, Grid<const T> b, Grid<T> c, int m, int k, int n)
{
    byFours(m, [&](auto height, std::int64_t i) { kesl::columns<height, widest, true>(noStart<T>, a, b, c, i, 0, n, k); });
}

struct Matmul {
    static constexpr bool neverFails = true;
    static constexpr int limits[] = {0, 0, 0};
    static auto shapes(auto m, auto k, auto n) { return std::tuple(Shape(m, k), Shape(k, n), Shape(m, n)); }
    static double cost(double m, double k, double n) { return 200 + 60 * m * k * n; }

    // Square matrices, and square ones times a vector, have code of their own.
    static auto withOrders(auto f, std::ptrdiff_t m, std::ptrdiff_t k, std::ptrdiff_t n)
    {
        const auto square = [&](auto order) {
            if constexpr (isFixed<decltype(order)>) return n == 1 ? f(order, order, Fixed<1>{}) : f(order, order, order);
            else return f(m, k, n);
        };
        if (m == k && (n == k || n == 1) && m <= 6) return withOrder(m, square);
        return f(m, k, n);
    }

    template <class V, class N, class C>
    static void pack(Objects objects, N m, N k, C n, const auto& a, const auto& b, const auto& c)
    {
        if constexpr (std::is_same_v<N, C> && m >= 4) {
            const auto eachObject = [&](auto left, auto right, auto to) {
                for (int l = 0; l < objects.count; ++l) multiplyByRows<n>(left(l), right(l), to(l));
            };
            if (a.hasRows() && b.hasRows() && c.hasRows())
                return eachObject(a.rows(objects), b.rows(objects), c.rows(objects));
            if (a.hasColumns() && b.hasColumns() && c.hasColumns()) // c^T = b^T a^T
                return eachObject(b.columns(objects), a.columns(objects), c.columns(objects));
        }
        Tile<V, N, N> s(m, k);
        Tile<V, N, C> t(k, n), x(m, n);
        a.load(objects, s);
        b.load(objects, t);
        multiply(s, t, x, false);
        c.store(objects, x);
    }

    // Any sizes. Long contiguous rows of b and c, or columns of a and c, go object by object.
    template <class V> static void pack(Objects objects, std::ptrdiff_t m, std::ptrdiff_t k, std::ptrdiff_t n, const auto& a,
                                        const auto& b, const auto& c)
    {
        constexpr std::ptrdiff_t longRow = 7;
        const bool isInPlace = c.isAt(a) || c.isAt(b);
        if (isInPlace || k == 0 || std::max({m, k, n}) > INT_MAX) return packByBlocks<V>(objects, m, k, n, a, b, c);
        if (n >= longRow && b.hasRows() && c.hasRows())
            for (int l = 0; l < objects.count; ++l)
                multiplyByRows(a.grid(objects, l), b.grid(objects, l), c.grid(objects, l), int(m), int(k), int(n));
        else if (m >= longRow && a.hasColumns() && c.hasColumns()) // c^T = b^T a^T
            for (int l = 0; l < objects.count; ++l)
                multiplyByRows(b.transpose(objects, l), a.transpose(objects, l), c.transpose(objects, l), int(n), int(k),
                               int(m));
        else packByBlocks<V>(objects, m, k, n, a, b, c);
    }

private:
    // Block by block of c. Whole tiles if they are large enough, so that c may be a or b.
    template <class V> static void packByBlocks(Objects objects, std::ptrdiff_t m, std::ptrdiff_t k, std::ptrdiff_t n,
                                                const auto& a, const auto& b, const auto& c)
    {
        const std::ptrdiff_t block = std::max({m, k, n}) <= largestSize ? largestSize : 8;
        const auto part = [&](std::ptrdiff_t size, std::ptrdiff_t from, std::ptrdiff_t most) {
            return int(std::min(size - from, most));
        };
        for (std::ptrdiff_t i = 0; i < m; i += block)
            for (std::ptrdiff_t j = 0; j < n; j += block) {
                const int rows = part(m, i, block), columns = part(n, j, block);
                Tile<V, int, int> x(rows, columns);
                if (k == 0) scaleToZero(x);
                for (std::ptrdiff_t l = 0; l < k; l += largestSize) {
                    Tile<V, int, int> s(rows, part(k, l, largestSize)), t(s.m, columns);
                    a.load(objects, s, i, l);
                    b.load(objects, t, l, j);
                    multiply(s, t, x, l > 0);
                }
                c.store(objects, x, i, j);
            }
    }

    template <class V> static void scaleToZero(Tile<V, int, int>& x)
    {
        for (int i = 0; i < x.n; ++i)
            for (int j = 0; j < x.m; ++j) x(i, j) = V{};
    }
};

#define MATMUL(T)                                                                                                           \
    std::ptrdiff_t m, std::ptrdiff_t k, std::ptrdiff_t n, std::ptrdiff_t count, KESL_MATRIX_OF(const T, a),                 \
        KESL_MATRIX_OF(const T, b), KESL_MATRIX_OF(T, c), int *info
} // namespace

KESL_FUNCTIONS(matmul, MATMUL, call<Matmul>(sizes(m, k, n), count, info, KESL_MATRIX(a), KESL_MATRIX(b), KESL_MATRIX(c)))

} // namespace kesl::stacks
