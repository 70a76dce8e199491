// Eigenvectors of a quasi-triangular matrix T by substitution (LAPACK's dtrevc and its small solver dlaln2), carried back by
// Z and normalised. Tests for an exact zero are tests against safeMin here, and complex quotients are plain formulas.
#pragma once
#include "eigen/schur.h"

namespace kesl {

// ---- The solution y of (C - w) y = scale * b for a diagonal block C of order 1 or 2; scale <= 1 avoids an overflow.
template <class T> struct Solution {
    T re[2], im[2];
    T scale = 1;
    T norm = 0; // the greatest |re| + |im|
    void multiply(T f)
    {
        for (int k = 0; k < 2; ++k) re[k] = re[k] * f, im[k] = im[k] * f;
        norm = norm * f, scale = scale * f;
    }
    void divide(T f)
    {
        for (int k = 0; k < 2; ++k) re[k] = re[k] / f, im[k] = im[k] / f;
        scale = scale / f;
    }
};

template <class T> constexpr T bigNorm = 1 / Precision<T>::floorNorm;

template <class T> T greater(T x, T y) { return x > y ? x : y; }

template <class T> Solution<T> solveOne(T c, T b, T smini)
{
    if (smini > abs(c)) c = smini;
    Solution<T> y{};
    if (abs(b) > 1 && 1 > abs(c) && abs(b) > bigNorm<T> * abs(c)) y.scale = 1 / abs(b);
    y.re[0] = (b * y.scale) / c;
    y.norm = abs(y.re[0]);
    return y;
}
template <class T> Solution<T> solveOneComplex(T cr, T ci, T br, T bi, T smini, T bigNum)
{
    T norm = abs(cr) + abs(ci);
    if (smini > norm) cr = smini, ci = 0, norm = smini;
    const T b = abs(br) + abs(bi);
    Solution<T> y{};
    if (b > 1 && 1 > norm && b > norm * bigNum) y.scale = 1 / b;
    const T q = y.scale / (cr * cr + ci * ci);
    y.re[0] = (br * cr + bi * ci) * q;
    y.im[0] = (bi * cr - br * ci) * q;
    y.norm = abs(y.re[0]) + abs(y.im[0]);
    return y;
}

// Where the elements of a 2 by 2 matrix (by columns) stand once the pivot is first.
constexpr int iPivot[4][4] = {{0, 1, 2, 3}, {1, 0, 3, 2}, {2, 3, 0, 1}, {3, 2, 1, 0}};

// The first of four that is greatest. A NaN never is.
template <class T> int firstGreatest(auto magnitude, T& greatest)
{
    int p = 0;
    greatest = 0;
    for (int k = 0; k < 4; ++k)
        if (const T x = magnitude(k); x > greatest) greatest = x, p = k;
    return p;
}
// The scale for a right-hand side whose quotient may be as great as bound / pivot.
template <class T> T scaleFor(T bound, T pivot)
{
    return bound > 1 && 1 > pivot && bound > pivot * bigNorm<T> ? 1 / bound : T(1);
}
template <class T> void limit(Solution<T>& y, T cmax)
{
    if (y.norm > 1 && cmax > 1 && y.norm > bigNorm<T> / cmax) y.multiply(cmax / bigNorm<T>);
}

// c holds the elements (1, 1), (2, 1), (1, 2), (2, 2). False where all are below smini.
template <class T> bool solveTwo(const T (&c)[4], T b1, T b2, T smini, Solution<T>& y)
{
    T cmax;
    const int p = firstGreatest([&](int k) { return abs(c[k]); }, cmax);
    if (smini > cmax) return false;
    const int* const order = iPivot[p];
    const T r = 1 / c[order[0]], l = c[order[1]] * r, u12 = c[order[2]];
    T u22 = c[order[3]] - u12 * l;
    if (smini > abs(u22)) u22 = smini;
    if (p & 1) std::swap(b1, b2); // the pivot is in the second row
    b2 = b2 - l * b1;

    y = {};
    y.scale = scaleFor(greater(abs(b1 * (u22 * r)), abs(b2)), abs(u22));
    y.re[1] = (b2 * y.scale) / u22;
    y.re[0] = (b1 * y.scale - u12 * y.re[1]) * r;
    y.norm = greater(abs(y.re[0]), abs(y.re[1]));
    if (p & 2) std::swap(y.re[0], y.re[1]); // or column
    limit(y, cmax);
    return true;
}

// The same with the imaginary part ci on the diagonal.
template <class T> bool solveTwoComplex(const T (&c)[4], T ci, T br1, T bi1, T br2, T bi2, T smini, Solution<T>& y)
{
    const T im[4] = {ci, 0, 0, ci};
    T cmax;
    const int p = firstGreatest([&](int k) { return abs(c[k]) + abs(im[k]); }, cmax);
    if (smini > cmax) return false;
    const int* const order = iPivot[p];
    const T ur11 = c[order[0]], ui11 = im[order[0]], cr21 = c[order[1]], ci21 = im[order[1]];
    const T ur12 = c[order[2]], ui12 = im[order[2]], cr22 = c[order[3]], ci22 = im[order[3]];
    T ur11r, ui11r, lr21, li21, ur12s, ui12s, ur22, ui22;
    if (p == 0 || p == 3) { // the off-diagonal elements are real
        if (abs(ur11) > abs(ui11)) {
            const T t = ui11 / ur11;
            ur11r = 1 / (ur11 * (1 + t * t)), ui11r = -t * ur11r;
        } else {
            const T t = ur11 / ui11;
            ui11r = -1 / (ui11 * (1 + t * t)), ur11r = -t * ui11r;
        }
        lr21 = cr21 * ur11r, li21 = cr21 * ui11r;
        ur12s = ur12 * ur11r, ui12s = ur12 * ui11r;
        ur22 = cr22 - ur12 * lr21, ui22 = ci22 - ur12 * li21;
    } else { // the pivot is real
        ur11r = 1 / ur11, ui11r = 0;
        lr21 = cr21 * ur11r, li21 = ci21 * ur11r;
        ur12s = ur12 * ur11r, ui12s = ui12 * ur11r;
        ur22 = cr22 - ur12 * lr21 + ui12 * li21, ui22 = -ur12 * li21 - ui12 * lr21;
    }
    const T u22 = abs(ur22) + abs(ui22); // before it is replaced
    if (smini > u22) ur22 = smini, ui22 = 0;
    if (p & 1) std::swap(br1, br2), std::swap(bi1, bi2);
    br2 = br2 - lr21 * br1 + li21 * bi1;
    bi2 = bi2 - li21 * br1 - lr21 * bi1;

    y = {};
    const T bound = greater((abs(br1) + abs(bi1)) * (u22 * (abs(ur11r) + abs(ui11r))), abs(br2) + abs(bi2));
    y.scale = scaleFor(bound, u22);
    if (y.scale != 1) br1 = br1 * y.scale, bi1 = bi1 * y.scale, br2 = br2 * y.scale, bi2 = bi2 * y.scale;
    const T q = 1 / (ur22 * ur22 + ui22 * ui22);
    y.re[1] = (br2 * ur22 + bi2 * ui22) * q;
    y.im[1] = (bi2 * ur22 - br2 * ui22) * q;
    y.re[0] = ur11r * br1 - ui11r * bi1 - ur12s * y.re[1] + ui12s * y.im[1];
    y.im[0] = ui11r * br1 + ur11r * bi1 - ui12s * y.re[1] - ur12s * y.im[1];
    if (p & 2) std::swap(y.re[0], y.re[1]), std::swap(y.im[0], y.im[1]);
    y.norm = greater(abs(y.re[0]) + abs(y.im[0]), abs(y.re[1]) + abs(y.im[1]));
    limit(y, cmax);
    return true;
}

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
