// General real eigenproblems: Householder's reduction to Hessenberg form (EISPACK's orthes), then Francis' double-shift QR
// iteration (EISPACK's hqr and hqr2, LAPACK's dlahqr). One
// text for all families, for one object and for packs.
//
// A lane of a pack keeps its own place: the index i of its last open eigenvalue, the head l of its active block, the start
// m of its sweep. Loops go over the places of all lanes, and a lane takes part where its own place says so. For one object
// they go over its own places, and the masks are known to hold.
#pragma once
#include "eigen/general.h"
#include "eigen/standard_block.h"
#include "frame/constants.h"

#include <algorithm>

namespace kesl {

// A matrix in columns, each a contiguous run.
template <class V, class N> struct Square {
    V* p;
    N n;
    V* column(int j) const { return p + std::int64_t(j) * n; }
    V& operator()(int i, int j) const { return column(j)[i]; }
};

// What shifts are formed in: V itself, or as many floats.
template <class V, bool inSingle> struct Shifts {
    using type = V;
};
template <> struct Shifts<double, true> {
    using type = float;
};
template <class V> requires(lanes<V> > 1) struct Shifts<V, true> {
    using type = Pack<float, int(sizeof(V)) / 2>;
};

// The reflection I - tau v v' that makes a vector (alpha, x) a multiple of e1: v is 1 and then x * scale, and beta takes the
// place of alpha. Where x vanishes there is none: tau is 0 and nothing changes.
template <class V> struct Reflection {
    V tau, beta, scale;
    [[gnu::always_inline]] static Reflection of(V alpha, V squaresOfX)
    {
        const V norm = sqrt(squaresOfX);
        const MaskOf<V> vanishes = Precision<ElementOf<V>>::safeMin > norm;
        const V h = hypotenuse(abs(alpha), norm), beta = alpha < 0 ? h : -h, one = splat<V>(1);
        return {vanishes ? V{} : (beta - alpha) / beta, vanishes ? alpha : beta, vanishes ? one : one / (alpha - beta)};
    }
};

// ---- Reduction and iteration of one object, or of as many as V has lanes.
template <GeneralRules rules, class V, class N> struct Schur {
    using T = ElementOf<V>;
    using P = Precision<T>;
    using Mask = MaskOf<V>;
    static constexpr bool one = lanes<V> == 1;
    using Index = std::conditional_t<one, int, Mask>;

    N n;
    Square<V, N> h, z; // the transposed input, in the end T; z only where rules.whole
    V *re, *im;        // the eigenvalues, as they are found
    V *tau, *w;        // n elements of scratch each

    // Where the active block of the lanes may be: rows and columns first .. last.
    int last = 0;
    [[gnu::always_inline]] static int first(Index x)
    {
        if constexpr (one) return x;
        else return 0;
    }
    // What the bounds of a loop say by themselves for one object.
    [[gnu::always_inline]] static Mask inside(Mask lanesInside) { return one ? Mask{V{} == V{}} : opaque(lanesInside); }
    // f(c, where i == c) for the places c of all lanes, from `from` on.
    [[gnu::always_inline]] void atEach(Index i, int from, auto f) const
    {
        if constexpr (one) f(i, true);
        else
            for (int c = from; c <= last; ++c) f(c, i == c);
    }

    // x(j + 1 .., c) reflected by the vector that stands in column j of h below the diagonal, for c = j + 1 ..
    [[gnu::always_inline]] void fromLeft(Square<V, N> x, int j, Mask where) const
    {
        const V* const v = h.column(j) + j + 1; // v[0] stands for 1
        const int length = n - j - 1;
        for (int c = j + 1; c < n; ++c) {
            V* const y = x.column(c) + j + 1;
            V sum = y[0];
            for (int t = 1; t < length; ++t) sum = sum + y[t] * v[t];
            put(where, y[0], y[0] - tau[j] * sum);
            for (int t = 1; t < length; ++t) put(where, y[t], y[t] - (tau[j] * v[t]) * sum);
        }
    }
    [[gnu::always_inline]] void fromRight(int j, Mask where) const
    {
        const V* const v = h.column(j) + j + 1;
        const int length = n - j - 1;
        V* const head = h.column(j + 1);
        for (int r = 0; r < n; ++r) w[r] = head[r];
        for (int t = 1; t < length; ++t)
            for (int r = 0; r < n; ++r) w[r] = w[r] + h(r, j + 1 + t) * v[t];
        for (int r = 0; r < n; ++r) {
            w[r] = tau[j] * w[r];
            put(where, head[r], head[r] - w[r]);
        }
        for (int t = 1; t < length; ++t)
            for (int r = 0; r < n; ++r) put(where, h(r, j + 1 + t), h(r, j + 1 + t) - w[r] * v[t]);
    }

    // To Hessenberg form; z is the product of the reflections.
    [[gnu::always_inline]] void reduce()
    {
        for (int j = 0; j < n - 2; ++j) {
            V* const v = h.column(j) + j + 1;
            const int length = n - j - 1;
            V squares = v[1] * v[1];
            for (int t = 2; t < length; ++t) squares = squares + v[t] * v[t];
            const auto reflection = Reflection<V>::of(v[0], squares);
            tau[j] = reflection.tau;
            for (int t = 1; t < length; ++t) v[t] = v[t] * reflection.scale;
            if (const Mask where = abs(tau[j]) > P::safeMin; any(where)) fromRight(j, where), fromLeft(h, j, where);
            v[0] = reflection.beta;
        }
        if constexpr (rules.whole) {
            for (int j = 0; j < n; ++j)
                for (int i = 0; i < n; ++i) z(i, j) = splat<V>(T(i == j));
            for (int j = n - 3; j >= 0; --j)
                if (const Mask where = abs(tau[j]) > P::safeMin; any(where)) fromLeft(z, j, where);
        }
        for (int j = 0; j < n - 2; ++j) std::fill(h.column(j) + j + 2, h.column(j) + n, V{});
    }

    // The greatest sum of magnitudes of a column of the active block.
    V blockNorm(Index l, Index i) const
    {
        V norm{};
        for (int c = first(l); c <= last; ++c) {
            V sum{};
            for (int r = first(l); r <= std::min(c + 1, last); ++r)
                sum = sum + (inside((l <= r) & (r <= i)) ? abs(h(r, c)) : V{});
            put(inside((l <= c) & (c <= i)), norm, norm > sum ? norm : sum);
        }
        return norm;
    }
    // Moves the head l of the active block behind the last negligible subdiagonal.
    [[gnu::always_inline]] void deflate(Index& l, Index i) const
    {
        [[maybe_unused]] const T smallNum = P::safeMin * T(n) * (1 / P::eps);
        const Index from = l;
        V norm{};
        bool normKnown = false;
        for (int k = last; k > first(from); --k) {
            const Mask open = inside((from < k) & (k <= i)) & (l == from);
            V bound = splat<V>(P::eps);
            if constexpr (rules.relative) {
                V beside = abs(h(k - 1, k - 1)) + abs(h(k, k));
                if (const Mask tiny = open & (P::safeMin >= beside); any(tiny)) [[unlikely]] {
                    if (!normKnown) norm = blockNorm(from, i), normKnown = true;
                    put(tiny, beside, norm);
                }
                const V relative = beside * P::eps;
                bound = smallNum > relative ? splat<V>(smallNum) : relative; // a NaN stays: nothing is negligible then
            }
            const Mask hit = open & (bound >= abs(h(k, k - 1)));
            l = hit ? Index{} + k : l;
            if constexpr (one)
                if (hit) break;
        }
        if constexpr (one) {
            if (l > 0) h(l, l - 1) = 0;
        } else
            for (int k = 1; k <= last; ++k) put(l == k, h(k, k - 1), V{});
    }

    // Takes the eigenvalues of blocks of one or two rows that end at i.
    [[gnu::always_inline]] void settle(Mask done, Index l, Index i, V& cs, V& sn) const
    {
        atEach(i, 0, [&](int c, Mask here) KESL_INLINE {
            const Mask single = done & here & (l == i);
            put(single, re[c], h(c, c)), put(single, im[c], V{});
            const Mask pair = done & here & (l != i);
            if (!any(pair)) return;
            StandardBlock<V> block{h(c - 1, c - 1), h(c - 1, c), h(c, c - 1), h(c, c)};
            V cs1 = cs, sn1 = sn;
            block.template make<rules.whole>(cs1, sn1);
            put(pair, re[c - 1], block.a), put(pair, im[c - 1], block.wi);
            put(pair, re[c], block.d), put(pair, im[c], V{} - block.wi);
            if constexpr (rules.whole) {
                put(pair, cs, cs1), put(pair, sn, sn1);
                put(pair, h(c - 1, c - 1), block.a), put(pair, h(c - 1, c), block.b);
                put(pair, h(c, c - 1), block.c), put(pair, h(c, c), block.d);
                const auto rotate = [&](V& x, V& y) KESL_INLINE {
                    const V x0 = x, y0 = y;
                    put(pair, x, cs1 * x0 + sn1 * y0), put(pair, y, cs1 * y0 - sn1 * x0);
                };
                for (int j = c + 1; j < n; ++j) rotate(h(c - 1, j), h(c, j));
                for (int j = 0; j < c - 1; ++j) rotate(h(j, c - 1), h(j, c));
                for (int j = 0; j < n; ++j) rotate(z(j, c - 1), z(j, c));
            }
        });
    }

    // Where a sweep begins, and with what.
    struct Start {
        Index m;
        V u1, u2, u3;
    };
    [[gnu::always_inline]] Start start(Mask active, Index l, Index i, Index its) const
    {
        // The shifts are formed in S, and their masks are those of S.
        constexpr bool inSingle = rules.single && sizeof(T) == 8;
        using S = typename Shifts<V, inSingle>::type;
        using M = MaskOf<S>;
        using E = ElementOf<S>;
        constexpr E safeMin = Precision<E>::safeMin, eps = E(P::eps);
        const auto at = [&](int r, int c) KESL_INLINE { return converted<S>(h(r, c)); };
        const auto mask = [](Mask x) KESL_INLINE { return converted<M>(x); };

        V hii{}, hjj{}, hij{}, hji{}, hjk{}; // j = i - 1, k = i - 2
        atEach(i, 2, [&](int c, Mask here) KESL_INLINE {
            put(here, hii, h(c, c)), put(here, hjj, h(c - 1, c - 1));
            put(here, hij, h(c, c - 1)), put(here, hji, h(c - 1, c)), put(here, hjk, h(c - 1, c - 2));
        });
        S h44 = converted<S>(hii), h33 = converted<S>(hjj), h43h34 = converted<S>(hij * hji);
        const S half = (h33 - h44) * E(0.5), disc = half * half + h43h34;
        if (const M real = disc > (rules.guarded ? safeMin : E(0)); any(real)) {
            const S root = sqrt(disc), ave = (h44 + h33) * E(0.5), product = h33 * h44 - h43h34;
            S shift, other;
            if constexpr (rules.guarded) {
                shift = S{} - h44 > h33 ? ave - root : ave + root;
                other = product * (abs(shift) > safeMin ? E(1) / shift : shift);
            } else {
                shift = ave < 0 ? ave - root : ave + root;
                other = product / shift;
            }
            shift = abs(h33) > abs(h44) ? other : shift;
            put(real, h44, shift), put(real, h33, shift), put(real, h43h34, S{});
        }
        if (const Mask stalled = (its == 10) | (its == 20); any(stalled)) [[unlikely]] {
            const S s = abs(converted<S>(hij)) + abs(converted<S>(hjk)), shift = s * E(0.75) + converted<S>(hii);
            put(mask(stalled), h44, shift), put(mask(stalled), h33, shift), put(mask(stalled), h43h34, s * E(-0.4375) * s);
        }

        Index m = i;
        S u1{}, u2{}, u3{};
        for (int c = last - 2; c >= first(l); --c) {
            const Mask here = inside(active & (c <= i - 2));
            m = here ? Index{} + c : m;
            M open = mask(here), stops = mask(l == c);
            const S sub = at(c + 1, c);
            if constexpr (rules.guarded) {
                const M tiny = safeMin >= abs(sub);
                stops = stops | tiny, open = without(open, tiny);
            }
            if (any(open)) {
                const S h11 = at(c, c), h22 = at(c + 1, c + 1), h44s = h44 - h11, h33s = h33 - h11;
                const S v1 = (h33s * h44s - h43h34) / sub + at(c, c + 1);
                const S v2 = h22 - h11 - h44s - h33s, v3 = at(c + 2, c + 1);
                const S s = abs(v1) + abs(v2) + abs(v3);
                if constexpr (rules.guarded) {
                    const S r = s > safeMin ? E(1) / s : s;
                    put(open, u1, v1 * r), put(open, u2, v2 * r), put(open, u3, v3 * r);
                } else put(open, u1, v1 / s), put(open, u2, v2 / s), put(open, u3, v3 / s);
                if (c > 0)
                    stops = stops | M(abs(u1) * eps * (abs(at(c - 1, c - 1)) + abs(h11) + abs(h22)) >=
                                      abs(at(c, c - 1)) * (abs(u2) + abs(u3)));
            }
            active = active & negated(here & converted<Mask>(stops));
            if (!any(active)) break;
        }
        return {m, converted<V>(u1), converted<V>(u2), converted<V>(u3)};
    }

    [[gnu::always_inline]] void sweep(Index l, Index i, const Start& start) const
    {
        const Index m = start.m;
        for (int k = first(m); k < last; ++k) {
            const Mask in = inside((m <= k) & (k < i)), three = opaque(Mask(k <= i - 2)), later = opaque(Mask(in & (m < k)));
            if (!one && !any(in)) continue;
            const bool third = one ? bool(any(three)) : k + 2 < n;
            V* const x = h.column(k - (k > 0)) + k; // in the column before
            V u1 = start.u1, u2 = start.u2, u3 = start.u3;
            if (k > 0) {
                put(later, u1, x[0]), put(later, u2, x[1]);
                if (third) put(later, u3, x[2]);
            }
            V squares = u2 * u2;
            if (third) put(three, squares, squares + u3 * u3);
            const auto reflection = Reflection<V>::of(u1, squares);
            const V t1 = reflection.tau;
            u2 = u2 * reflection.scale, u3 = u3 * reflection.scale;
            if (k > 0) {
                put(in & (m == k) & (l < m), x[0], -x[0]);
                put(later, x[0], reflection.beta), put(later, x[1], V{});
                if (third) put(later & three, x[2], V{});
            }
            const V t2 = t1 * u2, t3 = t1 * u3;
            const auto apply = [&](Mask where, V* a, V* b, V* c) KESL_INLINE {
                V sum = *a + u2 * *b;
                if (third) put(three, sum, sum + u3 * *c);
                put(where, *a, *a - sum * t1), put(where, *b, *b - sum * t2);
                if (third) put(where & three, *c, *c - sum * t3);
            };
            for (int j = k; j < (rules.whole ? int(n) : last + 1); ++j) {
                V* const c = h.column(j) + k;
                apply(rules.whole ? in : inside(in & (j <= i)), c, c + 1, c + 2);
            }
            V* const a = h.column(k);
            for (int j = rules.whole ? 0 : first(l); j <= std::min(k + 3, last); ++j)
                apply(inside(in & (j <= i) & (rules.whole | (l <= j))), a + j, a + n + j, a + 2 * n + j);
            if constexpr (rules.whole) {
                V* const b = z.column(k);
                for (int j = 0; j < n; ++j) apply(in, b + j, b + n + j, b + 2 * n + j);
            }
        }
    }

    // False where the sweeps do not suffice, in any lane. One object has its eigenvalues behind i then.
    [[gnu::always_inline]] bool iterate()
    {
        last = n - 1;
        Index i = Index{} + last, l{}, its{};
        V cs{}, sn{};
        for (std::int64_t sweeps = 30 * std::int64_t(n); sweeps > 0; --sweeps) {
            for (;;) {
                deflate(l, i);
                const Mask done = (i >= 0) & (l >= i - 1);
                if (!any(done)) break;
                settle(done, l, i, cs, sn);
                i = done ? l - 1 : i, l = done ? Index{} : l, its = done ? Index{} : its;
                while (last >= 0 && !any(i >= last)) --last;
                if (last < 0) return true;
            }
            sweep(l, i, start(i >= 0, l, i, its));
            its = its + 1;
        }
        return false;
    }
};

template <GeneralRules rules, class V, class N> [[gnu::noinline]] bool schurForm(V* h, V* z, V* scratch, V* re, V* im, N n)
{
    Schur<rules, V, N> schur{n, {h, n}, {z, n}, re, im, scratch, scratch + n};
    schur.reduce();
    return schur.iterate();
}

} // namespace kesl
