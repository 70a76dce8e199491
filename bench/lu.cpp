// LU decomposition and back substitution.
#include "kit.h"

#include <Eigen/LU>
#include <utility>

extern "C" {
void sgetrf_(const int*, const int*, float*, const int*, int*, int*);
void dgetrf_(const int*, const int*, double*, const int*, int*, int*);
void sgetrs_(const char*, const int*, const int*, const float*, const int*, const int*, float*, const int*, int*);
void dgetrs_(const char*, const int*, const int*, const double*, const int*, const int*, double*, const int*, int*);
}

using namespace bench;

namespace {
// By columns a matrix is the transpose of what it is by rows.
void lapackSolve(const int* n, float* a, int* pivots, float* x)
{
    const int one = 1;
    int info;
    sgetrf_(n, n, a, n, pivots, &info), sgetrs_("T", n, &one, a, n, pivots, x, n, &info);
}
void lapackSolve(const int* n, double* a, int* pivots, double* x)
{
    const int one = 1;
    int info;
    dgetrf_(n, n, a, n, pivots, &info), dgetrs_("T", n, &one, a, n, pivots, x, n, &info);
}

// Tables of rows, which the operands of the benchmark do not have. Those of the back substitution rotate the rows by
// one.
template <bool written> int* table(int n, int count)
{
    static std::vector<int> tables[16];
    std::vector<int>& t = tables[n];
    while (t.size() < std::size_t(n) * std::size_t(count)) t.push_back((int(t.size()) % n + 1) % n);
    return t.data();
}
// A function of the library with its table in front of argument `at`; the order and the count end the list.
template <bool written, int at, bool array = true> constexpr auto withTable(auto f)
{
    return [f](auto... arguments) {
        const std::tuple all{arguments...};
        constexpr int size = sizeof...(arguments);
        const int count = array ? std::get<size - 1>(all) : 1, n = std::get<size - (array ? 2 : 1)>(all);
        return [&]<std::size_t... i, std::size_t... j>(std::index_sequence<i...>, std::index_sequence<j...>) {
            return f(std::get<i>(all)..., table<written>(n, count), std::get<at + j>(all)...);
        }(std::make_index_sequence<at>{}, std::make_index_sequence<size - at>{});
    };
}

// What one writes by hand: rows exchanged in a local copy.
template <class T, int N> void decompose(T (&a)[N][N], int (&p)[N])
{
    for (int i = 0; i < N; ++i) p[i] = i;
    for (int k = 0; k < N; ++k) {
        int q = k;
        for (int i = k + 1; i < N; ++i)
            if (std::abs(a[i][k]) > std::abs(a[q][k])) q = i;
        if (q != k) std::swap(a[k], a[q]), std::swap(p[k], p[q]);
        const T r = 1 / a[k][k];
        for (int i = k + 1; i < N; ++i) {
            const T f = a[i][k] *= r;
            for (int j = k + 1; j < N; ++j) a[i][j] -= f * a[k][j];
        }
    }
}
template <int N, class T> void substitute(auto lu, auto b, T (&x)[N])
{
    for (int i = 0; i < N; ++i) {
        x[i] = b(i);
        for (int j = 0; j < i; ++j) x[i] -= lu(i, j) * x[j];
    }
    for (int i = N - 1; i >= 0; --i) {
        for (int j = i + 1; j < N; ++j) x[i] -= lu(i, j) * x[j];
        x[i] /= lu(i, i);
    }
}

struct Decomp {
    static constexpr const char* name = "LUDecomp_ma";
    static constexpr std::tuple functions{
        withTable<true, 4>(keslLUDecomp_ma_32f),   withTable<true, 4>(keslLUDecomp_ma_64f),
        withTable<true, 4>(keslLUDecomp_ma_32f_L), withTable<true, 4>(keslLUDecomp_ma_64f_L),
        withTable<true, 3>(keslLUDecomp_ma_32f_P), withTable<true, 3>(keslLUDecomp_ma_64f_P)};
    static constexpr std::tuple alone{withTable<true, 3, false>(keslLUDecomp_m_32f),
                                      withTable<true, 3, false>(keslLUDecomp_m_64f)};
    template <int N> using Operands = std::tuple<ma<N, N>, out<ma<N, N>>>;
    template <int N> static constexpr std::tuple sizes{N};
    static constexpr double tolerance = 100;

    template <class T> static void fill(int, T* a, int n, Random& random) { fillRegular(a, n, random); }

    static constexpr std::tuple peers{
        Peer{"plain",
             [](auto n, Range range, auto src, auto dst) {
                 constexpr int N = n;
                 for (int k = range.begin; k < range.end; ++k) {
                     std::decay_t<decltype(src(0, 0, 0))> a[N][N];
                     int p[N];
                     for (int i = 0; i < N; ++i)
                         for (int j = 0; j < N; ++j) a[i][j] = src(k, i, j);
                     decompose(a, p);
                     for (int i = 0; i < N; ++i)
                         for (int j = 0; j < N; ++j) dst(k, p[i], j) = a[i][j];
                 }
             }},
        Peer{"eigen",
             [](auto n, Range range, auto src, auto dst) {
                 using Matrix = typename decltype(src)::Matrix;
                 for (int k = range.begin; k < range.end; ++k) {
                     const Eigen::PartialPivLU<Matrix> lu(src.eigen(k));
                     const auto& to = lu.permutationP().indices(); // where each row went
                     for (int i = 0; i < n; ++i)
                         for (int j = 0; j < n; ++j) dst(k, i, j) = lu.matrixLU()(to[i], j);
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
        int* const p = table<true>(n, count);
        decompose(a, a0, a1, a2, p, factors.data(), n * n * e, n * e, e, n, count);
        substitute(factors.data(), n * n * e, n * e, e, p, b, b0, b2, x, x0, x2, n, count);
    };
}

// As programs use it: a system for each object, from the matrix to the solution.
struct Solve {
    static constexpr const char* name = "LU";
    static inline const std::tuple functions{both<float>(keslLUDecomp_ma_32f, keslLUBackSubst_mava_32f),
                                             both<double>(keslLUDecomp_ma_64f, keslLUBackSubst_mava_64f)};
    template <int N> using Operands = std::tuple<ma<N, N>, va<N>, out<va<N>>>;
    template <int N> static constexpr std::tuple sizes{N};
    static constexpr double tolerance = 1000;

    template <class T> static void fill(int operand, T* a, int n, Random& random)
    {
        if (operand == 0) fillRegular(a, n, random);
    }

    static constexpr std::tuple peers{
        Peer{"plain",
             [](auto n, Range range, auto src, auto b, auto dst) {
                 constexpr int N = n;
                 using T = std::decay_t<decltype(src(0, 0, 0))>;
                 for (int k = range.begin; k < range.end; ++k) {
                     T a[N][N], x[N];
                     int p[N];
                     for (int i = 0; i < N; ++i)
                         for (int j = 0; j < N; ++j) a[i][j] = src(k, i, j);
                     decompose(a, p);
                     substitute<N>([&](int i, int j) { return a[i][j]; }, [&](int i) { return b(k, 0, p[i]); }, x);
                     for (int i = 0; i < N; ++i) dst(k, 0, i) = x[i];
                 }
             }},
        Peer{"eigen",
             [](auto, Range range, auto src, auto b, auto dst) {
                 for (int k = range.begin; k < range.end; ++k)
                     dst.assign(k, src.eigen(k).partialPivLu().solve(b.eigen(k).transpose()).transpose());
             }},
        Peer{"lapack",
             [](auto n, Range range, auto src, auto b, auto dst) {
                 constexpr int order = n;
                 int pivots[order];
                 for (int k = range.begin; k < range.end; ++k) {
                     typename decltype(src)::Matrix a = src.eigen(k);
                     typename decltype(b)::Matrix x = b.eigen(k);
                     lapackSolve(&order, a.data(), pivots, x.data());
                     dst.assign(k, x);
                 }
             },
             Where::cacheOnly},
    };
};

// Back substitution alone: each object's own factors, or one matrix for all.
template <bool own> struct BackSubst {
    static constexpr const char* name = own ? "LUBackSubst_mava" : "LUBackSubst_mva";
    static constexpr std::tuple functions = [] {
        if constexpr (own)
            return std::tuple{
                withTable<false, 4>(keslLUBackSubst_mava_32f),   withTable<false, 4>(keslLUBackSubst_mava_64f),
                withTable<false, 4>(keslLUBackSubst_mava_32f_L), withTable<false, 4>(keslLUBackSubst_mava_64f_L),
                withTable<false, 3>(keslLUBackSubst_mava_32f_P), withTable<false, 3>(keslLUBackSubst_mava_64f_P)};
        else
            return std::tuple{
                withTable<false, 3>(keslLUBackSubst_mva_32f),   withTable<false, 3>(keslLUBackSubst_mva_64f),
                withTable<false, 3>(keslLUBackSubst_mva_32f_L), withTable<false, 3>(keslLUBackSubst_mva_64f_L),
                withTable<false, 2>(keslLUBackSubst_mva_32f_P), withTable<false, 2>(keslLUBackSubst_mva_64f_P)};
    }();
    static constexpr std::tuple alone{withTable<false, 3, false>(keslLUBackSubst_mv_32f),
                                      withTable<false, 3, false>(keslLUBackSubst_mv_64f)};
    template <int N> using Operands = std::tuple<std::conditional_t<own, ma<N, N>, m<N, N>>, va<N>, out<va<N>>>;
    template <int N> static constexpr std::tuple sizes{N};
    static constexpr double tolerance = 100;

    template <class T>
    static void fill(int operand, T* a, int n, Random& random) // dominant where the table puts the diagonal
    {
        for (int i = 0; i < n && operand == 0; ++i)
            for (int j = 0; j < n; ++j) a[(i + 1) % n * n + j] = static_cast<T>(random() / n + (i == j));
    }

    static constexpr std::tuple peers{
        Peer{"plain",
             [](auto n, Range range, auto lu, auto b, auto dst) {
                 constexpr int N = n;
                 const int* const tables = table<false>(N, range.end);
                 const auto one = kept(lu);
#pragma GCC ivdep
                 for (int k = range.begin; k < range.end; ++k) {
                     const int* const p = own ? tables + k * N : tables;
                     std::decay_t<decltype(lu(0, 0, 0))> x[N];
                     const auto element = [&](int i, int j) {
                         if constexpr (own) return lu(k, p[i], j);
                         else return one(0, p[i], j);
                     };
                     substitute<N>(
                         element, [&](int i) { return b(k, 0, p[i]); }, x);
                     for (int i = 0; i < N; ++i) dst(k, 0, i) = x[i];
                 }
             }},
    };
};

[[maybe_unused]] const bool registered =
    rows<Decomp, Plan::full, 3, 4, 5, 6>() && rows<Decomp, Plan::cache, 2, 7>() && rows<Solve, Plan::cache, 3, 4, 5, 6>() &&
    rows<BackSubst<true>, Plan::packed, 3, 4, 5, 6>() && rows<BackSubst<false>, Plan::packed, 3, 4, 5, 6>();
} // namespace
