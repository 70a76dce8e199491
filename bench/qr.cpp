// QR decomposition and back substitution: of square matrices, and of matrices of 6 rows, for least squares.
#ifndef __clang__
#pragma GCC diagnostic ignored "-Warray-bounds" // false alarms in Eigen's loads of short columns
#endif
#include "kit.h"

#include <cmath>
#include <Eigen/QR>

extern "C" {
void sgels_(const char*, const int*, const int*, const int*, float*, const int*, float*, const int*, float*, const int*,
            int*);
void dgels_(const char*, const int*, const int*, const int*, double*, const int*, double*, const int*, double*, const int*,
            int*);
}

using namespace bench;

namespace {
// By columns a matrix is the transpose of what it is by rows.
void lapackSolve(const int* w, const int* h, float* a, float* x)
{
    const int one = 1, size = 500;
    int info;
    float work[size];
    sgels_("T", w, h, &one, a, w, x, h, work, &size, &info);
}
void lapackSolve(const int* w, const int* h, double* a, double* x)
{
    const int one = 1, size = 500;
    int info;
    double work[size];
    dgels_("T", w, h, &one, a, w, x, h, work, &size, &info);
}

// What one writes by hand: reflectors normalised to a leading 1, below R.
template <int H, int W, class T> void decompose(T (&a)[H][W])
{
    for (int k = 0; k < (W < H ? W : W - 1); ++k) {
        T s = 0;
        for (int i = k; i < H; ++i) s += a[i][k] * a[i][k];
        const T sigma = a[k][k] > 0 ? std::sqrt(s) : -std::sqrt(s), t = 1 / (a[k][k] + sigma);
        T norm = 1;
        for (int i = k + 1; i < H; ++i) {
            a[i][k] *= t;
            norm += a[i][k] * a[i][k];
        }
        const T beta = 2 / norm;
        a[k][k] = -sigma;
        for (int j = k + 1; j < W; ++j) {
            T d = a[k][j];
            for (int i = k + 1; i < H; ++i) d += a[i][j] * a[i][k];
            d *= beta;
            a[k][j] -= d;
            for (int i = k + 1; i < H; ++i) a[i][j] -= a[i][k] * d;
        }
    }
}
template <int H, int W, class T> void substitute(auto a, T (&b)[H]) // x is left in b
{
    for (int k = 0; k < (W < H ? W : W - 1); ++k) {
        T norm = 1, d = b[k];
        for (int i = k + 1; i < H; ++i) {
            norm += a(i, k) * a(i, k);
            d += b[i] * a(i, k);
        }
        d *= 2 / norm;
        b[k] -= d;
        for (int i = k + 1; i < H; ++i) b[i] -= a(i, k) * d;
    }
    for (int i = W - 1; i >= 0; --i) {
        for (int j = i + 1; j < W; ++j) b[i] -= a(i, j) * b[j];
        b[i] /= a(i, i);
    }
}

template <int rows, int N> constexpr int height = rows ? rows : N;

template <int rows> struct Decomp {
    static constexpr const char* name = rows ? "QRDecomp_ma_6rows" : "QRDecomp_ma";
    static constexpr auto functions = KESL_FUNCTIONS(keslQRDecomp_ma);
    static constexpr auto alone = KESL_ALONE(keslQRDecomp_m);
    template <int N> using Operands =
        std::tuple<ma<height<rows, N>, N>, scratch<height<rows, N>>, out<ma<height<rows, N>, N>>>;
    template <int N> static constexpr std::tuple sizes{N, height<rows, N>};
    static constexpr double tolerance = 100;

    static constexpr std::tuple peers{
        Peer{"plain",
             [](auto n, Range range, auto src, auto, auto dst) {
                 constexpr int W = n, H = height<rows, W>;
                 for (int k = range.begin; k < range.end; ++k) {
                     std::decay_t<decltype(src(0, 0, 0))> a[H][W];
                     for (int i = 0; i < H; ++i)
                         for (int j = 0; j < W; ++j) a[i][j] = src(k, i, j);
                     decompose(a);
                     for (int i = 0; i < H; ++i)
                         for (int j = 0; j < W; ++j) dst(k, i, j) = a[i][j];
                 }
             }},
        Peer{"eigen",
             [](auto, Range range, auto src, auto, auto dst) {
                 using Matrix = typename decltype(src)::Matrix;
                 for (int k = range.begin; k < range.end; ++k)
                     dst.assign(k, Eigen::HouseholderQR<Matrix>(src.eigen(k)).matrixQR());
             }},
    };
};

// Both functions as one.
template <class T> auto both(auto decompose, auto substitute)
{
    return
        [=](const T* a, int a0, int a1, int a2, const T* b, int b0, int b2, T* x, int x0, int x2, int w, int h, int count) {
            static std::vector<T> factors;
            const std::size_t elements = std::size_t(w) * std::size_t(h) * std::size_t(count);
            if (factors.size() < elements) factors.resize(elements);
            const int e = sizeof(T);
            T buffer[16];
            decompose(a, a0, a1, a2, buffer, factors.data(), h * w * e, w * e, e, w, h, count);
            substitute(factors.data(), h * w * e, w * e, e, buffer, b, b0, b2, x, x0, x2, w, h, count);
        };
}

// As programs use it: a system for each object, from the matrix to the solution.
template <int rows> struct Solve {
    static constexpr const char* name = rows ? "QR_6rows" : "QR";
    static inline const std::tuple functions{both<float>(keslQRDecomp_ma_32f, keslQRBackSubst_mava_32f),
                                             both<double>(keslQRDecomp_ma_64f, keslQRBackSubst_mava_64f)};
    template <int N> using Operands = std::tuple<ma<height<rows, N>, N>, va<height<rows, N>>, out<va<N>>>;
    template <int N> static constexpr std::tuple sizes{N, height<rows, N>};
    static constexpr double tolerance = 1000;

    template <class T> static void fill(int operand, T* a, int n, Random& random)
    {
        if (operand == 0 && !rows) fillRegular(a, n, random);
    }

    static constexpr std::tuple peers{
        Peer{"plain",
             [](auto n, Range range, auto src, auto b, auto dst) {
                 constexpr int W = n, H = height<rows, W>;
                 using T = std::decay_t<decltype(src(0, 0, 0))>;
                 for (int k = range.begin; k < range.end; ++k) {
                     T a[H][W], x[H];
                     for (int i = 0; i < H; ++i) {
                         x[i] = b(k, 0, i);
                         for (int j = 0; j < W; ++j) a[i][j] = src(k, i, j);
                     }
                     decompose(a);
                     substitute<H, W>([&](int i, int j) { return a[i][j]; }, x);
                     for (int j = 0; j < W; ++j) dst(k, 0, j) = x[j];
                 }
             }},
        Peer{"eigen",
             [](auto, Range range, auto src, auto b, auto dst) {
                 using Matrix = typename decltype(src)::Matrix;
                 for (int k = range.begin; k < range.end; ++k)
                     dst.assign(k, Eigen::HouseholderQR<Matrix>(src.eigen(k)).solve(b.eigen(k).transpose()).transpose());
             }},
        Peer{"lapack",
             [](auto n, Range range, auto src, auto b, auto dst) {
                 constexpr int W = n, H = height<rows, W>, w = W, h = H;
                 for (int k = range.begin; k < range.end; ++k) {
                     typename decltype(src)::Matrix a = src.eigen(k);
                     typename decltype(b)::Matrix x = b.eigen(k);
                     lapackSolve(&w, &h, a.data(), x.data());
                     for (int j = 0; j < W; ++j) dst(k, 0, j) = x(j);
                 }
             },
             Where::cacheOnly},
    };
};

// Back substitution alone: each object's own factors, or one matrix for all.
template <bool own, int rows> struct BackSubst {
    static constexpr const char* name =
        own ? (rows ? "QRBackSubst_mava_6rows" : "QRBackSubst_mava") : (rows ? "QRBackSubst_mva_6rows" : "QRBackSubst_mva");
    static constexpr auto functions = [] {
        if constexpr (own) return KESL_FUNCTIONS(keslQRBackSubst_mava);
        else return KESL_FUNCTIONS(keslQRBackSubst_mva);
    }();
    static constexpr auto alone = KESL_ALONE(keslQRBackSubst_mv);
    template <int N> using Operands = std::tuple<std::conditional_t<own, ma<height<rows, N>, N>, m<height<rows, N>, N>>,
                                                 scratch<height<rows, N>>, va<height<rows, N>>, out<va<N>>>;
    template <int N> static constexpr std::tuple sizes{N, height<rows, N>};
    static constexpr double tolerance = 100;

    template <class T> static void fill(int operand, T* a, int n, Random& random) // R with a dominant diagonal
    {
        for (int i = 0; i < n && operand == 0; ++i)
            for (int j = 0; j < n; ++j) a[i * n + j] = static_cast<T>(random() / n + (i == j));
    }

    static constexpr std::tuple peers{
        Peer{"plain",
             [](auto n, Range range, auto qr, auto, auto b, auto dst) {
                 constexpr int W = n, H = height<rows, W>;
                 const auto one = kept(qr);
#pragma GCC ivdep
                 for (int k = range.begin; k < range.end; ++k) {
                     std::decay_t<decltype(qr(0, 0, 0))> x[H];
                     for (int i = 0; i < H; ++i) x[i] = b(k, 0, i);
                     substitute<H, W>(
                         [&](int i, int j) {
                             if constexpr (own) return qr(k, i, j);
                             else return one(0, i, j);
                         },
                         x);
                     for (int j = 0; j < W; ++j) dst(k, 0, j) = x[j];
                 }
             }},
    };
};

[[maybe_unused]] const bool registered =
    rows<Decomp<0>, Plan::packed, 3, 4, 5, 6>() && rows<Decomp<0>, Plan::cache, 2, 7>() &&
    rows<Decomp<6>, Plan::packed, 3, 4, 5>() && rows<Solve<0>, Plan::cache, 3, 4, 5, 6>() &&
    rows<Solve<6>, Plan::cache, 3, 4, 5>() && rows<BackSubst<true, 0>, Plan::packed, 3, 4, 5, 6>() &&
    rows<BackSubst<false, 0>, Plan::packed, 3, 4, 5, 6>() && rows<BackSubst<true, 6>, Plan::cache, 3, 4, 5>() &&
    rows<BackSubst<false, 6>, Plan::cache, 3, 4, 5>();
} // namespace
