// Eigenvectors of a quasi-triangular matrix T by substitution (LAPACK's dtrevc), carried back by Z and normalised. Tests for
// an exact zero are tests against safeMin here.
#pragma once
#include "eigen/schur.h"
#include "eigen/small_solvers.h"

namespace kesl {

// ---- The vectors of T, carried back by Z. Vector j takes the place of column j of Z, which no later vector needs.
template <class T, class N> struct Substitution {
    using P = Precision<T>;
    N n;
    Square<T, N> t, z;
    T *norm, *a, *b; // n elements of scratch each: sums of T's columns above the diagonal; real and imaginary part
    T *carriedA, *carriedB;
    const T smallNum = P::safeMin * T(n) * (1 / P::eps), bigNum = (1 - P::eps) / smallNum;
    // Of the eigenvalue in hand:
    T wr = 0, wi = 0, smini = 0;

    bool blockEndsAt(int j) const { return j > 0 && abs(t(j, j - 1)) > P::safeMin; }

    void norms() const
    {
        for (int j = 0; j < n; ++j) {
            norm[j] = 0;
            for (int i = 0; i < j; ++i) norm[j] = norm[j] + abs(t(i, j));
        }
    }
    // The eigenvalue at row ki, of a block that ends at row `end` if it is one of a pair.
    void eigenvalue(int ki, bool pair, int end)
    {
        wr = t(ki, ki);
        wi = pair ? sqrt(abs(t(end, end - 1))) * sqrt(abs(t(end - 1, end))) : T(0);
        smini = greater(greater(P::eps * (abs(wr) + abs(wi)), smallNum), P::floorNorm);
    }
    void scale(T f, int from, int to, bool pair) const
    {
        for (int k = from; k < to; ++k) a[k] = a[k] * f;
        if (pair)
            for (int k = from; k < to; ++k) b[k] = b[k] * f;
    }
    // Solves with the block of `size` rows at j, transposed or not, and the right-hand side in a and b.
    // Fails where the block is zero to working precision: quietly with a real eigenvalue.
    KeslStatus solve(int j, int size, bool transposed, bool pair, Solution<T>& y) const
    {
        if (size == 1) {
            y = pair ? solveOneComplex(t(j, j) - wr, -wi, a[j], b[j], smini, bigNum) : solveOne(t(j, j) - wr, a[j], smini);
            return keslStatusOk;
        }
        const T lower = t(j + 1, j), upper = t(j, j + 1);
        const T c[4] = {t(j, j) - wr, transposed ? upper : lower, transposed ? lower : upper, t(j + 1, j + 1) - wr};
        if (!pair) return solveTwo(c, a[j], a[j + 1], smini, y) ? keslStatusOk : quietEnd;
        return solveTwoComplex(c, -wi, a[j], b[j], a[j + 1], b[j + 1], smini, y) ? keslStatusOk : keslStatusFailed;
    }
    void take(const Solution<T>& y, int j, int size, int from, int to, bool pair) const
    {
        if (abs(y.scale - 1) > P::safeMin) scale(y.scale, from, to, pair);
        for (int k = 0; k < size; ++k) {
            a[j + k] = y.re[k];
            if (pair) b[j + k] = y.im[k];
        }
    }
    // to = the sum of x[k] times column k of z for k = from .. end - 1, plus x[own] times column own.
    void carry(const T* x, int from, int end, int own, T* to) const
    {
        for (int k = from; k < end; ++k)
            for (int r = 0; r < n; ++r) to[r] = k == from ? x[k] * z(r, k) : to[r] + x[k] * z(r, k);
        for (int r = 0; r < n; ++r) to[r] = from < end ? to[r] + x[own] * z(r, own) : x[own] * z(r, own);
    }
    void carryBack(int j, bool pair, int from, int end, int ownA, int ownB) const
    {
        carry(a, from, end, ownA, carriedA);
        if (pair) {
            carry(b, from, end, ownB, carriedB);
            std::copy(carriedB, carriedB + n, z.column(j + 1));
        }
        std::copy(carriedA, carriedA + n, z.column(j));
    }

    // T x = lambda x, from the last column to the first.
    KeslStatus right()
    {
        norms();
        for (int ki = n - 1; ki >= 0; --ki) {
            const bool pair = blockEndsAt(ki);
            const int head = ki - pair; // the first row of its block
            eigenvalue(ki, pair, ki);
            if (pair) {
                const T upper = t(head, ki), lower = t(ki, head);
                const bool byUpper = abs(upper) > abs(lower);
                a[head] = byUpper ? 1 : -wi / lower, b[ki] = byUpper ? wi / upper : 1;
                a[ki] = 0, b[head] = 0;
                for (int k = 0; k < head; ++k) a[k] = -a[head] * t(k, head), b[k] = -b[ki] * t(k, ki);
            } else {
                a[ki] = 1;
                for (int k = 0; k < ki; ++k) a[k] = -t(k, ki);
            }
            for (int end = head - 1; end >= 0;) { // the last row of a block
                const int size = blockEndsAt(end) ? 2 : 1, j = end - size + 1;
                Solution<T> y;
                if (const KeslStatus failure = solve(j, size, false, pair, y)) return failure;
                if (y.norm > 1 && (size == 2 ? greater(norm[j], norm[end]) : norm[end]) > bigNum / y.norm) y.divide(y.norm);
                take(y, j, size, 0, ki + 1, pair);
                for (int c = j; c <= end; ++c)
                    for (int k = 0; k < j; ++k) {
                        a[k] = a[k] - a[c] * t(k, c);
                        if (pair) b[k] = b[k] - b[c] * t(k, c);
                    }
                end = j - 1;
            }
            carryBack(head, pair, 0, head, head, ki);
            ki = head;
        }
        return keslStatusOk;
    }

    // x T = lambda x, from the first row to the last.
    KeslStatus left()
    {
        norms();
        for (int ki = 0; ki < n; ++ki) {
            const bool pair = ki + 1 < n && blockEndsAt(ki + 1);
            const int last = ki + pair; // the last row of its block
            eigenvalue(ki, pair, last);
            if (pair) {
                const T upper = t(ki, last), lower = t(last, ki);
                const bool byUpper = abs(upper) > abs(lower);
                a[ki] = byUpper ? -wi / upper : 1, b[last] = byUpper ? 1 : wi / lower;
                a[last] = 0, b[ki] = 0;
                for (int k = last + 1; k < n; ++k) a[k] = -a[ki] * t(ki, k), b[k] = -b[last] * t(last, k);
            } else {
                a[ki] = 1;
                for (int k = ki + 1; k < n; ++k) a[k] = -t(ki, k);
            }
            T vmax = 1, vcrit = bigNum;
            for (int j = last + 1, size; j < n; j += size) {
                size = j + 1 < n && blockEndsAt(j + 1) ? 2 : 1;
                if ((size == 2 ? greater(norm[j], norm[j + 1]) : norm[j]) > vcrit) {
                    scale(1 / vmax, ki, n, pair);
                    vmax = 1, vcrit = bigNum;
                }
                if (j > last + 1)
                    for (int c = j; c < j + size; ++c) {
                        const auto dot = [&](const T* x) {
                            T sum = t(last + 1, c) * x[last + 1];
                            for (int k = last + 2; k < j; ++k) sum = sum + t(k, c) * x[k];
                            return sum;
                        };
                        a[c] = a[c] - dot(a);
                        if (pair) b[c] = b[c] - dot(b);
                    }
                Solution<T> y;
                if (const KeslStatus failure = solve(j, size, true, pair, y)) return failure;
                take(y, j, size, ki, n, pair);
                for (int k = 0; k < size; ++k) {
                    vmax = greater(vmax, abs(y.re[k]));
                    if (pair) vmax = greater(vmax, abs(y.im[k]));
                }
                vcrit = bigNum / vmax;
            }
            carryBack(ki, pair, last + 1, n, ki, last);
            ki = last;
        }
        return keslStatusOk;
    }

    // To unit length; of a pair the element of greatest modulus becomes real.
    void normalise(const T* im) const
    {
        const auto squares = [&](const T* x) {
            T sum = x[0] * x[0];
            for (int k = 1; k < n; ++k) sum = sum + x[k] * x[k];
            return sum;
        };
        for (int j = 0; j < n; ++j) {
            T *const x = z.column(j), *const y = x + n;
            if (P::safeMin > abs(im[j])) {
                const T sum = squares(x);
                if (!(abs(sum) > P::safeMin)) continue;
                const T f = 1 / sqrt(sum);
                for (int k = 0; k < n; ++k) x[k] = x[k] * f;
                continue;
            }
            const T f = 1 / sqrt(squares(x) + squares(y));
            T greatest = 0;
            int at = 0;
            for (int k = 0; k < n; ++k) {
                x[k] = x[k] * f, y[k] = y[k] * f;
                if (const T modulus = x[k] * x[k] + y[k] * y[k]; k == 0 || modulus > greatest) greatest = modulus, at = k;
            }
            const T r = sqrt(greatest);
            T cs = x[at] / r, sn = y[at] / r;
            if (abs(x[at]) > abs(y[at]) && cs < 0) cs = -cs, sn = -sn;
            for (int k = 0; k < n; ++k) {
                const T re = x[k];
                x[k] = cs * re + sn * y[k], y[k] = cs * y[k] - sn * re;
            }
            ++j; // the pair's other column
        }
    }
};

template <class T, class N> [[gnu::noinline]] KeslStatus eigenvectors(Sides sides, T* memory, const T* im, N n)
{
    const std::int64_t all = std::int64_t(n) * n;
    T *const z = memory + all, *const third = z + all, *const rest = third + all;
    const auto vectors = [&](T* columns, auto side) {
        Substitution<T, N> substitution{n,        {memory, n},  {columns, n}, rest,
                                        rest + n, rest + 2 * n, rest + 3 * n, rest + 4 * n};
        const KeslStatus status = (substitution.*side)();
        if (status == keslStatusOk) substitution.normalise(im);
        return status;
    };
    if (sides == Sides::right) return vectors(z, &Substitution<T, N>::right);
    if (sides == Sides::both) {
        std::copy(z, third, third);
        if (const KeslStatus failure = vectors(third, &Substitution<T, N>::right)) return failure;
    }
    return vectors(z, &Substitution<T, N>::left);
}

} // namespace kesl
