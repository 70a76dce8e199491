// Eigenvectors of a real Schur form by back substitution, carried back by the Schur vectors (LAPACK's dtrevc).
//
// A pair of rows with a complex pair of eigenvalues, [a b; c a], is solved by its own complex Schur form: with p and q, which
// are sqrt(|b|) and sqrt(|c|) over sqrt(|b| + |c|), p with the sign of b,
//
//     (p iq; iq p)^H (a b; c a) (p iq; iq p) = (a + i w, b + c; 0, a - i w),   w = sqrt(|b|) sqrt(|c|),
//
// so that each step is one complex quotient. For a real eigenvalue mu its solution must stay real, also where rounding decides;
// with e = mu - a it is, written as one complex number,
//
//     x1 + i x2 = ((e f1 + b f2) + i (e f2 + c f1)) / (e + i w) / (e - i w).
//
// Left vectors are right ones of the transpose: the same text with both orders reversed, which leaves such a pair as it is.
#pragma once
#include "stacks/scale.h"

#include <algorithm>

namespace kesl::stacks {

enum class Side { right, left };

template <class V, class N> struct SchurVectors {
    using T = ElementOf<V>;
    using Mask = MaskOf<V>;
    using Index = IndexOf<V>;
    static constexpr int capacity = most<N>;

    int n;
    const V *form, *basis;                         // element (0, 0) of T and of Z as this side sees them
    std::ptrdiff_t rowStep, columnStep, basisStep; // those of T, and to the next column of Z
    V p[capacity], q[capacity], w[capacity];       // at the first row of a pair; 1, 0, 0 for single rows
    Mask heads[capacity];                          // where a lane has the first row of a pair
    V re[capacity], im[capacity];                  // the vector of T that is being made

    V t(int i, int j) const { return form[i * rowStep + j * columnStep]; }
    Mask tail(int i) const { return i > 0 ? heads[i - 1] : Mask{}; }

    SchurVectors(Side side, const Tile<V, N, N>& schur, const Tile<V, N, N>& z) : n(schur.n)
    {
        const std::ptrdiff_t order = n;
        const bool right = side == Side::right;
        form = schur.e + (right ? 0 : order * order - 1), rowStep = right ? order : -1, columnStep = right ? 1 : -order;
        basis = z.e + (right ? 0 : order - 1), basisStep = right ? 1 : -1;
        for (int i = 0; i < n; ++i) {
            heads[i] = Mask{}, p[i] = splat<V>(1), q[i] = w[i] = V{};
            if (i + 1 == n) continue;
            const V b = t(i, i + 1), c = t(i + 1, i), rootB = sqrt(abs(b)), rootC = sqrt(abs(c));
            heads[i] = abs(c) > 0;
            if (!any(heads[i])) continue;
            const V f = splat<V>(1) / sqrt(abs(b) + abs(c));
            p[i] = heads[i] ? (b < 0 ? -(rootB * f) : rootB * f) : p[i];
            q[i] = heads[i] ? rootC * f : q[i];
            w[i] = heads[i] ? rootB * rootC : w[i];
        }
    }

    struct Complex {
        V re, im;
    };

    // f / (mu - lambda), with the difference kept away from 0. Where the quotient would be too large the vector so far,
    // elements from .. to, and f and the others are scaled down first.
    [[gnu::always_inline]] Complex quotient(Complex f, Complex lambda, Complex mu, int from, int to, auto&... others)
    {
        constexpr T eps = std::numeric_limits<T>::epsilon(), least = std::numeric_limits<T>::min() / eps * largestSize;
        constexpr int growth = bias<V> / 2 - 3; // quotients stay below 2^growth
        const V huge = powerOfTwo<V>(index<V>(growth));
        Complex d{mu.re - lambda.re, mu.im - lambda.im};
        const V relative = (abs(mu.re) + abs(mu.im)) * eps, smallest = relative > least ? relative : splat<V>(least);
        const Mask close = abs(d.re) + abs(d.im) < smallest;
        d.re = close ? smallest : d.re, d.im = close ? V{} : d.im;
        const V size = abs(d.re) + abs(d.im), sizeOfF = abs(f.re) + abs(f.im);
        if (const Mask large = sizeOfF > size * huge; any(large)) [[unlikely]] {
            const V down =
                large ? powerOfTwo<V>(large & (exponentOf(size) + (growth - 1) - exponentOf(sizeOfF))) : splat<V>(1);
            const auto scale = [&](V& x, V& y) KESL_INLINE { x = x * down, y = y * down; };
            for (int i = from; i <= to; ++i) scale(re[i], im[i]);
            scale(f.re, f.im), (scale(others.re, others.im), ...);
        }
        const V normal = inversePower(size);
        d = {d.re * normal, d.im * normal};
        const V inverse = normal / (d.re * d.re + d.im * d.im);
        const V fr = f.re * inverse, fi = f.im * inverse;
        return {fr * d.re + fi * d.im, fi * d.re - fr * d.im};
    }

    // The vector of T for the eigenvalue at row j; of the first one for a pair that begins there; nothing for its second.
    // The rows from the one returned on vanish.
    int substitute(int j)
    {
        const Mask second = tail(j);
        const int size = std::min(j + 2, n);
        re[j] = second ? V{} : p[j], im[j] = V{};
        if (j + 1 < n) re[j + 1] = V{}, im[j + 1] = q[j];
        const Complex mu{t(j, j), w[j]};
        const Mask real = w[j] == 0;
        Complex below{}; // the sum of the row below, whose element waits for this row where they are a pair
        for (int i = j - 1; i >= 0; --i) {
            const Mask head = heads[i], waits = tail(i);
            const int k = i + 1;
            Complex sum{};
            for (int s = k; s < size; ++s) sum.re = sum.re + t(i, s) * re[s], sum.im = sum.im + t(i, s) * im[s];
            const bool pairs = any(head);
            Complex x{}, rest = sum;
            if (pairs) {
                const V b = t(i, k), c = t(k, i), e = mu.re - t(i, i);
                Complex f{p[i] * below.re + q[i] * sum.im, p[i] * below.im - q[i] * sum.re};
                f = {real ? e * sum.re + b * below.re : f.re, real ? e * below.re + c * sum.re : f.im};
                f = {head ? f.re : V{}, head ? f.im : V{}};
                x = quotient(f, {t(i, i), -w[i]}, mu, k, size - 1, sum, below);
                const Mask pair = head & ~real;
                const V off = pair ? b + c : V{};
                re[k] = pair ? x.re : re[k], im[k] = pair ? x.im : im[k];
                rest = {p[i] * sum.re + q[i] * below.im + off * x.re, p[i] * sum.im - q[i] * below.re + off * x.im};
                rest = {real & head ? x.re : rest.re, real & head ? x.im : rest.im};
            }
            rest = {waits ? V{} : rest.re, waits ? V{} : rest.im};
            const Complex y = quotient(rest, {t(i, i), w[i]}, mu, k, size - 1);
            re[i] = p[i] * y.re, im[i] = p[i] * y.im;
            if (pairs) {
                const Mask pair = head & ~real, realPair = head & real;
                x = {re[k], im[k]};
                re[i] = realPair ? y.re : re[i] - q[i] * x.im, im[i] = realPair ? V{} : im[i] + q[i] * x.re;
                re[k] = realPair ? y.im : pair ? p[i] * x.re - q[i] * y.im : x.re;
                im[k] = pair ? p[i] * x.im + q[i] * y.re : x.im;
            }
            below = sum;
        }
        return size;
    }

    void scaleToOne(int size)
    {
        V largest{};
        for (int i = 0; i < size; ++i) {
            largest = abs(re[i]) > largest ? abs(re[i]) : largest;
            largest = abs(im[i]) > largest ? abs(im[i]) : largest;
        }
        const V down = inversePower(largest);
        for (int i = 0; i < size; ++i) re[i] = re[i] * down, im[i] = im[i] * down;
    }

    // Out of the Schur basis and of the balanced one, D = 2^d; length 1, and the largest component real and positive.
    void carryBack(int size, const Index* d, bool inverse)
    {
        scaleToOne(size);
        V x[capacity], y[capacity];
        for (int i = 0; i < n; ++i) {
            x[i] = y[i] = V{};
            for (int s = 0; s < size; ++s) {
                const V b = basis[i * n + s * basisStep];
                x[i] = x[i] + b * re[s], y[i] = y[i] + b * im[s];
            }
        }
        for (int i = 0; i < n; ++i) {
            const V f = powerOfTwo<V>(inverse ? -d[i] : d[i]);
            re[i] = x[i] * f, im[i] = y[i] * f;
        }
        scaleToOne(n);
        V largest{}, squares{}, c{}, s{};
        Index k{};
        for (int i = 0; i < n; ++i) {
            const V square = re[i] * re[i] + im[i] * im[i];
            const Mask more = square > largest;
            squares = squares + square;
            largest = more ? square : largest, c = more ? re[i] : c, s = more ? im[i] : s, k = more ? Index{} + i : k;
        }
        const V f = splat<V>(1) / (sqrt(squares) * sqrt(largest));
        c = c * f, s = s * f;
        for (int i = 0; i < n; ++i) {
            const V real = re[i] * c + im[i] * s, imaginary = im[i] * c - re[i] * s;
            re[i] = real, im[i] = k == i ? V{} : imaginary;
        }
    }
};

// All vectors of one side, packed as LAPACK packs them: the column of a real eigenvalue has its vector, those of a pair have
// the real and the imaginary part of that of its first.
template <class V, class N>
void schurVectors(Side side, const Tile<V, N, N>& schur, const Tile<V, N, N>& z, const IndexOf<V>* d, Tile<V, N, N>& out)
{
    SchurVectors<V, N> vectors(side, schur, z);
    const int n = vectors.n;
    const bool left = side == Side::left;
    for (int j = 0; j < n; ++j) {
        vectors.carryBack(vectors.substitute(j), d, left);
        const MaskOf<V> first = vectors.heads[j], second = vectors.tail(j);
        const V *const re = vectors.re, *const im = vectors.im;
        // From the left the vector found is the conjugate one, and the second column comes before the first.
        const int column = left ? n - 1 - j : j, next = left ? column - 1 : column + 1;
        for (int i = 0; i < n; ++i) {
            const V here = left ? (first ? V{} - im[i] : re[i]) : re[i], there = left ? re[i] : im[i];
            out(i, column) = second ? out(i, column) : here;
            if (j + 1 < n) out(i, next) = there;
        }
    }
}

} // namespace kesl::stacks
