// Symmetric eigenproblems: Householder's reduction to tridiagonal form (Martin, Reinsch and Wilkinson, Numer. Math. 11,
// 1968), then implicit QL iteration with Wilkinson's shift (Martin and Wilkinson, Numer. Math. 12, 1968; Wilkinson and
// Reinsch, Linear Algebra, II/2 to II/4). One text for values alone and with vectors, for one object and for packs. All
// tests against eps are absolute.
#pragma once
#include "frame/any_order.h"
#include "frame/call.h"
#include "frame/constants.h"
#include "frame/twice.h"

namespace kesl {

// ---- What the families differ in.
struct SymRules {
    bool testsSum, testsHead; // of the reduction: whether a column is passed over for its sum of squares, for its head
    bool vectors;
    bool reciprocal; // rotations by 1 / r; P is then the product of the values, each once
};
// clang-format off
//                                        sum    head   vectors reciprocal
constexpr SymRules symValuesSingle    = { false, false, false,  false };
constexpr SymRules symValuesArray     = { true,  true,  false,  false };
constexpr SymRules symVectorsSingle   = { false, true,  true,   false };
constexpr SymRules symVectorsArray    = { true,  true,  true,   true  };
// clang-format on

// Numbers of rows and columns, lane by lane.
template <class V> using Index = std::conditional_t<lanes<V> == 1, int, MaskOf<V>>;

// ---- Where numbers are kept: read as x(i, j), written by set(value, i, j). With `single` they are kept as floats, while
// all arithmetic is that of doubles.
template <class V> V singled(V x)
{
    if constexpr (lanes<V> == 1) return double(float(x));
    else if constexpr (requires { x.lower; }) return {singled(x.lower), singled(x.upper)};
    else return converted<V>(converted<Pack<float, int(sizeof(V)) / 2>>(x));
}
template <class V, bool single, int rows, int columns = 1> struct Local {
    V e[rows][columns];
    V operator()(int i, int j = 0) const { return e[i][j]; }
    void set(V x, int i, int j = 0)
    {
        if constexpr (single) e[i][j] = singled(x);
        else e[i][j] = x;
    }
};
template <class V, class View> struct InMemory { // elements in memory, in their own type
    View view;
    V operator()(int i, int j = 0) const { return view(i, j); }
    void set(V x, int i, int j = 0)
    {
        auto& e = view(i, j);
        e = std::remove_reference_t<decltype(e)>(x);
    }
};
template <class V, class View> InMemory<V, View> inMemory(View view) { return {view}; }
template <class V, class Kept, int step> struct InTile { // every step-th of packs in memory, kept as floats if V are doubles
    Unaligned<Kept>* e;
    int width;
    V operator()(int i, int j = 0) const { return converted<V>(Kept(e[(i * width + j) * step])); }
    void set(V x, int i, int j = 0) { e[(i * width + j) * step] = converted<Kept>(x); }
};

// Loops are written out for packs of a fixed order, which live in registers.
template <class V, class N> constexpr bool writtenOut = lanes<V> != 1 && !std::is_same_v<N, int>;
// f(i) for i = from .. to - 1.
template <bool out> [[gnu::always_inline]] inline void loop(int from, int to, auto f)
{
    if constexpr (out)
#pragma GCC unroll 8
        for (int i = from; i < to; ++i) f(i);
    else
        for (int i = from; i < to; ++i) f(i);
}
template <bool out, class V> [[gnu::always_inline]] inline V sum(int from, int to, auto term)
{
    V s = term(from);
    loop<out>(from + 1, to, [&](int i) KESL_INLINE { s = s + term(i); });
    return s;
}

// ---- The reduction. u is the reflector; the transformations are collected in z. Of the reduced matrix the diagonal and
// the subdiagonal are read: nothing else is brought up to date where it is final.
template <SymRules rules, class V>
[[gnu::always_inline]] inline void tridiagonalise(auto& a, auto& u, auto& z, auto n, ElementOf<V> eps)
{
    using T = ElementOf<V>;
    constexpr bool out = writtenOut<V, decltype(n)>;
    loop<out>(0, n - 2, [&](int k) KESL_INLINE {
        MaskOf<V> on = everywhere<V>();
        const V s = sum<out, V>(k + 1, n, [&](int i) KESL_INLINE { return a(i, k) * a(i, k); });
        if constexpr (rules.testsSum)
            if (on = without(on, eps >= s); !any(on)) return;
        const V alpha = sqrt(s), x = a(k + 1, k);
        loop<out>(k + 2, n, [&](int i) KESL_INLINE { u.set(a(i, k), i); });
        if constexpr (rules.testsHead)
            if (on = without(on, eps >= abs(alpha - x)); !any(on)) return;
        const V towards = choice(x > eps, alpha, -alpha);
        const MaskOf<V> small = eps >= abs(x);
        u.set(choice(small, alpha, x + towards), k + 1);
        const V h = choice(small, s + s, (s + towards * x) * T(2));
        if (on = without(on, eps >= h); !any(on)) return;
        const V beta = T(2) / h;

        loop<out>(k, n, [&](int c) KESL_INLINE {
            const V t = sum<out, V>(k + 1, n, [&](int i) KESL_INLINE { return a(i, c) * u(i); }) * beta;
            loop<out>(k + 1, c == k ? k + 2 : int(n),
                      [&](int i) KESL_INLINE { a.set(choice(on, a(i, c) - u(i) * t, a(i, c)), i, c); });
        });
        const auto fromRight = [&](auto& y, int r, int end) KESL_INLINE {
            const V t = sum<out, V>(k + 1, n, [&](int j) KESL_INLINE { return y(r, j) * u(j); }) * beta;
            loop<out>(k + 1, end, [&](int j) KESL_INLINE { y.set(choice(on, y(r, j) - u(j) * t, y(r, j)), r, j); });
        };
        loop<out>(k + 1, n, [&](int r) KESL_INLINE { fromRight(a, r, r == k + 1 ? k + 2 : int(n)); });
        if constexpr (rules.vectors) loop<out>(1, n, [&](int r) KESL_INLINE { fromRight(z, r, n); });
    });
}

// ---- The iteration, on the diagonal d and the subdiagonal e. It goes bottom-up; where it has to go top-down, `mirrored`,
// d and e and the columns of z are given in reverse, which makes the two forms one but for the closing at the first l.
// hit(m, where) is told each negligible subdiagonal found. False if 30 sweeps do not suffice.
template <SymRules rules, class V> [[gnu::always_inline]] inline bool
iterateQL(auto& d, auto& e, auto& z, auto n, MaskOf<V> mirrored, ElementOf<V> eps, auto hit)
{
    using T = ElementOf<V>;
    using Mask = MaskOf<V>;
    constexpr bool one = lanes<V> == 1;
    constexpr bool out = writtenOut<V, decltype(n)>;
    const auto set = [](Mask where, auto& x, V value, int i) KESL_INLINE { x.set(choice(where, value, x(i)), i); };

    const auto eigenvalue = [&](int l) KESL_INLINE {
        Mask active = everywhere<V>();
        for (int sweeps = 0;; ++sweeps) {
            Index<V> m{};
            Mask open = active;
#pragma GCC unroll 8
            for (int q = l; q > 0; --q) {
                const Mask found = open & (eps >= T(0.5) * abs(e(q - 1)));
                if constexpr (one)
                    if (!found) continue;
                m = choice(found, Index<V>{} + q, m);
                hit(q, found);
                open = without(open, found);
                if constexpr (one) break;
            }
            active = without(active, m == l);
            if (!any(active)) return true;
            if (sweeps == 30) return false;

            V g = (d(l - 1) - d(l)) / (e(l - 1) * T(2));
            V r = sqrt(g * g + T(1));
            V dm = d(0);
            if constexpr (one) dm = d(m);
            else loop<out>(1, l, [&](int q) KESL_INLINE { dm = choice(m == q, d(q), dm); });
            g = (dm - d(l)) + e(l - 1) / choice(g > eps, g + r, g - r);
            V s = splat<V>(1), c = s, p{}, r2{};
            Mask going = active;
            const auto rotate = [&](int i) KESL_INLINE {
                Mask on = one ? going : Mask(going & (m <= i));
                const V f = s * e(i), b = c * e(i);
                r = sqrt(f * f + g * g);
                if (i > 0) set(on & (m != i), e, r, i - 1);
                const Mask ends = on & (eps >= abs(r));
                if (any(ends)) [[unlikely]] {
                    set(ends, d, d(i) - p, i);
                    if constexpr (one) e.set(0, m);
                    else loop<out>(0, i + 1, [&](int q) KESL_INLINE { set(ends & (m == q), e, V{}, q); });
                    going = without(going, ends);
                    if constexpr (one) return;
                    on = without(on, ends);
                }
                const V inverse = T(1) / r;
                const V sine = rules.reciprocal ? f * inverse : f / r, cosine = rules.reciprocal ? g * inverse : g / r;
                if constexpr (rules.vectors)
                    loop<out>(0, n, [&](int row) KESL_INLINE {
                        V x = z(row, i), y = z(row, i + 1);
                        const V xOld = x, yOld = y;
                        if constexpr (rules.reciprocal) x = x * inverse, y = y * inverse;
                        const V along = rules.reciprocal ? g : cosine, across = rules.reciprocal ? f : sine;
                        z.set(choice(on, along * x + across * y, xOld), row, i);
                        z.set(choice(on, along * y - across * x, yOld), row, i + 1);
                    });
                const V base = d(i) - p, step = (d(i + 1) - base) * sine + (cosine + cosine) * b, move = step * sine;
                set(on, d, base + move, i);
                s = choice(on, sine, s), c = choice(on, cosine, c), r2 = choice(on, step, r2), p = choice(on, move, p);
                g = choice(on, step * cosine - b, g);
            };
            if constexpr (one)
                for (int i = m; going && i < l; ++i) rotate(i);
            else loop<out>(0, l, rotate);

            // A sweep that ends with almost nothing is not closed, but for the first eigenvalue from the top.
            Mask closes = without(going, eps >= abs(r2));
            if (l == n - 1) closes = closes | (going & mirrored);
            set(closes, d, d(l) - p, l);
            set(closes, e, g, l - 1);
        }
    };
    if constexpr (one) {
        for (int l = n - 1; l > 0; --l)
            if (!eigenvalue(l)) return false;
    } else
#pragma GCC unroll 8
        for (int l = n - 1; l > 0; --l)
            if (!eigenvalue(l)) return false;
    return true;
}

// ---- The values into descending order by selection, of equal ones the first, and the columns of z with them.
template <SymRules rules, class V> [[gnu::always_inline]] inline void sortDescending(auto& values, auto& z, auto n)
{
    constexpr bool out = writtenOut<V, decltype(n)>;
    const auto exchange = [&](MaskOf<V> where, int i, int k) KESL_INLINE {
        const auto swap = [&](auto& x, int r, int a, int b) KESL_INLINE {
            const V t = x(r, a);
            x.set(choice(where, x(r, b), t), r, a), x.set(choice(where, t, x(r, b)), r, b);
        };
        const V t = values(i);
        values.set(choice(where, values(k), t), i), values.set(choice(where, t, values(k)), k);
        if constexpr (rules.vectors) loop<out>(0, n, [&](int r) KESL_INLINE { swap(z, r, i, k); });
    };
    loop<out>(0, n - 1, [&](int i) KESL_INLINE {
        V best = values(i);
        Index<V> q = Index<V>{} + i;
        loop<out>(i + 1, n, [&](int j) KESL_INLINE {
            const MaskOf<V> greater = values(j) > best;
            best = choice(greater, values(j), best), q = choice(greater, Index<V>{} + j, q);
        });
        if constexpr (lanes<V> == 1) {
            if (q != i) exchange(true, i, q);
        } else loop<out>(i + 1, n, [&](int k) KESL_INLINE { exchange(q == k, i, k); });
    });
}

// ---- The diagonal and the subdiagonal of a, reversed where `mirrored`: apart; for one object whose order is known at run time
// only in a itself.
template <class V, bool single, int most> struct Band {
    Local<V, single, most> d, e;
    [[gnu::always_inline]] Band(auto& a, auto order, MaskOf<V> mirrored)
    {
        constexpr bool out = writtenOut<V, decltype(order)>;
        loop<out>(0, order,
                  [&](int i) KESL_INLINE { d.e[i][0] = choice(mirrored, a(order - 1 - i, order - 1 - i), a(i, i)); });
        loop<out>(0, order - 1,
                  [&](int i) KESL_INLINE { e.e[i][0] = choice(mirrored, a(order - 1 - i, order - 2 - i), a(i + 1, i)); });
    }
};
template <class V, class T> struct BandInPlace {
    struct Diagonal {
        T* first;
        std::ptrdiff_t step;
        T& operator()(int i, int) const { return first[i * step]; }
    };
    InMemory<V, Diagonal> d, e;
    BandInPlace(auto& a, int n, bool mirrored)
    {
        const std::ptrdiff_t step = mirrored ? -(std::ptrdiff_t(n) + 1) : n + 1;
        d.view = {mirrored ? &a.view(n - 1, n - 1) : &a.view(0, 0), step};
        e.view = {mirrored ? &a.view(n - 1, n - 2) : &a.view(1, 0), step};
    }
};
template <class V, bool single, int n>
Band<V, single, n> bandOf(Local<V, single, n, n>& a, Fixed<n> order, MaskOf<V> mirrored)
{
    return {a, order, mirrored};
}
template <class V, class Kept, int step>
Band<V, !std::is_same_v<V, Kept>, tallestSquare> bandOf(InTile<V, Kept, step>& a, int n, MaskOf<V> mirrored)
{
    return {a, n, mirrored};
}
template <class V, class T> BandInPlace<V, T> bandOf(InMemory<V, Rows<T>>& a, int n, bool mirrored)
{
    return {a, n, mirrored};
}

// ---- The whole, from order 3 upward: a is used up, the values go to `values`, the vectors to the columns of z. What
// `values` holds meanwhile is part of the interface, for one object: the reflectors, and values as they are found.
struct NoVectors {};
template <SymRules rules, class V> [[gnu::always_inline]] inline KeslStatus
symmetric(auto& a, auto& values, auto& z, auto n, ElementOf<V> eps, ElementOf<V> reductionEps, bool sortFirst)
{
    constexpr bool out = writtenOut<V, decltype(n)>;
    if constexpr (rules.vectors)
        loop<out>(0, n,
                  [&](int i) KESL_INLINE { loop<out>(0, n, [&](int j) KESL_INLINE { z.set(splat<V>(i == j), i, j); }); });
    tridiagonalise<rules, V>(a, values, z, n, reductionEps);

    const MaskOf<V> mirrored = abs(a(n - 1, n - 1)) > abs(a(0, 0));
    auto band = bandOf(a, n, mirrored);
    auto& d = band.d;
    const auto mirror = [&] {
        if constexpr (rules.vectors)
            loop<out>(0, n, [&](int r) KESL_INLINE {
                loop<out>(0, n / 2, [&](int j) KESL_INLINE {
                    const V x = z(r, j), y = z(r, n - 1 - j);
                    z.set(choice(mirrored, y, x), r, j), z.set(choice(mirrored, x, y), r, n - 1 - j);
                });
            });
    };
    // The product that decides about singularity is formed of the values as they are found, some of them more than once,
    // when that goes bottom-up. It is the determinant when it goes top-down, and with reciprocals.
    V product = splat<V>(1);
    const auto hit = [&](int m, MaskOf<V> found) KESL_INLINE {
        if constexpr (!rules.reciprocal) {
            found = without(found, mirrored);
            product = choice(found, product * d(m), product);
            if constexpr (lanes<V> == 1)
                if (found) values.set(d(m), m);
        }
    };
    mirror();
    const bool done = iterateQL<rules, V>(d, band.e, z, n, mirrored, eps, hit);
    mirror();
    if (!done) return keslStatusNoConvergence;

    loop<out>(0, n, [&](int i) KESL_INLINE { values.set(choice(mirrored, d(n - 1 - i), d(i)), i); });
    V all = splat<V>(1);
    loop<out>(0, n, [&](int i) KESL_INLINE { all = all * values(i); });
    product = rules.reciprocal ? all : choice(mirrored, all, product * values(0));

    const bool singular = any(eps >= abs(product));
    if (singular && !sortFirst) return keslStatusSingular;
    sortDescending<rules, V>(values, z, n);
    return singular ? keslStatusSingular : keslStatusOk;
}

} // namespace kesl
