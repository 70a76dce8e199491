// Inverses.
#include "kit.h"

#include <utility>

extern "C" {
void sgetrf_(const int*, const int*, float*, const int*, int*, int*);
void dgetrf_(const int*, const int*, double*, const int*, int*, int*);
void sgetri_(const int*, float*, const int*, const int*, float*, const int*, int*);
void dgetri_(const int*, double*, const int*, const int*, double*, const int*, int*);
}

using namespace bench;

namespace {

void getrf(const int* n, float* a, int* pivots, int* info) { sgetrf_(n, n, a, n, pivots, info); }
void getrf(const int* n, double* a, int* pivots, int* info) { dgetrf_(n, n, a, n, pivots, info); }
void getri(const int* n, float* a, int* p, float* work, const int* l, int* info) { sgetri_(n, a, n, p, work, l, info); }
void getri(const int* n, double* a, int* p, double* work, const int* l, int* info) { dgetri_(n, a, n, p, work, l, info); }

// What one writes by hand: closed forms up to order 4, above them Gauss-Jordan elimination with row exchanges.

template <class T> void invert(T (&a)[2][2], T (&x)[2][2])
{
    const T r = 1 / (a[0][0] * a[1][1] - a[0][1] * a[1][0]);
    x[0][0] = a[1][1] * r, x[0][1] = -a[0][1] * r;
    x[1][0] = -a[1][0] * r, x[1][1] = a[0][0] * r;
}

template <class T> void invert(T (&a)[3][3], T (&x)[3][3])
{
    const T c0 = a[1][1] * a[2][2] - a[1][2] * a[2][1];
    const T c1 = a[1][2] * a[2][0] - a[1][0] * a[2][2];
    const T c2 = a[1][0] * a[2][1] - a[1][1] * a[2][0];
    const T r = 1 / (a[0][0] * c0 + a[0][1] * c1 + a[0][2] * c2);
    x[0][0] = c0 * r, x[1][0] = c1 * r, x[2][0] = c2 * r;
    x[0][1] = (a[0][2] * a[2][1] - a[0][1] * a[2][2]) * r;
    x[1][1] = (a[0][0] * a[2][2] - a[0][2] * a[2][0]) * r;
    x[2][1] = (a[0][1] * a[2][0] - a[0][0] * a[2][1]) * r;
    x[0][2] = (a[0][1] * a[1][2] - a[0][2] * a[1][1]) * r;
    x[1][2] = (a[0][2] * a[1][0] - a[0][0] * a[1][2]) * r;
    x[2][2] = (a[0][0] * a[1][1] - a[0][1] * a[1][0]) * r;
}

template <class T> void invert(T (&a)[4][4], T (&x)[4][4])
{
    const auto minor = [&](int i, int p, int q) { return a[i][p] * a[i + 1][q] - a[i][q] * a[i + 1][p]; };
    const T s0 = minor(0, 0, 1), s1 = minor(0, 0, 2), s2 = minor(0, 0, 3);
    const T s3 = minor(0, 1, 2), s4 = minor(0, 1, 3), s5 = minor(0, 2, 3);
    const T c0 = minor(2, 0, 1), c1 = minor(2, 0, 2), c2 = minor(2, 0, 3);
    const T c3 = minor(2, 1, 2), c4 = minor(2, 1, 3), c5 = minor(2, 2, 3);
    const T r = 1 / (s0 * c5 - s1 * c4 + s2 * c3 + s3 * c2 - s4 * c1 + s5 * c0);
    x[0][0] = (a[1][1] * c5 - a[1][2] * c4 + a[1][3] * c3) * r;
    x[0][1] = (-a[0][1] * c5 + a[0][2] * c4 - a[0][3] * c3) * r;
    x[0][2] = (a[3][1] * s5 - a[3][2] * s4 + a[3][3] * s3) * r;
    x[0][3] = (-a[2][1] * s5 + a[2][2] * s4 - a[2][3] * s3) * r;
    x[1][0] = (-a[1][0] * c5 + a[1][2] * c2 - a[1][3] * c1) * r;
    x[1][1] = (a[0][0] * c5 - a[0][2] * c2 + a[0][3] * c1) * r;
    x[1][2] = (-a[3][0] * s5 + a[3][2] * s2 - a[3][3] * s1) * r;
    x[1][3] = (a[2][0] * s5 - a[2][2] * s2 + a[2][3] * s1) * r;
    x[2][0] = (a[1][0] * c4 - a[1][1] * c2 + a[1][3] * c0) * r;
    x[2][1] = (-a[0][0] * c4 + a[0][1] * c2 - a[0][3] * c0) * r;
    x[2][2] = (a[3][0] * s4 - a[3][1] * s2 + a[3][3] * s0) * r;
    x[2][3] = (-a[2][0] * s4 + a[2][1] * s2 - a[2][3] * s0) * r;
    x[3][0] = (-a[1][0] * c3 + a[1][1] * c1 - a[1][2] * c0) * r;
    x[3][1] = (a[0][0] * c3 - a[0][1] * c1 + a[0][2] * c0) * r;
    x[3][2] = (-a[3][0] * s3 + a[3][1] * s1 - a[3][2] * s0) * r;
    x[3][3] = (a[2][0] * s3 - a[2][1] * s1 + a[2][2] * s0) * r;
}

template <class T, std::size_t N> void invert(T (&a)[N][N], T (&x)[N][N])
{
    for (std::size_t i = 0; i < N; ++i)
        for (std::size_t j = 0; j < N; ++j) x[i][j] = i == j;
    for (std::size_t k = 0; k < N; ++k) {
        std::size_t q = k;
        for (std::size_t i = k + 1; i < N; ++i)
            if (std::abs(a[i][k]) > std::abs(a[q][k])) q = i;
        if (q != k) std::swap(a[k], a[q]), std::swap(x[k], x[q]);
        const T r = 1 / a[k][k];
        for (std::size_t j = 0; j < N; ++j) a[k][j] *= r, x[k][j] *= r;
        for (std::size_t i = 0; i < N; ++i) {
            if (i == k) continue;
            const T f = a[i][k];
            for (std::size_t j = 0; j < N; ++j) a[i][j] -= f * a[k][j], x[i][j] -= f * x[k][j];
        }
    }
}

struct Invert {
    static constexpr const char* name = "Invert_ma";
    static constexpr auto functions = KESL_FUNCTIONS(keslInvert_ma);
    static constexpr auto alone = KESL_ALONE(keslInvert_m);
    template <int N> using Operands = std::tuple<ma<N, N>, scratch<N * N + N>, out<ma<N, N>>>;
    template <int N> static constexpr std::tuple sizes{N};
    static constexpr double tolerance = 1000; // two methods, condition numbers up to some ten

    template <class T> static void fill(int, T* a, int n, Random& random) { fillRegular(a, n, random); }

    static constexpr std::tuple peers{
        Peer{"plain",
             [](auto n, Range range, auto src, auto, auto dst) {
                 constexpr int N = n;
                 using T = std::decay_t<decltype(src(0, 0, 0))>;
#pragma GCC ivdep
                 for (int k = range.begin; k < range.end; ++k) {
                     T a[N][N], x[N][N];
                     for (int i = 0; i < N; ++i)
                         for (int j = 0; j < N; ++j) a[i][j] = src(k, i, j);
                     invert(a, x);
                     for (int i = 0; i < N; ++i)
                         for (int j = 0; j < N; ++j) dst(k, i, j) = x[i][j];
                 }
             }},
        Peer{"eigen",
             [](auto, Range range, auto src, auto, auto dst) {
                 for (int k = range.begin; k < range.end; ++k) dst.assign(k, src.eigen(k).inverse());
             }},
        Peer{"lapack",
             [](auto n, Range range, InOnePiece auto src, auto, InOnePiece auto dst) {
                 using Matrix = typename decltype(src)::Matrix;
                 constexpr int order = n, length = 64 * n;
                 int pivots[order], info;
                 std::decay_t<decltype(src(0, 0, 0))> work[length];
                 for (int k = range.begin; k < range.end; ++k) {
                     Matrix a = src.eigen(k); // by columns it is the transpose, and so is its inverse
                     getrf(&order, a.data(), pivots, &info);
                     getri(&order, a.data(), pivots, work, &length, &info);
                     dst.assign(k, a);
                 }
             },
             Where::cacheOnly},
    };
};

[[maybe_unused]] const bool registered = rows<Invert, Plan::full, 3, 4, 5, 6>() && rows<Invert, Plan::cache, 2, 7>();

} // namespace
