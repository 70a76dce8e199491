// Francis' implicit double-shift QR iteration on Hessenberg matrices (Golub & Van Loan, 7.5), with the relative deflation
// of Ahues & Tisseur (LAPACK Working Note 122).
//
// Each lane has its own active block: rows top .. bottom, the last one of three rows or more. A sweep goes over the rows of
// all these blocks; where a lane takes no part its reflection is the identity. Blocks of one and two rows stay as they are
// until all lanes are at rest.
#pragma once
#include "stacks/general_hessenberg.h"

#include <algorithm>

namespace kesl::stacks {

// Where no basis is wanted a sweep spares rows and columns outside the blocks: what stands there no longer belongs to the
// matrix, and no eigenvalue depends on it.
template <class V, class N, class Basis> struct Francis {
    using T = ElementOf<V>;
    using Mask = MaskOf<V>;
    using Index = IndexOf<V>;

    Tile<V, N, N>& h;
    Basis& z;
    N n = h.rows();
    static constexpr bool whole = wanted<Basis>, all = whole || isFixed<N>; // rows and columns of the steps

    Index top{}, bottom{};   // 0 and 0 where all blocks are small
    int first = 0, last = 0; // the rows of all active blocks

    // f(i) for i = from .. to - 1, written out where the order is known, so that the tile lives in registers.
    [[gnu::always_inline]] static void each(int from, int to, auto f)
    {
        if constexpr (isFixed<N>)
#pragma GCC unroll 8
            for (int i = from; i < to; ++i) f(i);
        else
            for (int i = from; i < to; ++i) f(i);
    }

    // Clears negligible subdiagonal elements and finds the active blocks. They are small beside their neighbours; where a
    // lane is stuck, beside the norm, which is 1 or more.
    [[gnu::always_inline]] void deflate(Mask stuck)
    {
        constexpr T eps = std::numeric_limits<T>::epsilon(), least = std::numeric_limits<T>::min() / eps * largestSize;
        Index head{};
        top = bottom = Index{}, last = 0;
        each(1, n, [&](int k) KESL_INLINE {
            const V d = h(k, k), before = h(k - 1, k - 1), s = abs(h(k, k - 1));
            Mask small = s <= (abs(before) + abs(d)) * eps;
            if (any(small & (s > 0))) {
                const V u = abs(h(k - 1, k)), difference = abs(before - d), diagonal = abs(d);
                const V ab = s > u ? s : u, ba = s > u ? u : s;
                const V aa = diagonal > difference ? diagonal : difference,
                        bb = diagonal > difference ? difference : diagonal;
                const V sum = aa + ab;
                small = small & (ba * (ab / sum) <= (bb * (aa / sum)) * eps);
            }
            small = small | (s <= (stuck ? splat<V>(eps) : splat<V>(least)));
            h(k, k - 1) = small ? V{} : h(k, k - 1);
            head = small ? Index{} + k : head;
            const Mask open = k - head >= 2;
            top = open ? head : top, bottom = open ? Index{} + k : bottom;
            last = any(open) ? k : last;
        });
    }

    // Both shifts: re plus and minus i im, or re twice.
    struct Shifts {
        V re, im;
    };
    [[gnu::always_inline]] Shifts shifts(Mask stalled) const
    {
        V a{}, b{}, c{}, d{}, above{}; // [a b; c d] ends at the bottom
        each(2, isFixed<N> ? int(n) : last + 1, [&](int k) KESL_INLINE {
            const Mask here = bottom == k;
            a = here ? h(k - 1, k - 1) : a, b = here ? h(k - 1, k) : b;
            c = here ? h(k, k - 1) : c, d = here ? h(k, k) : d, above = here ? h(k - 1, k - 2) : above;
        });
        if (any(stalled)) [[unlikely]] {
            const V s = abs(c) + abs(above), shift = s * T(0.75) + d;
            a = stalled ? shift : a, d = stalled ? shift : d, b = stalled ? s * T(-0.4375) : b, c = stalled ? s : c;
        }
        const V size = abs(a) + abs(b) + abs(c) + abs(d), down = inversePower(size), up = inversePower(down);
        a = a * down, b = b * down, c = c * down, d = d * down;
        const V mean = (a + d) * T(0.5), determinant = (a - mean) * (d - mean) - b * c, root = sqrt(abs(determinant));
        const V greater = mean + root, less = mean - root;
        const V nearer = abs(greater - d) <= abs(less - d) ? greater : less;
        const Mask complex = determinant >= 0;
        return {(complex ? mean : nearer) * up, complex ? root * up : V{}};
    }

    // The first column of the shifted product, of blocks that begin at row k; times a power of two.
    [[gnu::always_inline]] void begin(int k, const Shifts& shift, V& x, V& y, V& w) const
    {
        const V a = h(k, k), c = h(k + 1, k), d = a - shift.re;
        const V f = inversePower(abs(d) + shift.im + abs(c));
        x = (c * f) * h(k, k + 1) + (d * f) * d + (shift.im * f) * shift.im;
        y = (c * f) * (d + (h(k + 1, k + 1) - shift.re));
        w = (c * f) * h(k + 2, k + 1);
    }

    // One step of the sweep: a reflection of rows and columns k .. k + 2, or of k and k + 1 at the end.
    template <bool three> [[gnu::always_inline]] void step(int k, const Shifts& shift)
    {
        const Mask active = bottom > k, starts = active & (top == k), goes = active & (top < k);
        V x = splat<V>(1), y{}, w{};
        if constexpr (three) {
            if (any(starts)) {
                V x0, y0, w0;
                begin(k, shift, x0, y0, w0);
                x = starts ? x0 : x, y = starts ? y0 : y, w = starts ? w0 : w;
            }
        }
        if (k > 0) {
            x = goes ? h(k, k - 1) : x, y = goes ? h(k + 1, k - 1) : y;
            if constexpr (three) w = goes ? h(k + 2, k - 1) : w;
        }
        const auto squares = [&](V f) KESL_INLINE { return (y * f) * (y * f) + (w * f) * (w * f); };
        const auto reflection = Reflection<V>::of(x, (y == 0) & (w == 0), squares);
        if (k > 0) {
            h(k, k - 1) = goes ? reflection.beta : h(k, k - 1), h(k + 1, k - 1) = goes ? V{} : h(k + 1, k - 1);
            if constexpr (three) h(k + 2, k - 1) = goes ? V{} : h(k + 2, k - 1);
        }
        const V t1 = reflection.tau, v2 = y * reflection.scale, v3 = w * reflection.scale, t2 = t1 * v2, t3 = t1 * v3;
        const auto reflect = [&](V& p, V& q, V& r) KESL_INLINE {
            V sum = p + v2 * q;
            if constexpr (three) sum = sum + v3 * r;
            p = p - sum * t1, q = q - sum * t2;
            if constexpr (three) r = r - sum * t3;
        };
        constexpr int third = three ? 2 : 1;
        for (int j = k; j < (all ? n : last + 1); ++j) reflect(h(k, j), h(k + 1, j), h(k + third, j));
        for (int i = all ? 0 : first; i <= std::min(k + 3, all ? n - 1 : last); ++i)
            reflect(h(i, k), h(i, k + 1), h(i, k + third));
        if constexpr (whole)
            for (int i = 0; i < n; ++i) reflect(z(i, k), z(i, k + 1), z(i, k + third));
    }

    // To blocks of one and two rows. 0, or the index (from 1) of the last eigenvalue that was not found.
    Index iterate()
    {
        Index former{}, count{}, next = index<V>(10); // sweeps since the last eigenvalue was found; when shifts must change
        for (int sweeps = 30 * std::max(int(n), 10);; --sweeps) {
            deflate(count > 20);
            if (last == 0) return Index{};
            if (sweeps == 0) return bottom > 0 ? bottom + 1 : bottom;
            for (first = 0; !any((top == first) & (bottom > 0));) ++first;
            const Mask still = (former == bottom) & (bottom > 0);
            count = still ? count + 1 : Index{};
            former = bottom;
            const Mask stalled = count == next;
            next = stalled ? next + 10 : count == 0 ? index<V>(10) : next;
            const Shifts shift = shifts(stalled);
            each(0, n - 1, [&](int k) KESL_INLINE {
                if (k < first || k >= last) return;
                if (k + 2 < n) step<true>(k, shift);
                else step<false>(k, shift);
            });
        }
    }
};

} // namespace kesl::stacks
