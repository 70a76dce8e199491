// LAPACK and BLAS, on copies by columns, which they overwrite.
#include "eigen.h"

#include <lapacke.h>

extern "C" {
void sgemm_(const char*, const char*, const int*, const int*, const int*, const float*, const float*, const int*,
            const float*, const int*, const float*, float*, const int*);
void dgemm_(const char*, const char*, const int*, const int*, const int*, const double*, const double*, const int*,
            const double*, const int*, const double*, double*, const int*);
float sdot_(const int*, const float*, const int*, const float*, const int*);
double ddot_(const int*, const double*, const int*, const double*, const int*);
float snrm2_(const int*, const float*, const int*);
double dnrm2_(const int*, const double*, const int*);
}

namespace bench::stacks {
namespace {

constexpr int columns = LAPACK_COL_MAJOR, limit = ::stacks::limit;

using T = Element;
#define BLAS(name) constexpr auto name = chosen(s##name##_, d##name##_)
#define LAPACK(name) constexpr auto name = chosen(LAPACKE_s##name##_work, LAPACKE_d##name##_work)
BLAS(gemm);
BLAS(dot);
BLAS(nrm2);
LAPACK(getrf);
LAPACK(getri);
LAPACK(gesv);
LAPACK(getrs);
LAPACK(potrf);
LAPACK(potrs);
LAPACK(geqrf);
LAPACK(orgqr);
LAPACK(gels);
LAPACK(syev);
LAPACK(geev);
LAPACK(gesdd);

// Storage of one object, and what LAPACK works in.
struct Local {
    using Matrix = Eigen::Matrix<T, Eigen::Dynamic, Eigen::Dynamic>;
    const Problem& p;
    const int n;
    std::vector<View<Matrix>> views;
    Matrix a, b, c;
    int pivots[8 * limit], length = 128 * limit;
    T s[limit], t[limit], work[128 * limit];

    explicit Local(const Problem& problem) : p(problem), n(p.order)
    {
        for (int i = 0; i < int(p.arrays.size()); ++i) views.emplace_back(p, i);
        a = views[0].blank(), b = c = Matrix(n, n);
    }
    void load(int k, int index, Matrix& x)
    {
        const Array& array = p.arrays[std::size_t(index)];
        x.resize(array.rows, array.cols);
        views[std::size_t(index)].load(k, x);
    }
    void store(int k, int index, const Matrix& x) const { views[std::size_t(index)].store(k, x); }
    template <class E> void store(int k, int index, const E* x) const // a vector
    {
        const Array& array = p.arrays[std::size_t(index)];
        for (int i = 0; i < array.rows; ++i) array.at<E>(k, i, 0) = x[i];
    }
};

// A body does object k of the problem.
template <class Body> void inTurn(const Problem& p, Range range)
{
    Local local(p);
    for (int k = range.begin; k < range.end; ++k) Body{}(local, k);
}

template <class Body> bool add(const char* function, Body)
{
    alternatives().push_back({function, "lapack", sizeof(T), inTurn<Body>, 0, nullptr, false, true});
    return true;
}
const bool registered =
    add("matmul",
        [](Local& l, int k) {
            const T one = 1, zero = 0;
            l.load(k, 0, l.a), l.load(k, 1, l.b);
            gemm("N", "N", &l.n, &l.n, &l.n, &one, l.a.data(), &l.n, l.b.data(), &l.n, &zero, l.c.data(), &l.n);
            l.store(k, 2, l.c);
        }) &&
    add("vecdot",
        [](Local& l, int k) {
            const Array &a = l.p.arrays[0], &b = l.p.arrays[1];
            const int aStep = int(a.stride1) / a.bytes, bStep = int(b.stride1) / b.bytes;
            const T x = dot(&l.n, &a.at<T>(k, 0, 0), &aStep, &b.at<T>(k, 0, 0), &bStep);
            l.store(k, 2, &x);
        }) &&
    add("norm",
        [](Local& l, int k) {
            const Array& a = l.p.arrays[0];
            const int step = int(a.stride1) / a.bytes;
            const T x = nrm2(&l.n, &a.at<T>(k, 0, 0), &step);
            l.store(k, 1, &x);
        }) &&
    add("det",
        [](Local& l, int k) {
            l.load(k, 0, l.a);
            getrf(columns, l.n, l.n, l.a.data(), l.n, l.pivots);
            T x = 1;
            for (int i = 0; i < l.n; ++i) x *= l.pivots[i] == i + 1 ? l.a(i, i) : -l.a(i, i);
            l.store(k, 1, &x);
        }) &&
    add("inv",
        [](Local& l, int k) {
            l.load(k, 0, l.a);
            getrf(columns, l.n, l.n, l.a.data(), l.n, l.pivots);
            getri(columns, l.n, l.a.data(), l.n, l.pivots, l.work, l.length);
            l.store(k, 1, l.a);
        }) &&
    add("solve",
        [](Local& l, int k) {
            l.load(k, 0, l.a), l.load(k, 1, l.b);
            gesv(columns, l.n, 1, l.a.data(), l.n, l.pivots, l.b.data(), l.n);
            l.store(k, 2, l.b);
        }) &&
    add("lu",
        [](Local& l, int k) {
            l.load(k, 0, l.a);
            getrf(columns, l.n, l.n, l.a.data(), l.n, l.pivots);
            l.store(k, 1, l.a), l.store(k, 2, l.pivots);
        }) &&
    add("lu_solve",
        [](Local& l, int k) {
            l.load(k, 0, l.a), l.load(k, 2, l.b);
            for (int i = 0; i < l.n; ++i) l.pivots[i] = l.p.arrays[1].at<int>(k, i, 0);
            getrs(columns, 'N', l.n, 1, l.a.data(), l.n, l.pivots, l.b.data(), l.n);
            l.store(k, 3, l.b);
        }) &&
    add("cholesky",
        [](Local& l, int k) {
            l.load(k, 0, l.a);
            potrf(columns, 'L', l.n, l.a.data(), l.n);
            l.a.triangularView<Eigen::StrictlyUpper>().setZero();
            l.store(k, 1, l.a);
        }) &&
    add("cholesky_solve",
        [](Local& l, int k) {
            l.load(k, 0, l.a), l.load(k, 1, l.b);
            potrs(columns, 'L', l.n, 1, l.a.data(), l.n, l.b.data(), l.n);
            l.store(k, 2, l.b);
        }) &&
    add("qr",
        [](Local& l, int k) {
            l.load(k, 0, l.a);
            geqrf(columns, l.n, l.n, l.a.data(), l.n, l.t, l.work, l.length);
            l.b = l.a.triangularView<Eigen::Upper>();
            orgqr(columns, l.n, l.n, l.n, l.a.data(), l.n, l.t, l.work, l.length);
            l.store(k, 1, l.a), l.store(k, 2, l.b);
        }) &&
    add("lstsq",
        [](Local& l, int k) {
            l.load(k, 0, l.a), l.load(k, 1, l.b);
            const int m = int(l.a.rows());
            gels(columns, 'N', m, l.n, 1, l.a.data(), m, l.b.data(), m, l.work, l.length);
            l.store(k, 2, l.b.data());
        }) &&
    add("eigvalsh",
        [](Local& l, int k) {
            l.load(k, 0, l.a);
            syev(columns, 'N', 'L', l.n, l.a.data(), l.n, l.s, l.work, l.length);
            l.store(k, 1, l.s);
        }) &&
    add("eigh",
        [](Local& l, int k) {
            l.load(k, 0, l.a);
            syev(columns, 'V', 'L', l.n, l.a.data(), l.n, l.s, l.work, l.length);
            l.store(k, 1, l.s), l.store(k, 2, l.a);
        }) &&
    add("eigvals",
        [](Local& l, int k) {
            l.load(k, 0, l.a);
            geev(columns, 'N', 'N', l.n, l.a.data(), l.n, l.s, l.t, nullptr, 1, nullptr, 1, l.work, l.length);
            l.store(k, 1, l.s), l.store(k, 2, l.t);
        }) &&
    add("eig",
        [](Local& l, int k) {
            l.load(k, 0, l.a);
            geev(columns, 'N', 'V', l.n, l.a.data(), l.n, l.s, l.t, nullptr, 1, l.b.data(), l.n, l.work, l.length);
            l.store(k, 1, l.s), l.store(k, 2, l.t), l.store(k, 3, l.b);
        }) &&
    add("svdvals",
        [](Local& l, int k) {
            l.load(k, 0, l.a);
            gesdd(columns, 'N', l.n, l.n, l.a.data(), l.n, l.s, nullptr, 1, nullptr, 1, l.work, l.length, l.pivots);
            l.store(k, 1, l.s);
        }) &&
    add("svd", [](Local& l, int k) {
        l.load(k, 0, l.a);
        gesdd(columns, 'S', l.n, l.n, l.a.data(), l.n, l.s, l.b.data(), l.n, l.c.data(), l.n, l.work, l.length, l.pivots);
        l.store(k, 1, l.b), l.store(k, 2, l.s), l.store(k, 3, l.c);
    });

} // namespace
} // namespace bench::stacks
