// The solution of systems of order 1 and 2, real and complex, without overflow (LAPACK's dlaln2). Complex quotients are plain
// formulas.
#pragma once
#include "frame/constants.h"
#include "frame/lanes.h"

#include <utility>

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

} // namespace kesl
