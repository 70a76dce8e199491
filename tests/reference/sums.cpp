// One value for each object: dot products, norms and traces. What is fixed is the order in which terms are added.
#include "../reference.h"

#include <cmath>

namespace {
template <class T> using Terms = std::vector<T>;

// In ascending order, from the first term on or, as most loops do, from zero.
template <class T> T ascending(const Terms<T>& t, T sum = 0)
{
    for (T x : t) sum = sum + x;
    return sum;
}
template <class T> T inOrder(const Terms<T>& t, std::initializer_list<int> order)
{
    T sum = t[size_t(*order.begin())];
    for (const int* i = order.begin() + 1; i != order.end(); ++i) sum = sum + t[size_t(*i)];
    return sum;
}
// Eight terms or more: term k goes to partial sum k mod 16, and the upper half of the partial sums is added to the
// lower half until one is left. Fewer: ascending.
template <class T> T many(const Terms<T>& t, T sum = 0)
{
    if (t.size() < 8) return ascending(t, sum);
    T s[16] = {};
    for (size_t k = 0; k < t.size(); ++k) s[k % 16] = s[k % 16] + t[k];
    for (int half : {8, 4, 2, 1})
        for (int l = 0; l < half; ++l) s[l] = s[l] + s[l + half];
    return sum + s[0];
}
template <class T> T root(T x) { return T(std::sqrt(double(x))); }

// ---- Products

template <class T> void negativeZeros(const View<T>& x, const View<T>& y, int n, Random& random)
{
    if (random.chance(20))
        for (int j = 0; j < n; ++j) x(j) = T(-0.0), y(j) = T(j + 1);
}

struct Dot {
    template <class T> Outcome operator()(const Object<T>& o) const
    {
        const int n = o.dims['l'];
        Terms<T> p;
        for (int j = 0; j < n; ++j) p.push_back(o.source(0)(j) * o.source(1)(j));
        const bool anyStride = o.f.layout != "P" && !o.contiguous;
        T& dst = o.destination()(0);
        if (n == 3) dst = inOrder(p, {0, 1, 2});
        else if (n == 4) dst = anyStride ? inOrder(p, {3, 0, 1, 2}) : inOrder(p, {0, 1, 2, 3});
        else if (n == 5) dst = anyStride ? inOrder(p, {4, 0, 1, 2, 3}) : inOrder(p, {0, 1, 2, 3, 4});
        else if (n == 6) dst = anyStride ? inOrder(p, {5, 4, 0, 1, 2, 3}) : inOrder(p, {0, 1, 2, 3, 4, 5});
        else dst = o.f.shape == "vv" && o.f.layout.empty() && o.contiguous ? many(p) : ascending(p);
        return Ok;
    }
    template <class T> void inputs(const Object<T>& o, Random& random) const
    {
        negativeZeros(o.source(0), o.source(1), o.dims['l'], random);
    }
};

struct Cross {
    template <class T> Outcome operator()(const Object<T>& o) const
    {
        const View<T>&a = o.source(0), &b = o.source(1);
        o.destination()(0) = a(1) * b(2) - a(2) * b(1);
        o.destination()(1) = a(2) * b(0) - a(0) * b(2);
        o.destination()(2) = a(0) * b(1) - a(1) * b(0);
        return Ok;
    }
};

// ---- Norms

struct L2 {
    template <class T> Outcome operator()(const Object<T>& o) const
    {
        const int n = o.dims['l'];
        Terms<T> q;
        for (int j = 0; j < n; ++j) q.push_back(o.source(0)(j) * o.source(0)(j));
        const bool single = o.f.shape == "v", plain = single && o.f.layout == "P";
        T sum;
        if (n == 4 && !plain) sum = inOrder(q, {3, 0, 1, 2});
        else if (n == 5 && !plain) sum = inOrder(q, {4, 0, 1, 2, 3});
        else if (n == 6 && !plain) sum = inOrder(q, {5, 0, 1, 2, 3, 4});
        else sum = single && o.f.layout.empty() && o.contiguous ? many(q) : ascending(q);
        o.destination()(0) = root(sum);
        return Ok;
    }
};

struct Frobenius {
    template <class T> static Terms<T> squares(const View<T>& a, int h, int w)
    {
        Terms<T> q;
        for (int i = 0; i < h; ++i)
            for (int j = 0; j < w; ++j) q.push_back(a(i, j) * a(i, j));
        return q;
    }
    template <class T> Outcome operator()(const Object<T>& o) const
    {
        const int h = o.dims['h'], w = o.dims['w'];
        const View<T>& a = o.source(0);
        const Terms<T> q = squares(a, h, w);
        const bool gaps = a.row != w * a.column, single = o.f.shape == "m";
        T sum = 0;
        if (o.f.layout == "P") { // by twos
            size_t k = 0;
            for (; k + 1 < q.size(); k += 2) sum = sum + (q[k] + q[k + 1]);
            if (k < q.size()) sum = sum + q[k];
        } else if (single && sizeof(T) == 8) sum = ascending(q);
        else if (single && w == h && w < 7) sum = ascending(q);
        else if (!o.contiguous) sum = ascending(q);
        else if (single && gaps) // row by row, going on with the sum
            for (int i = 0; i < h; ++i) sum = many(Terms<T>(q.begin() + i * w, q.begin() + (i + 1) * w), sum);
        else if (!gaps || (w == h && w >= 3 && w <= 6)) sum = many(q);
        else sum = ascending(q);
        o.destination()(0) = root(sum);
        return Ok;
    }
};

struct TraceOf {
    template <class T> Outcome operator()(const Object<T>& o) const
    {
        const int n = o.dims['n'];
        Terms<T> d;
        for (int i = 0; i < n; ++i) d.push_back(o.source(0)(i, i));
        o.destination()(0) = n == 3   ? inOrder(d, {0, 1, 2})
                             : n == 4 ? inOrder(d, {3, 0, 1, 2})
                             : n == 5 ? inOrder(d, {4, 0, 1, 2, 3})
                             : n == 6 ? inOrder(d, {4, 5, 0, 1, 2, 3})
                                      : ascending(d);
        return Ok;
    }
    template <class T> void inputs(const Object<T>& o, Random& random) const
    {
        if (random.chance(20))
            for (int i = 0; i < o.dims['n']; ++i) o.source(0)(i, i) = T(-0.0);
    }
};

const Register dot("DotProduct", "", Dot());
const Register cross("CrossProduct", "", Cross());
const Register l2("L2Norm", "", L2());
const Register frobenius("FrobNorm", "", Frobenius());
const Register trace("Trace", "", TraceOf());
} // namespace
