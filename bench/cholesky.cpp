// Cholesky decomposition and back substitution.
#include "kit.h"

#include <cmath>
#include <Eigen/Cholesky>

extern "C" {
void spotrf_(const char*, const int*, float*, const int*, int*);
void dpotrf_(const char*, const int*, double*, const int*, int*);
void spotrs_(const char*, const int*, const int*, const float*, const int*, float*, const int*, int*);
void dpotrs_(const char*, const int*, const int*, const double*, const int*, double*, const int*, int*);
}

using namespace bench;

namespace {
// By columns the lower triangle of a matrix is the upper one of what it is by rows.
void lapackSolve(const int* n, float* a, float* x)
{
    const int one = 1;
    int info;
    spotrf_("U", n, a, n, &info), spotrs_("U", n, &one, a, n, x, n, &info);
}
void lapackSolve(const int* n, double* a, double* x)
{
    const int one = 1;
    int info;
    dpotrf_("U", n, a, n, &info), dpotrs_("U", n, &one, a, n, x, n, &info);
}

template <class T> void fillPositive(T* a, int n, Random& random)
{
    for (int i = 0; i < n; ++i)
        for (int j = 0; j <= i; ++j) a[i * n + j] = a[j * n + i] = static_cast<T>(random() + (i == j ? n : 0));
}

// What one writes by hand, with the reciprocals of the diagonal on the diagonal as well.
template <int N, class T> void decompose(auto a, T (&l)[N][N])
{
    for (int i = 0; i < N; ++i) {
        for (int j = 0; j < i; ++j) {
            T t = a(i, j);
            for (int k = 0; k < j; ++k) t -= l[i][k] * l[j][k];
            l[i][j] = t * l[j][j];
        }
        T d = a(i, i);
        for (int k = 0; k < i; ++k) d -= l[i][k] * l[i][k];
        l[i][i] = 1 / std::sqrt(d);
    }
}
template <int N, class T> void substitute(auto l, auto b, T (&x)[N])
{
    for (int i = 0; i < N; ++i) {
        x[i] = b(i);
        for (int j = 0; j < i; ++j) x[i] -= l(i, j) * x[j];
        x[i] *= l(i, i);
    }
    for (int i = N - 1; i >= 0; --i) {
        for (int j = i + 1; j < N; ++j) x[i] -= l(j, i) * x[j];
        x[i] *= l(i, i);
    }
}

struct Decomp {
    static constexpr const char* name = "CholeskyDecomp_ma";
    static constexpr auto functions = KESL_FUNCTIONS(keslCholeskyDecomp_ma);
    static constexpr auto alone = KESL_ALONE(keslCholeskyDecomp_m);
    template <int N> using Operands = std::tuple<ma<N, N>, out<ma<N, N>>>;
    template <int N> static constexpr std::tuple sizes{N};
    static constexpr double tolerance = 20;

    template <class T> static void fill(int, T* a, int n, Random& random) { fillPositive(a, n, random); }

    static constexpr std::tuple peers{
        Peer{"plain",
             [](auto n, Range range, auto src, auto dst) {
                 constexpr int N = n;
#pragma GCC ivdep
                 for (int k = range.begin; k < range.end; ++k) {
                     std::decay_t<decltype(src(0, 0, 0))> l[N][N];
                     decompose<N>([&](int i, int j) { return src(k, i, j); }, l);
                     for (int i = 0; i < N; ++i)
                         for (int j = 0; j <= i; ++j) dst(k, i, j) = l[i][j];
                 }
             }},
        Peer{"eigen",
             [](auto n, Range range, auto src, auto dst) {
                 using Matrix = typename decltype(src)::Matrix;
                 for (int k = range.begin; k < range.end; ++k) {
                     const Eigen::LLT<Matrix> llt(src.eigen(k));
                     for (int i = 0; i < n; ++i) {
                         for (int j = 0; j < i; ++j) dst(k, i, j) = llt.matrixLLT()(i, j);
                         dst(k, i, i) = 1 / llt.matrixLLT()(i, i);
                     }
                 }
             }},
    };
};

// Both functions as one.
template <class T> auto both(auto decompose, auto substitute)
{
    return [=](const T* a, int a0, int a1, int a2, const T* b, int b0, int b2, T* x, int x0, int x2, int n, int count) {
        static std::vector<T> factors;
        const std::size_t elements = std::size_t(n) * std::size_t(n) * std::size_t(count);
        if (factors.size() < elements) factors.resize(elements);
        const int e = sizeof(T);
        decompose(a, a0, a1, a2, factors.data(), n * n * e, n * e, e, n, count);
        substitute(factors.data(), n * n * e, n * e, e, b, b0, b2, x, x0, x2, n, count);
    };
}

// As programs use it: a system for each object, from the matrix to the solution.
struct Solve {
    static constexpr const char* name = "Cholesky";
    static inline const std::tuple functions{both<float>(keslCholeskyDecomp_ma_32f, keslCholeskyBackSubst_mava_32f),
                                             both<double>(keslCholeskyDecomp_ma_64f, keslCholeskyBackSubst_mava_64f)};
    template <int N> using Operands = std::tuple<ma<N, N>, va<N>, out<va<N>>>;
    template <int N> static constexpr std::tuple sizes{N};
    static constexpr double tolerance = 100;

    template <class T> static void fill(int operand, T* a, int n, Random& random)
    {
        if (operand == 0) fillPositive(a, n, random);
    }

    static constexpr std::tuple peers{
        Peer{"plain",
             [](auto n, Range range, auto src, auto b, auto dst) {
                 constexpr int N = n;
                 using T = std::decay_t<decltype(src(0, 0, 0))>;
#pragma GCC ivdep
                 for (int k = range.begin; k < range.end; ++k) {
                     T l[N][N], x[N];
                     decompose<N>([&](int i, int j) { return src(k, i, j); }, l);
                     substitute<N>([&](int i, int j) { return l[i][j]; }, [&](int i) { return b(k, 0, i); }, x);
                     for (int i = 0; i < N; ++i) dst(k, 0, i) = x[i];
                 }
             }},
        Peer{"eigen",
             [](auto, Range range, auto src, auto b, auto dst) {
                 for (int k = range.begin; k < range.end; ++k)
                     dst.assign(k, src.eigen(k).llt().solve(b.eigen(k).transpose()).transpose());
             }},
        Peer{"lapack",
             [](auto n, Range range, auto src, auto b, auto dst) {
                 constexpr int order = n;
                 for (int k = range.begin; k < range.end; ++k) {
                     typename decltype(src)::Matrix a = src.eigen(k);
                     typename decltype(b)::Matrix x = b.eigen(k);
                     lapackSolve(&order, a.data(), x.data());
                     dst.assign(k, x);
                 }
             },
             Where::cacheOnly},
    };
};

// Back substitution alone: each object's own factor, or one for all. Any numbers will do, if they do not grow.
template <bool own> struct BackSubst {
    static constexpr const char* name = own ? "CholeskyBackSubst_mava" : "CholeskyBackSubst_mva";
    static constexpr auto functions = [] {
        if constexpr (own) return KESL_FUNCTIONS(keslCholeskyBackSubst_mava);
        else return KESL_FUNCTIONS(keslCholeskyBackSubst_mva);
    }();
    static constexpr auto alone = KESL_ALONE(keslCholeskyBackSubst_mv);
    template <int N> using Operands = std::tuple<std::conditional_t<own, ma<N, N>, m<N, N>>, va<N>, out<va<N>>>;
    template <int N> static constexpr std::tuple sizes{N};
    static constexpr double tolerance = 100;

    static constexpr std::tuple peers{
        Peer{"plain",
             [](auto n, Range range, auto l, auto b, auto dst) {
                 constexpr int N = n;
                 const auto one = kept(l);
#pragma GCC ivdep
                 for (int k = range.begin; k < range.end; ++k) {
                     std::decay_t<decltype(l(0, 0, 0))> x[N];
                     const auto element = [&](int i, int j) {
                         if constexpr (own) return l(k, i, j);
                         else return one(0, i, j);
                     };
                     substitute<N>(
                         element, [&](int i) { return b(k, 0, i); }, x);
                     for (int i = 0; i < N; ++i) dst(k, 0, i) = x[i];
                 }
             }},
    };
};

[[maybe_unused]] const bool registered =
    rows<Decomp, Plan::full, 3, 4, 5, 6>() && rows<Decomp, Plan::cache, 2, 7>() && rows<Solve, Plan::cache, 3, 4, 5, 6>() &&
    rows<BackSubst<true>, Plan::packed, 3, 4, 5, 6>() && rows<BackSubst<false>, Plan::packed, 3, 4, 5, 6>();
} // namespace
