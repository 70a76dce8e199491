// Adjugates of orders up to 4 and determinants up to order 5 as sums of products, and when these are as accurate as elimination.
#pragma once
#include "stacks/scale.h"

#include <array>
#include <bit>
#include <utility>

namespace kesl::stacks {

template <class V, int n> using Square = Tile<V, Fixed<n>, Fixed<n>>;

template <class V> Square<V, 1> adjugate(const Square<V, 1>&)
{
    Square<V, 1> x({}, {});
    x(0, 0) = splat<V>(1);
    return x;
}
template <class V> Square<V, 2> adjugate(const Square<V, 2>& a)
{
    Square<V, 2> x({}, {});
    x(0, 0) = a(1, 1), x(0, 1) = 0 - a(0, 1), x(1, 0) = 0 - a(1, 0), x(1, 1) = a(0, 0);
    return x;
}
template <class V> [[gnu::always_inline]] inline Square<V, 3> adjugate(const Square<V, 3>& a)
{
    Square<V, 3> x({}, {});
    each(a, [&](int i, int j) KESL_INLINE {
        const int i1 = (i + 1) % 3, i2 = (i + 2) % 3, j1 = (j + 1) % 3, j2 = (j + 2) % 3;
        x(j, i) = a(i1, j1) * a(i2, j2) - a(i1, j2) * a(i2, j1);
    });
    return x;
}
// From the determinants of two columns of the upper two rows, and of the lower two.
template <class V> [[gnu::always_inline]] inline Square<V, 4> adjugate(const Square<V, 4>& a)
{
    V upper[4][4], lower[4][4];
    eachOfLower(a, [&](int q, int p) KESL_INLINE {
        upper[p][q] = a(0, p) * a(1, q) - a(0, q) * a(1, p);
        lower[p][q] = a(2, p) * a(3, q) - a(2, q) * a(3, p);
    });
    Square<V, 4> x({}, {});
    each(a, [&](int i, int j) KESL_INLINE {
        const int row = i ^ 1, p = j == 0, q = 1 + (j <= 1), r = 2 + (j <= 2); // the other row of the two; the other columns
        const auto& two = i < 2 ? lower : upper;
        const V minor = a(row, p) * two[q][r] - a(row, q) * two[p][r] + a(row, r) * two[p][q];
        x(j, i) = (i + j) % 2 ? 0 - minor : minor;
    });
    return x;
}

// The first column of the adjugate alone: minors of more of the lower rows from those of fewer, each once. A set of columns is a
// bit mask; the minor of `set` is expanded along its first row, and `column` stands at this place among its columns.
struct Term {
    int set, rest, row, column, place;
};
template <int n> constexpr auto minorTerms = [] {
    std::array<Term, n * (1 << (n - 1))> terms{};
    std::size_t count = 0;
    for (int size = 1; size < n; ++size)
        for (int set = 0; set < 1 << n; ++set)
            for (int column = 0, place = 0; column < n && std::popcount(unsigned(set)) == size; ++column)
                if (set >> column & 1) terms[count++] = {set, set & ~(1 << column), n - size, column, place++};
    return std::pair(terms, count);
}();
template <class V, int n> [[gnu::always_inline]] inline Tile<V, Fixed<n>, Fixed<1>> cofactors(const Square<V, n>& a)
{
    V minors[1 << n];
    minors[0] = splat<V>(1);
    const auto add = [&]<int i>(std::integral_constant<int, i>) KESL_INLINE {
        constexpr Term t = minorTerms<n>.first[i];
        const V element = a(t.row, t.column), x = t.rest == 0 ? element : element * minors[t.rest];
        minors[t.set] = t.place == 0 ? x : t.place % 2 ? minors[t.set] - x : minors[t.set] + x;
    };
    [&]<int... i>(std::integer_sequence<int, i...>) KESL_INLINE {
        (add(std::integral_constant<int, i>{}), ...);
    }(std::make_integer_sequence<int, int(minorTerms<n>.second)>{});
    Tile<V, Fixed<n>, Fixed<1>> x({}, {});
    loop<Fixed<n>>(0, n, [&](int k) KESL_INLINE {
        const V minor = minors[((1 << n) - 1) & ~(1 << k)];
        x(k, 0) = k % 2 ? 0 - minor : minor;
    });
    return x;
}

// The determinant, from the first column of the adjugate.
template <class V, class N, class M>
[[gnu::always_inline]] inline V determinant(const Tile<V, N, N>& a, const Tile<V, N, M>& adjoint)
{
    V det = a(0, 0) * adjoint(0, 0);
    loop<N>(1, a.n, [&](int k) KESL_INLINE { det += a(0, k) * adjoint(k, 0); });
    return det;
}

// The largest element of an adjugate, or of its diagonal.
template <bool all, class V, int n> V largestCofactor(const Square<V, n>& adjoint)
{
    V largest{};
    each(adjoint, [&](int i, int j) KESL_INLINE {
        if (all || i == j) largest = larger(abs(adjoint(i, j)), largest);
    });
    return largest;
}

// The largest magnitude in each row tells how exact sums of products are: each product has one element of each row, so that
// the errors of a cofactor are units of the product of all but one of these magnitudes. All that is asked of them holds or
// not whatever the units, but for isOrdinary().
template <class V, int n> class RowSizes {
public:
    V first, least, largest, product;

    [[gnu::always_inline]] explicit RowSizes(const Square<V, n>& a)
    {
        loop<Fixed<n>>(0, n, [&](int i) KESL_INLINE {
            V size{};
            loop<Fixed<n>>(0, n, [&](int j) KESL_INLINE { size = larger(abs(a(i, j)), size); });
            first = i == 0 ? size : first;
            product = i == 0 ? size : product * size;
            largest = i == 0 ? size : larger(size, largest);
            least = i == 0 ? size : smaller(size, least);
        });
    }

    // Lanes where no row is much smaller than another, and the determinant is more than what is left when products cancel.
    IndexOf<V> areRegular(V det) const
    {
        const V noise = splat<V>(sizeof(ElementOf<V>) == 4 ? ElementOf<V>(0x1p-30) : ElementOf<V>(0x1p-60));
        constexpr int similar = 1 << (24 / std::max(n - 1, 1)); // so that the product of all is in the range of exponents
        return (least * splat<V>(similar) > largest) & (abs(det) > noise * product);
    }
    // Lanes where a cofactor, of the rows without one of this size, is so large that its errors are at most so many units of it.
    // Then the others have errors of the same size, which are no more than what a change of the matrix in its last digits makes.
    IndexOf<V> excuse(V cofactor, V size, ElementOf<V> most) const { return cofactor * size * splat<V>(most) > product; }
};

// Up to order 2 cofactors have no errors, and those of the determinant are units of its products: it is as accurate as the
// matrix allows unless these over- or underflow. Here with all exponents apart: its value, 0 or from 1 to 2 with its sign,
// times 2^exponent, for finite matrices. Where nothing over- or underflows these are the digits of the plain sum.
template <class V> struct SplitDeterminant {
    V value;
    IndexOf<V> exponent;

    explicit SplitDeterminant(const Square<V, 1>& a) { take(a(0, 0)); }
    explicit SplitDeterminant(const Square<V, 2>& a)
    {
        IndexOf<V> first, second;
        const V p = product(a(0, 0), a(1, 1), first), q = product(a(0, 1), a(1, 0), second);
        const IndexOf<V> larger = first > second ? first : second;
        const IndexOf<V> most = q == 0 ? first : p == 0 ? second : larger; // a product that is far smaller has no effect
        take(p * reduced(first - most) - q * reduced(second - most));
        exponent += most;
    }

private:
    void take(V x)
    {
        const V split = splitExponent(x, exponent);
        value = x == 0 ? V{} : split;
    }
    static V product(V x, V y, IndexOf<V>& exponent)
    {
        IndexOf<V> other;
        const V value = splitExponent(x, exponent) * splitExponent(y, other);
        exponent += other;
        return ((x == 0) | (y == 0)) ? V{} : value;
    }
    static V reduced(IndexOf<V> e) { return powerOfTwo<V>(e < -100 ? index<V>(-100) : e > 0 ? index<V>(0) : e); }
};

// Matrices that are not ordinary, brought near 1 by a power of two for each.
template <class V, int n> struct Normalised {
    IndexOf<V> exponent;
    TwoPowers<V> down;
    Square<V, n> near;

    explicit Normalised(const Square<V, n>& a) : exponent(exponentFor(largestOf(a))), down(0 - exponent), near(a)
    {
        for (V& element : near.e) element = down.times(element);
    }

private:
    static IndexOf<V> exponentFor(V largest)
    {
        IndexOf<V> e;
        splitExponent(largest, e);
        return isOrdinary<n>(largest) ? index<V>(0) : e;
    }
};

} // namespace kesl::stacks
