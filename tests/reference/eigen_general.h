#pragma once
// General eigenproblems: Hessenberg reduction of the transposed matrix, double-shift QR, standardisation of the 2 by 2
// blocks; for vectors, back-substitution in the Schur form. Indices start from 1, sums run over ascending indices.
#include "../reference.h"

#include <cmath>
#include <limits>

namespace {
template <class T> constexpr T eps = std::numeric_limits<T>::epsilon();
template <class T> constexpr T safeMin = std::numeric_limits<T>::min() * 2;
template <class T> constexpr T floorNorm = std::numeric_limits<T>::min() * 4;

template <class T> T greater(T x, T y) { return x > y ? x : y; }
template <class T> T sum(int from, int to, auto&& term) // the first term starts it
{
    T s = from > to ? T(0) : term(from);
    for (int k = from + 1; k <= to; ++k) s = s + term(k);
    return s;
}
bool differInSign(auto x, auto y) { return (x < 0) != (y < 0); }

template <class T> struct Square {
    int n;
    std::vector<T> elements = std::vector<T>(size_t(n * n));
    T& operator()(int r, int c) { return elements[size_t((c - 1) * n + r - 1)]; }
};
template <class T> struct Row {
    std::vector<T> elements;
    explicit Row(int n) : elements(size_t(n)) {}
    T& operator()(int i) { return elements[size_t(i - 1)]; }
};

template <class T> T hypotenuse(T x, T y)
{
    x = std::fabs(x), y = std::fabs(y);
    T big = x > y ? x : y;
    const T small = x > y ? y : x;
    if (!(small < safeMin<T>)) big = big * T(std::sqrt(1.0 + double((small * small) / (big * big))));
    return safeMin<T> > big ? floorNorm<T> : big;
}

// Leaves beta in alpha and the rest of the vector, whose head is 1, in x; returns tau.
template <class T> T reflector(T& alpha, std::vector<T*> x)
{
    const T norm = std::sqrt(sum<T>(0, int(x.size()) - 1, [&](int k) { return *x[size_t(k)] * *x[size_t(k)]; }));
    if (norm < safeMin<T>) return 0;
    const T big = hypotenuse(alpha, norm), beta = alpha < 0 ? big : -big, tau = (beta - alpha) / beta;
    const T factor = 1 / (alpha - beta);
    for (T* element : x) *element = *element * factor;
    alpha = beta;
    return tau;
}

// How a solve of the substitution ended: an object may end the call in two ways.
enum class End { solved, quietly, failed };

constexpr int pivots[4][4] = {{0, 1, 2, 3}, {1, 0, 3, 2}, {2, 3, 0, 1}, {3, 2, 1, 0}};

template <class T> struct Pair {
    T r1 = 0, r2 = 0, i1 = 0, i2 = 0, scale = 1, norm = 0;
};

// The elements of the block come as (1,1), (2,1), (1,2), (2,2).
template <class T> End solveReal(const T (&c)[4], T smini, T b1, T b2, Pair<T>& y)
{
    const T big = 1 / floorNorm<T>;
    T cmax = 0;
    int p = 0;
    for (int k = 0; k < 4; ++k)
        if (std::fabs(c[k]) > cmax) cmax = std::fabs(c[k]), p = k;
    if (smini > cmax) return End::quietly;
    const T u11 = c[p], c21 = c[pivots[p][1]], u12 = c[pivots[p][2]], c22 = c[pivots[p][3]];
    const T r = 1 / u11, l = c21 * r;
    T u22 = c22 - u12 * l;
    if (smini > std::fabs(u22)) u22 = smini;
    if (p == 1 || p == 3) std::swap(b1, b2);
    b2 = b2 - l * b1;
    const T bound = greater(std::fabs(b1 * (u22 * r)), std::fabs(b2));
    T s = 1;
    if (bound > 1 && 1 > std::fabs(u22) && bound > std::fabs(u22) * big) s = 1 / bound;
    y.r2 = (b2 * s) / u22;
    y.r1 = (b1 * s - u12 * y.r2) * r;
    y.norm = greater(std::fabs(y.r1), std::fabs(y.r2));
    if (y.norm > 1 && cmax > 1 && y.norm > big / cmax) {
        const T t = cmax / big;
        y.r1 = y.r1 * t, y.r2 = y.r2 * t, y.norm = y.norm * t, s = s * t;
    }
    if (p == 2 || p == 3) std::swap(y.r1, y.r2);
    y.scale = s;
    return End::solved;
}

// The same with -wi beside the diagonal.
template <class T> End solveComplex(const T (&cr)[4], T wi, T smini, T br1, T bi1, T br2, T bi2, Pair<T>& y)
{
    const T big = 1 / floorNorm<T>;
    const T ci[4] = {-wi, 0, 0, -wi};
    T cmax = 0;
    int p = 0;
    for (int k = 0; k < 4; ++k)
        if (const T size = std::fabs(cr[k]) + std::fabs(ci[k]); size > cmax) cmax = size, p = k;
    if (smini > cmax) return End::failed;
    const int* place = pivots[p];
    const T ur11 = cr[p], ui11 = ci[p], cr21 = cr[place[1]], ci21 = ci[place[1]];
    const T ur12 = cr[place[2]], ui12 = ci[place[2]], cr22 = cr[place[3]], ci22 = ci[place[3]];
    T ur11r, ui11r, lr21, li21, ur12s, ui12s, ur22, ui22;
    if (p == 0 || p == 3) { // beside a complex pivot the off-diagonal elements are real
        if (std::fabs(ur11) > std::fabs(ui11)) {
            const T t = ui11 / ur11;
            ur11r = 1 / (ur11 * (1 + t * t)), ui11r = -t * ur11r;
        } else {
            const T t = ur11 / ui11;
            ui11r = -1 / (ui11 * (1 + t * t)), ur11r = -t * ui11r;
        }
        lr21 = cr21 * ur11r, li21 = cr21 * ui11r;
        ur12s = ur12 * ur11r, ui12s = ur12 * ui11r;
        ur22 = cr22 - ur12 * lr21, ui22 = ci22 - ur12 * li21;
    } else {
        ur11r = 1 / ur11, ui11r = 0;
        lr21 = cr21 * ur11r, li21 = ci21 * ur11r;
        ur12s = ur12 * ur11r, ui12s = ui12 * ur11r;
        ur22 = cr22 - ur12 * lr21 + ui12 * li21, ui22 = -ur12 * li21 - ui12 * lr21;
    }
    const T u22abs = std::fabs(ur22) + std::fabs(ui22);
    if (smini > u22abs) ur22 = smini, ui22 = 0;
    if (p == 1 || p == 3) std::swap(br1, br2), std::swap(bi1, bi2);
    br2 = br2 - lr21 * br1 + li21 * bi1, bi2 = bi2 - li21 * br1 - lr21 * bi1;
    const T bound = greater((std::fabs(br1) + std::fabs(bi1)) * (u22abs * (std::fabs(ur11r) + std::fabs(ui11r))),
                            std::fabs(br2) + std::fabs(bi2));
    T s = 1;
    if (bound > 1 && 1 > u22abs && bound > u22abs * big) {
        s = 1 / bound;
        br1 = br1 * s, bi1 = bi1 * s, br2 = br2 * s, bi2 = bi2 * s;
    }
    const T q = 1 / (ur22 * ur22 + ui22 * ui22);
    y.r2 = (br2 * ur22 + bi2 * ui22) * q, y.i2 = (bi2 * ur22 - br2 * ui22) * q;
    y.r1 = ur11r * br1 - ui11r * bi1 - ur12s * y.r2 + ui12s * y.i2;
    y.i1 = ui11r * br1 + ur11r * bi1 - ui12s * y.r2 - ur12s * y.i2;
    if (p == 2 || p == 3) std::swap(y.r1, y.r2), std::swap(y.i1, y.i2);
    y.norm = greater(std::fabs(y.r1) + std::fabs(y.i1), std::fabs(y.r2) + std::fabs(y.i2));
    if (y.norm > 1 && cmax > 1 && y.norm > big / cmax) {
        const T t = cmax / big;
        y.r1 = y.r1 * t, y.i1 = y.i1 * t, y.r2 = y.r2 * t, y.i2 = y.i2 * t, y.norm = y.norm * t, s = s * t;
    }
    y.scale = s;
    return End::solved;
}

template <class T> struct Schur {
    const Object<T>& o;
    const int n = o.dims['n'];
    const bool vectors = o.f.operation != "EigenValues";
    const int results = int(o.destinations.size()) - 2; // before re and im
    const View<T>&re = o.destination(results), &im = o.destination(results + 1);
    Square<T> H{n}, Z{n};
    Row<T> tau{n}, norm{n};
    T cs = 0, sn = 0; // of the last rotation
    const T smallNum = safeMin<T> * T(n) * (1 / eps<T>), bigNum = (1 - eps<T>) / smallNum;

    Outcome solve()
    {
        if (vectors && n == 1) {
            for (int i = 0; i < results; ++i) o.destination(i)(0, 0) = 1;
            re(0) = o.source(0)(0, 0), im(0) = 0;
            return Ok;
        }
        for (int r = 0; r < n; ++r)
            for (int c = 0; c < n; ++c) H(c + 1, r + 1) = o.source(0)(r, c);
        reduce();
        if (vectors) formZ();
        for (int j = 1; j <= n - 2; ++j)
            for (int r = j + 2; r <= n; ++r) H(r, j) = 0;
        // In double precision the shifts of most vectors are formed in single precision.
        const bool narrow = vectors && !(o.f.operation == "EigenValuesVectors" && !o.f.array);
        if (!(narrow ? iterate<float>() : iterate<T>())) return NoConvergence;
        if (!vectors) return Ok;

        std::vector<Square<T>> sets;
        for (const bool left : {false, true}) {
            if (o.f.operation == (left ? "EigenValuesVectorsRight" : "EigenValuesVectorsLeft")) continue;
            sets.push_back({n});
            Square<T>& set = sets.back();
            const End end = left ? ascend(set) : descend(set);
            if (end == End::quietly) return Outcome(Ok, true); // a success that ends the call
            if (end == End::failed) return Failed;
            normalise(set);
        }
        for (int i = 0; i < results; ++i)
            for (int r = 0; r < n; ++r)
                for (int c = 0; c < n; ++c) o.destination(i)(r, c) = sets[size_t(i)](r + 1, c + 1);
        return Ok;
    }

    void reduce()
    {
        for (int j = 1; j <= n - 1; ++j) {
            T alpha = H(j + 1, j);
            std::vector<T*> x;
            for (int r = j + 2; r <= n; ++r) x.push_back(&H(r, j));
            tau(j) = x.empty() ? 0 : reflector(alpha, x);
            H(j + 1, j) = 1;
            const auto v = [&](int t) { return H(t, j); };
            if (std::fabs(tau(j)) > safeMin<T>) {
                for (int r = 1; r <= n; ++r) {
                    const T w = sum<T>(j + 1, n, [&](int t) { return H(r, t) * v(t); });
                    for (int t = j + 1; t <= n; ++t) H(r, t) = H(r, t) - (tau(j) * w) * v(t);
                }
                for (int c = j + 1; c <= n; ++c) reflectColumn(H, j, c);
            }
            H(j + 1, j) = alpha;
        }
    }

    // Reflector j, whose vector is column j of H below the diagonal, its head 1.
    void reflectColumn(Square<T>& m, int j, int c)
    {
        const auto v = [&](int t) { return t == j + 1 ? T(1) : H(t, j); };
        const T w = sum<T>(j + 1, n, [&](int t) { return m(t, c) * v(t); });
        for (int t = j + 1; t <= n; ++t) m(t, c) = m(t, c) - (tau(j) * v(t)) * w;
    }

    void formZ()
    {
        for (int i = 1; i <= n; ++i) Z(i, i) = 1;
        for (int j = n - 1; j >= 1; --j)
            for (int c = j + 1; c <= n && std::fabs(tau(j)) > safeMin<T>; ++c) reflectColumn(Z, j, c);
    }

    template <class S> bool iterate()
    {
        int budget = 30 * n;
        for (int i = n, l; i > 0; i = l - 1) {
            l = 1;
            int its = 0;
            for (; its < budget; ++its) {
                l = deflate(l, i);
                if (l > 1) H(l, l - 1) = 0;
                if (l >= i - 1) break;
                sweep<S>(l, i, its);
            }
            if (l < i - 1) return false;
            if (l == i) re(i - 1) = H(i, i), im(i - 1) = 0;
            else standardise(i);
            budget -= its;
        }
        return true;
    }

    int deflate(int l, int i)
    {
        for (int k = i; k > l; --k) {
            T threshold = eps<T>;
            if (vectors) {
                T tst = std::fabs(H(k - 1, k - 1)) + std::fabs(H(k, k));
                if (safeMin<T> >= tst) {
                    tst = 0;
                    for (int c = l; c <= i; ++c)
                        tst = greater(tst, sum<T>(l, std::min(c + 1, i), [&](int r) { return std::fabs(H(r, c)); }));
                }
                threshold = greater(smallNum, eps<T> * tst); // a NaN stays, and then nothing is negligible
            }
            if (threshold >= std::fabs(H(k, k - 1))) return k;
        }
        return l;
    }

    // S is the type of the shifts and of the search for the row at which a sweep starts.
    template <class S> void sweep(int l, int i, int its)
    {
        const auto h = [&](int r, int c) { return S(H(r, c)); };
        const auto size = [&](int r, int c) { return std::fabs(h(r, c)); };
        const S least = safeMin<S>;
        S h44 = h(i, i), h33 = h(i - 1, i - 1), h43h34 = S(H(i, i - 1) * H(i - 1, i));
        if (its == 10 || its == 20) {
            const S s = size(i, i - 1) + size(i - 1, i - 2);
            h44 = S(0.75) * s + h(i, i), h33 = h44, h43h34 = S(-0.4375) * s * s;
        } else {
            const S half = (h33 - h44) * S(0.5), disc = half * half + h43h34;
            if (disc > (vectors ? least : 0)) {
                const S root = std::sqrt(disc), ave = (h44 + h33) * S(0.5);
                const bool minus = vectors ? 0 - h44 > h33 : ave < 0;
                const S w = minus ? ave - root : ave + root;
                if (vectors)
                    h44 = std::fabs(h33) > std::fabs(h44) ? (h33 * h44 - h43h34) * (std::fabs(w) > least ? 1 / w : w) : w;
                else h44 = std::fabs(h33) - std::fabs(h44) > 0 ? (h33 * h44 - h43h34) / w : w;
                h33 = h44, h43h34 = 0;
            }
        }

        S s1 = 0, s2 = 0, s3 = 0;
        int m = i - 2;
        for (;; --m) {
            if (vectors && least >= size(m + 1, m)) break;
            const S h11 = h(m, m), h22 = h(m + 1, m + 1), h44s = h44 - h11, h33s = h33 - h11;
            s1 = (h33s * h44s - h43h34) / h(m + 1, m) + h(m, m + 1);
            s2 = h22 - h11 - h44s - h33s, s3 = h(m + 2, m + 1);
            const S s = std::fabs(s1) + std::fabs(s2) + std::fabs(s3), r = std::fabs(s) > least ? 1 / s : s;
            if (vectors) s1 = s1 * r, s2 = s2 * r, s3 = s3 * r;
            else s1 = s1 / s, s2 = s2 / s, s3 = s3 / s;
            if (m == l) break;
            const S around = size(m - 1, m - 1) + std::fabs(h11) + std::fabs(h22);
            if (S(eps<T>) * std::fabs(s1) * around >= size(m, m - 1) * (std::fabs(s2) + std::fabs(s3))) break;
        }

        T u1 = s1, u2 = s2, u3 = s3;
        for (int k = m; k <= i - 1; ++k) {
            const bool three = k <= i - 2;
            if (k > m) {
                u1 = H(k, k - 1), u2 = H(k + 1, k - 1);
                if (three) u3 = H(k + 2, k - 1);
            }
            const T t1 = three ? reflector(u1, {&u2, &u3}) : reflector(u1, {&u2});
            if (k > m) {
                H(k, k - 1) = u1, H(k + 1, k - 1) = 0;
                if (k < i - 1) H(k + 2, k - 1) = 0;
            } else if (m > l) H(k, k - 1) = -H(k, k - 1);
            const T t2 = t1 * u2, t3 = t1 * u3;
            const auto reflect = [&](T& x, T& y, T* z) {
                T total = x + u2 * y;
                if (three) total = total + u3 * *z;
                x = x - total * t1, y = y - total * t2;
                if (three) *z = *z - total * t3;
            };
            for (int j = k; j <= (vectors ? n : i); ++j) reflect(H(k, j), H(k + 1, j), three ? &H(k + 2, j) : nullptr);
            for (int j = vectors ? 1 : l; j <= std::min(k + 3, i); ++j)
                reflect(H(j, k), H(j, k + 1), three ? &H(j, k + 2) : nullptr);
            for (int j = 1; j <= n && vectors; ++j) reflect(Z(j, k), Z(j, k + 1), three ? &Z(j, k + 2) : nullptr);
        }
    }

    // Rows i-1 and i hold a block by themselves.
    void standardise(int i)
    {
        T a = H(i - 1, i - 1), b = H(i - 1, i), c = H(i, i - 1), d = H(i, i);
        const T wi = standardForm(a, b, c, d);
        re(i - 2) = a, im(i - 2) = wi, re(i - 1) = d, im(i - 1) = 0 - wi;
        if (!vectors) return;
        H(i - 1, i - 1) = a, H(i - 1, i) = b, H(i, i - 1) = c, H(i, i) = d;
        const auto rotate = [&](T& x, T& y) {
            const T before = x;
            x = cs * x + sn * y, y = cs * y - sn * before;
        };
        for (int j = i + 1; j <= n; ++j) rotate(H(i - 1, j), H(i, j));
        for (int j = 1; j <= i - 2; ++j) rotate(H(j, i - 1), H(j, i));
        for (int j = 1; j <= n; ++j) rotate(Z(j, i - 1), Z(j, i));
    }

    T standardForm(T& a, T& b, T& c, T& d)
    {
        const auto imaginary = [&] { return std::sqrt(std::fabs(b)) * std::sqrt(std::fabs(c)); };
        if (safeMin<T> >= std::fabs(c)) {
            cs = 1, sn = 0;
            return 0;
        }
        if (safeMin<T> >= std::fabs(b)) {
            std::swap(a, d);
            cs = 0, sn = 1, b = -c, c = 0;
            return 0;
        }
        if (safeMin<T> >= std::fabs(a - d)) { // a pair, whatever the signs are
            if (differInSign(b, c)) cs = 1, sn = 0;
            return imaginary();
        }
        const T p = T(0.5) * (a - d);
        const bool first = std::fabs(b) > std::fabs(c);
        const T bcmax = std::fabs(first ? b : c), least = std::fabs(first ? c : b);
        const T bcmis = differInSign(b, c) ? -least : least;
        const T scale = greater(std::fabs(p), bcmax), z = (p / scale) * p + (bcmax / scale) * bcmis;
        if (z >= 4 * eps<T>) {
            const T r = std::sqrt(scale) * std::sqrt(z), q = p > 0 ? p + r : p - r;
            a = d + q, d = d - (bcmax / q) * bcmis;
            const T t = hypotenuse(q, c);
            cs = q / t, sn = c / t, b = b - c, c = 0;
            return 0;
        }
        const T sigma = b + c, t = hypotenuse(sigma, a - d);
        cs = std::sqrt((1 + std::fabs(sigma) / t) * T(0.5));
        sn = -p / (t * cs);
        if (sigma < 0) sn = -sn;
        const T aa = a * cs + b * sn, bb = b * cs - a * sn, cc = c * cs + d * sn, dd = d * cs - c * sn;
        b = bb * cs + dd * sn, c = cc * cs - aa * sn;
        a = d = T(0.5) * (aa * cs + cc * sn - bb * sn + dd * cs);
        if (!(std::fabs(b) > safeMin<T> && std::fabs(c) > safeMin<T>)) {
            const T before = cs;
            b = -c, c = 0, cs = -sn, sn = before;
            return 0;
        }
        if (differInSign(b, c)) return imaginary();
        const T x = c < 0 ? -p : p; // where the root of bc might be expected
        a = a + x, d = d - x;
        const T root = 1 / std::sqrt(std::fabs(b + c)), cs1 = std::sqrt(std::fabs(b)) * root;
        const T sn1 = std::sqrt(std::fabs(c)) * root, before = cs;
        cs = before * cs1 - sn * sn1, sn = before * sn1 + sn * cs1;
        b = b - c, c = 0;
        return 0;
    }

    // The eigenvalue of row k, and its partner's row, and what counts as zero beside it.
    struct Value {
        T wr, wi, smini;
    };
    Value value(int k, int partner)
    {
        const T wi = k == partner ? T(0) : std::sqrt(std::fabs(H(k, partner))) * std::sqrt(std::fabs(H(partner, k)));
        const T smin = greater(eps<T> * (std::fabs(H(k, k)) + std::fabs(wi)), smallNum);
        return {H(k, k), wi, greater(smin, floorNorm<T>)};
    }
    bool block(int k) { return k >= 1 && k < n && std::fabs(H(k + 1, k)) > safeMin<T>; } // rows k and k+1

    static Pair<T> single(const Value& v, T diagonal, T x)
    {
        T c = diagonal - v.wr;
        if (v.smini > std::fabs(c)) c = v.smini;
        Pair<T> y;
        if (std::fabs(x) > 1 && 1 > std::fabs(c) && std::fabs(x) > (1 / floorNorm<T>)*std::fabs(c))
            y.scale = 1 / std::fabs(x);
        y.r1 = (x * y.scale) / c;
        y.norm = std::fabs(y.r1);
        return y;
    }
    Pair<T> singleComplex(const Value& v, T diagonal, T a, T b) const
    {
        T cr = diagonal - v.wr, ci = -v.wi, cn = std::fabs(cr) + std::fabs(ci);
        if (v.smini > cn) cr = v.smini, ci = 0, cn = v.smini;
        const T bn = std::fabs(a) + std::fabs(b);
        Pair<T> y;
        if (bn > 1 && 1 > cn && bn > cn * bigNum) y.scale = 1 / bn;
        const T q = y.scale / (cr * cr + ci * ci);
        y.r1 = (a * cr + b * ci) * q, y.i1 = (b * cr - a * ci) * q;
        y.norm = std::fabs(y.r1) + std::fabs(y.i1);
        return y;
    }

    // Solves with the block of rows j and j+1, or with row j alone, for one or two right-hand sides.
    End solveAt(int j, bool two, bool transposed, const Value& v, bool pair, Row<T>& a, Row<T>& b, Pair<T>& y)
    {
        if (!two) {
            y = pair ? singleComplex(v, H(j, j), a(j), b(j)) : single(v, H(j, j), a(j));
            return End::solved;
        }
        const T lower = H(j + 1, j), upper = H(j, j + 1);
        const T c[4] = {H(j, j) - v.wr, transposed ? upper : lower, transposed ? lower : upper, H(j + 1, j + 1) - v.wr};
        return pair ? solveComplex(c, v.wi, v.smini, a(j), b(j), a(j + 1), b(j + 1), y)
                    : solveReal(c, v.smini, a(j), a(j + 1), y);
    }

    static void scaleRows(T s, int from, int to, Row<T>& a, Row<T>& b)
    {
        for (int k = from; k <= to; ++k) a(k) = a(k) * s, b(k) = b(k) * s;
    }

    static void take(const Pair<T>& y, int j, bool two, Row<T>& a, Row<T>& b)
    {
        a(j) = y.r1, b(j) = y.i1;
        if (two) a(j + 1) = y.r2, b(j + 1) = y.i2;
    }

    void norms()
    {
        for (int j = 1; j <= n; ++j) norm(j) = sum<T>(1, j - 1, [&](int i) { return std::fabs(H(i, j)); });
    }

    // For real values b plays no part.
    End descend(Square<T>& set)
    {
        norms();
        for (int ki = n; ki >= 1; --ki) {
            const bool pair = block(ki - 1);
            const int first = pair ? ki - 1 : ki;
            const Value v = value(ki, first);
            Row<T> a(n), b(n);
            if (pair) {
                const T upper = H(ki - 1, ki), lower = H(ki, ki - 1);
                const bool greaterAbove = std::fabs(upper) > std::fabs(lower);
                a(ki - 1) = greaterAbove ? T(1) : -v.wi / lower;
                b(ki) = greaterAbove ? v.wi / upper : T(1);
                for (int k = 1; k <= ki - 2; ++k) a(k) = -a(ki - 1) * H(k, ki - 1), b(k) = -b(ki) * H(k, ki);
            } else {
                a(ki) = 1;
                for (int k = 1; k < ki; ++k) a(k) = -H(k, ki);
            }
            for (int last = first - 1; last >= 1; --last) {
                const bool two = block(last - 1);
                const int j = two ? last - 1 : last;
                Pair<T> y;
                const End end = solveAt(j, two, false, v, pair, a, b, y);
                if (end != End::solved) return end;
                const T above = two ? greater(norm(j), norm(last)) : norm(j);
                if (y.norm > 1 && above > bigNum / y.norm) {
                    y.r1 = y.r1 / y.norm, y.i1 = y.i1 / y.norm, y.r2 = y.r2 / y.norm, y.i2 = y.i2 / y.norm;
                    y.scale = y.scale / y.norm;
                }
                if (std::fabs(y.scale - 1) > safeMin<T>) scaleRows(y.scale, 1, ki, a, b);
                take(y, j, two, a, b);
                for (int k = 1; k < j; ++k) {
                    a(k) = a(k) - y.r1 * H(k, j), b(k) = b(k) - y.i1 * H(k, j);
                    if (two) a(k) = a(k) - y.r2 * H(k, last), b(k) = b(k) - y.i2 * H(k, last);
                }
                last = j;
            }
            carryBack(set, first, a, 1, first - 1, first);
            if (pair) carryBack(set, ki, b, 1, first - 1, ki);
            ki = first;
        }
        return End::solved;
    }

    End ascend(Square<T>& set)
    {
        norms();
        for (int ki = 1; ki <= n; ++ki) {
            const bool pair = block(ki);
            const int end = pair ? ki + 1 : ki;
            const Value v = value(ki, end);
            Row<T> a(n), b(n);
            if (pair) {
                const T upper = H(ki, ki + 1), lower = H(ki + 1, ki);
                const bool greaterAbove = std::fabs(upper) > std::fabs(lower);
                a(ki) = greaterAbove ? -v.wi / upper : T(1);
                b(ki + 1) = greaterAbove ? T(1) : v.wi / lower;
                for (int k = ki + 2; k <= n; ++k) a(k) = -a(ki) * H(ki, k), b(k) = -b(ki + 1) * H(ki + 1, k);
            } else {
                a(ki) = 1;
                for (int k = ki + 1; k <= n; ++k) a(k) = -H(ki, k);
            }
            T vmax = 1, vcrit = bigNum;
            for (int j = end + 1; j <= n; ++j) {
                const bool two = block(j);
                if ((two ? greater(norm(j), norm(j + 1)) : norm(j)) > vcrit) {
                    scaleRows(1 / vmax, ki, n, a, b);
                    vmax = 1, vcrit = bigNum;
                }
                for (int c = j; c <= j + two && end + 1 < j; ++c) {
                    a(c) = a(c) - sum<T>(end + 1, j - 1, [&](int k) { return H(k, c) * a(k); });
                    b(c) = b(c) - sum<T>(end + 1, j - 1, [&](int k) { return H(k, c) * b(k); });
                }
                Pair<T> y;
                const End how = solveAt(j, two, true, v, pair, a, b, y);
                if (how != End::solved) return how;
                if (std::fabs(y.scale - 1) > safeMin<T>) scaleRows(y.scale, ki, n, a, b);
                take(y, j, two, a, b);
                for (int c = j; c <= j + two; ++c) {
                    vmax = greater(vmax, std::fabs(a(c)));
                    if (pair) vmax = greater(vmax, std::fabs(b(c)));
                }
                vcrit = bigNum / vmax;
                j += two;
            }
            carryBack(set, ki, a, end + 1, n, ki);
            if (pair) carryBack(set, end, b, end + 1, n, end);
            ki = end;
        }
        return End::solved;
    }

    void carryBack(Square<T>& set, int column, Row<T>& x, int from, int to, int last)
    {
        for (int r = 1; r <= n; ++r) {
            const T term = x(last) * Z(r, last);
            set(r, column) = from > to ? term : sum<T>(from, to, [&](int k) { return x(k) * Z(r, k); }) + term;
        }
    }

    void normalise(Square<T>& set)
    {
        for (int j = 1; j <= n; ++j) {
            const auto squares = [&](int c) { return sum<T>(1, n, [&](int r) { return set(r, c) * set(r, c); }); };
            if (std::fabs(im(j - 1)) < safeMin<T>) {
                const T total = squares(j);
                const T factor = 1 / std::sqrt(total);
                for (int r = 1; r <= n && std::fabs(total) > safeMin<T>; ++r) set(r, j) = set(r, j) * factor;
                continue;
            }
            const T factor = 1 / std::sqrt(squares(j) + squares(j + 1));
            for (int r = 1; r <= n; ++r) set(r, j) = set(r, j) * factor, set(r, j + 1) = set(r, j + 1) * factor;
            const auto size = [&](int r) { return set(r, j) * set(r, j) + set(r, j + 1) * set(r, j + 1); };
            int k = 1;
            for (int r = 2; r <= n; ++r)
                if (size(r) > size(k)) k = r;
            const T root = std::sqrt(size(k));
            T c = set(k, j) / root, s = set(k, j + 1) / root;
            if (std::fabs(set(k, j)) > std::fabs(set(k, j + 1)) && c < 0) c = -c, s = -s;
            for (int r = 1; r <= n; ++r) {
                const T x = set(r, j), y = set(r, j + 1);
                set(r, j) = c * x + s * y, set(r, j + 1) = c * y - s * x;
            }
            ++j;
        }
    }
};
} // namespace
