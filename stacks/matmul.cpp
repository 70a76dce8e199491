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

// The same for single objects, by rows of b, which have no gaps. Square ones: all of b is read before anything is stored, and a
// row of a before that of c, so c may be either of them.
template <int n> [[gnu::always_inline]] inline void multiplySquares(int count, auto a, auto b, auto c)
{
    using Row = kesl::Row<std::decay_t<decltype(c(0)(0, 0))>, n>;
    for (int l = 0; l < count; ++l) {
        const auto left = a(l), right = b(l);
        const auto to = c(l);
        Row rows[n];
#pragma GCC unroll 10
        for (int i = 0; i < n; ++i) rows[i] = Row::from(right.row(i));
#pragma GCC unroll 10
        for (int i = 0; i < n; ++i) rowTimes<false, 0>(left, i, rows).to(to.row(i));
    }
}
constexpr int longRow = 7, largestSquare = 10; // squares of such orders have code of their own
template <int n = largestSquare> [[gnu::noinline]] void multiplySquares(int count, int order, auto a, auto b, auto c)
{
    if constexpr (n > longRow)
        if (order < n) return multiplySquares<n - 1>(count, order, a, b, c);
    multiplySquares<n>(count, a, b, c);
}

// Of any size, where c is neither a nor b; and with so few columns that four rows of sums stay in registers.
[[gnu::noinline]] void multiplyByRows(int count, int m, int k, int n, auto a, auto b, auto c)
{
    for (int l = 0; l < count; ++l)
        byFours(m, [&, left = a(l), right = b(l), to = c(l)](auto height, std::int64_t i) {
            kesl::columns<height, widest, true>(noStart<std::decay_t<decltype(to(0, 0))>>, left, right, to, i, 0, n, k);
        });
}
template <class T> constexpr int fewColumnsAre = std::min(16, 2 * lanes<Pack<T>>);
template <int few> [[gnu::noinline]] void multiplyFewColumns(int count, int m, int k, int n, auto a, auto b, auto c)
{
    if constexpr (few < longRow) return multiplyByRows(count, m, k, n, a, b, c);
    else if (n < few) return multiplyFewColumns<few - 1>(count, m, k, n, a, b, c);
    else
        for (int l = 0; l < count; ++l)
            byFours(m, [&, left = a(l), right = b(l), to = c(l)](auto height, std::int64_t i) KESL_INLINE {
                fewColumns<height, few>(noStart<std::decay_t<decltype(to(0, 0))>>, left, right, to, i, k);
            });
}

// An operand as its transpose.
template <class O> struct TransposeOf {
    const O& o;
    bool hasRows() const { return o.hasColumns(); }
    auto rows(Objects k) const { return o.columns(k); }
    auto grids(Objects k) const { return o.transposes(k); }
};
template <class O> TransposeOf(const O&) -> TransposeOf<O>;

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
            const auto byRows = [&](const auto& left, const auto& right, const auto& to) {
                if (!left.hasRows() || !right.hasRows() || !to.hasRows()) return false;
                multiplySquares<n>(objects.count, left.rows(objects), right.rows(objects), to.rows(objects));
                return true;
            };
            if (byRows(a, b, c) || byRows(TransposeOf{b}, TransposeOf{a}, TransposeOf{c})) return;
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
        const bool mayStore = k > 0 && !c.isAt(a) && !c.isAt(b); // before all of a and b is read
        const auto byRows = [&](std::ptrdiff_t height, std::ptrdiff_t width, const auto& left, const auto& right,
                                const auto& to) {
            if (width < longRow || std::max({height, k, width}) > INT_MAX || !right.hasRows() || !to.hasRows()) return false;
            const int count = objects.count, h = int(height), d = int(k), w = int(width);
            const auto at = [&](const auto& x) { return x.rows(objects); };
            if (left.hasRows() && h == d && d == w && w <= largestSquare)
                multiplySquares(count, w, at(left), at(right), at(to));
            else if (!mayStore) return false;
            else if (constexpr int few = fewColumnsAre<ElementOf<V>>; left.hasRows() && w <= few)
                multiplyFewColumns<few>(count, h, d, w, at(left), at(right), at(to));
            else multiplyByRows(count, h, d, w, left.grids(objects), right.grids(objects), to.grids(objects));
            return true;
        };
        if (byRows(m, n, a, b, c) || byRows(n, m, TransposeOf{b}, TransposeOf{a}, TransposeOf{c})) return; // c^T = b^T a^T
        packByBlocks<V>(objects, m, k, n, a, b, c);
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
