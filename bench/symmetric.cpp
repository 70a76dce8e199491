// Symmetric eigenproblems. In cache only: they are bound by arithmetic, and of many matrices one may stop the call.
#include "kit.h"

#include <cmath>
#include <utility>

extern "C" {
void ssyev_(const char*, const char*, const int*, float*, const int*, float*, float*, const int*, int*);
void dsyev_(const char*, const char*, const int*, double*, const int*, double*, double*, const int*, int*);
}

using namespace bench;

namespace {

void syev(const char* job, int n, float* a, float* values)
{
    float work[64 * 6];
    int length = 64 * n, info;
    ssyev_(job, "U", &n, a, &n, values, work, &length, &info);
}
void syev(const char* job, int n, double* a, double* values)
{
    double work[64 * 6];
    int length = 64 * n, info;
    dsyev_(job, "U", &n, a, &n, values, work, &length, &info);
}

// Symmetric, and shifted away from singular ones.
template <class T> void fillSymmetric(T* a, int n)
{
    for (int i = 0; i < n; ++i) {
        for (int j = 0; j < i; ++j) a[i * n + j] = a[j * n + i];
        a[i * n + i] += static_cast<T>(n);
    }
}

// What one writes by hand: Jacobi's method by rows, until nothing is left off the diagonal.
template <class T, int N> void jacobi(T (&a)[N][N], T (*v)[N])
{
    for (int sweep = 0; sweep < 30; ++sweep) {
        T off = 0;
        for (int i = 0; i < N; ++i)
            for (int j = i + 1; j < N; ++j) off += std::abs(a[i][j]);
        if (off < static_cast<T>(sizeof(T) == 4 ? 1e-7 : 1e-16)) return;
        for (int p = 0; p < N; ++p)
            for (int q = p + 1; q < N; ++q) {
                if (a[p][q] == 0) continue;
                const T theta = (a[q][q] - a[p][p]) / (2 * a[p][q]);
                const T t = std::copysign(1 / (std::abs(theta) + std::sqrt(theta * theta + 1)), theta);
                const T c = 1 / std::sqrt(t * t + 1), s = t * c;
                const auto rotate = [&](T& x, T& y) { x = std::exchange(y, s * x + c * y) * -s + c * x; };
                for (int k = 0; k < N; ++k) rotate(a[k][p], a[k][q]);
                for (int k = 0; k < N; ++k) rotate(a[p][k], a[q][k]);
                if (v)
                    for (int k = 0; k < N; ++k) rotate(v[k][p], v[k][q]);
            }
    }
}
template <class T, int N> void orderOf(const T (&a)[N][N], int (&order)[N]) // of the values on the diagonal
{
    for (int i = 0; i < N; ++i) {
        int j = i;
        for (; j > 0 && a[order[j - 1]][order[j - 1]] < a[i][i]; --j) order[j] = order[j - 1];
        order[j] = i;
    }
}

struct ValuesSym {
    static constexpr const char* name = "ValuesSym_ma";
    static constexpr auto functions = KESL_FUNCTIONS(keslEigenValuesSym_ma);
    static constexpr auto alone = KESL_ALONE(keslEigenValuesSym_m);
    template <int N> using Operands = std::tuple<ma<N, N>, scratch<N * N>, results<N>>;
    template <int N> static constexpr std::tuple sizes{N};
    static constexpr double tolerance = 100;

    template <class T> static void fill(int, T* a, int n, Random&) { fillSymmetric(a, n); }

    static constexpr std::tuple peers{
        Peer{"plain",
             [](auto n, Range range, auto src, auto, auto dst) {
                 constexpr int N = n;
                 for (int k = range.begin; k < range.end; ++k) {
                     std::decay_t<decltype(src(0, 0, 0))> a[N][N];
                     for (int i = 0; i < N; ++i)
                         for (int j = 0; j < N; ++j) a[i][j] = src(k, i, j);
                     jacobi<std::decay_t<decltype(src(0, 0, 0))>, N>(a, nullptr);
                     int order[N];
                     orderOf(a, order);
                     for (int i = 0; i < N; ++i) dst(k, 0, i) = a[order[i]][order[i]];
                 }
             }},
        Peer{"eigen",
             [](auto, Range range, auto src, auto, auto dst) {
                 using Matrix = typename decltype(src)::Matrix;
                 Eigen::SelfAdjointEigenSolver<Matrix> solver;
                 for (int k = range.begin; k < range.end; ++k) {
                     solver.compute(src.eigen(k), Eigen::EigenvaluesOnly);
                     dst.assign(k, solver.eigenvalues().reverse().transpose());
                 }
             }},
        Peer{"eigen-direct", // the closed form of order 3, of less accuracy
             [](Order<3>, Range range, auto src, auto, auto dst) {
                 using Matrix = typename decltype(src)::Matrix;
                 Eigen::SelfAdjointEigenSolver<Matrix> solver;
                 for (int k = range.begin; k < range.end; ++k) {
                     solver.computeDirect(src.eigen(k), Eigen::EigenvaluesOnly);
                     dst.assign(k, solver.eigenvalues().reverse().transpose());
                 }
             },
             Where::aside},
        Peer{"lapack",
             [](auto n, Range range, auto src, auto, auto dst) {
                 using Matrix = typename decltype(src)::Matrix;
                 for (int k = range.begin; k < range.end; ++k) {
                     Matrix a = src.eigen(k);
                     Eigen::Matrix<typename Matrix::Scalar, 1, n> values;
                     syev("N", n, a.data(), values.data());
                     dst.assign(k, values.reverse());
                 }
             },
             Where::cacheOnly},
    };
};

// Six numbers for a symmetric matrix of order 3, read through nine pointers.
struct ValuesSym6 {
    static constexpr const char* name = "ValuesSym_six";
    template <class T, auto function>
    static void call(const T* src, int stride0, int stride2, T* buffer, T* dst, int n, int count)
    {
        const T* const list[] = {src, src + 1, src + 2, src + 1, src + 3, src + 4, src + 2, src + 4, src + 5};
        static_cast<void>(stride2);
        function(list, 0, stride0, buffer, dst, n, count);
    }
    static constexpr auto functions =
        std::make_tuple(call<float, keslEigenValuesSym_ma_32f_P>, call<double, keslEigenValuesSym_ma_64f_P>);
    template <int> using Operands = std::tuple<va<6>, scratch<9>, results<3>>;
    template <int N> static constexpr std::tuple sizes{N};
    static constexpr double tolerance = 100;

    template <class T> static void fill(int, T* a, int, Random&) { a[0] += 3, a[3] += 3, a[5] += 3; }

    template <class T> static auto matrix(auto src, int k)
    {
        Eigen::Matrix<T, 3, 3> a;
        const auto at = [&](int element) { return src(k, 0, element); };
        a << at(0), at(1), at(2), at(1), at(3), at(4), at(2), at(4), at(5);
        return a;
    }

    static constexpr std::tuple peers{
        Peer{"plain",
             [](auto, Range range, auto src, auto, auto dst) {
                 using T = std::decay_t<decltype(src(0, 0, 0))>;
                 for (int k = range.begin; k < range.end; ++k) {
                     const auto m = matrix<T>(src, k);
                     T a[3][3];
                     for (int i = 0; i < 3; ++i)
                         for (int j = 0; j < 3; ++j) a[i][j] = m(i, j);
                     jacobi<T, 3>(a, nullptr);
                     int order[3];
                     orderOf(a, order);
                     for (int i = 0; i < 3; ++i) dst(k, 0, i) = a[order[i]][order[i]];
                 }
             }},
        Peer{"eigen",
             [](auto, Range range, auto src, auto, auto dst) {
                 using T = std::decay_t<decltype(src(0, 0, 0))>;
                 Eigen::SelfAdjointEigenSolver<Eigen::Matrix<T, 3, 3>> solver;
                 for (int k = range.begin; k < range.end; ++k) {
                     solver.compute(matrix<T>(src, k), Eigen::EigenvaluesOnly);
                     dst.assign(k, solver.eigenvalues().reverse().transpose());
                 }
             }},
        Peer{"eigen-direct",
             [](auto, Range range, auto src, auto, auto dst) {
                 using T = std::decay_t<decltype(src(0, 0, 0))>;
                 Eigen::SelfAdjointEigenSolver<Eigen::Matrix<T, 3, 3>> solver;
                 for (int k = range.begin; k < range.end; ++k) {
                     solver.computeDirect(matrix<T>(src, k), Eigen::EigenvaluesOnly);
                     dst.assign(k, solver.eigenvalues().reverse().transpose());
                 }
             },
             Where::aside},
    };
};

struct VectorsSym {
    static constexpr const char* name = "VectorsSym_ma";
    static constexpr auto functions = KESL_FUNCTIONS(keslEigenValuesVectorsSym_ma);
    static constexpr auto alone = KESL_ALONE(keslEigenValuesVectorsSym_m);
    template <int N> using Operands = std::tuple<ma<N, N>, scratch<N * N>, out<ma<N, N>>, results<N>>;
    template <int N> static constexpr std::tuple sizes{N};
    static constexpr double tolerance = 100000; // errors of vectors grow where values are close together

    template <class T> static void fill(int, T* a, int n, Random&) { fillSymmetric(a, n); }
    static void comparable(std::vector<double>& result, int n) // vectors with their largest component positive
    {
        for (int c = 0; c < n; ++c) {
            double largest = 0;
            for (int r = 0; r < n; ++r)
                if (const double x = result[std::size_t(r * n + c)]; std::abs(x) > std::abs(largest) * 1.001) largest = x;
            for (int r = 0; r < n && largest < 0; ++r) result[std::size_t(r * n + c)] *= -1;
        }
    }

    static constexpr std::tuple peers{
        Peer{"plain",
             [](auto n, Range range, auto src, auto, auto vectors, auto values) {
                 constexpr int N = n;
                 using T = std::decay_t<decltype(src(0, 0, 0))>;
                 for (int k = range.begin; k < range.end; ++k) {
                     T a[N][N], v[N][N];
                     for (int i = 0; i < N; ++i)
                         for (int j = 0; j < N; ++j) a[i][j] = src(k, i, j), v[i][j] = i == j;
                     jacobi<T, N>(a, v);
                     int order[N];
                     orderOf(a, order);
                     for (int i = 0; i < N; ++i) {
                         values(k, 0, i) = a[order[i]][order[i]];
                         for (int j = 0; j < N; ++j) vectors(k, i, j) = v[i][order[j]];
                     }
                 }
             }},
        Peer{"eigen",
             [](auto, Range range, auto src, auto, auto vectors, auto values) {
                 using Matrix = typename decltype(src)::Matrix;
                 Eigen::SelfAdjointEigenSolver<Matrix> solver;
                 for (int k = range.begin; k < range.end; ++k) {
                     solver.compute(src.eigen(k));
                     values.assign(k, solver.eigenvalues().reverse().transpose());
                     vectors.assign(k, solver.eigenvectors().rowwise().reverse());
                 }
             }},
        Peer{"eigen-direct", // the closed form of order 3, of less accuracy
             [](Order<3>, Range range, auto src, auto, auto vectors, auto values) {
                 using Matrix = typename decltype(src)::Matrix;
                 Eigen::SelfAdjointEigenSolver<Matrix> solver;
                 for (int k = range.begin; k < range.end; ++k) {
                     solver.computeDirect(src.eigen(k));
                     values.assign(k, solver.eigenvalues().reverse().transpose());
                     vectors.assign(k, solver.eigenvectors().rowwise().reverse());
                 }
             },
             Where::aside},
        Peer{"lapack",
             [](auto n, Range range, auto src, auto, auto vectors, auto values) {
                 using Matrix = typename decltype(src)::Matrix;
                 using T = typename Matrix::Scalar;
                 for (int k = range.begin; k < range.end; ++k) {
                     Eigen::Matrix<T, n, n> a = src.eigen(k); // by columns
                     Eigen::Matrix<T, 1, n> d;
                     syev("V", n, a.data(), d.data());
                     values.assign(k, d.reverse());
                     vectors.assign(k, a.rowwise().reverse());
                 }
             },
             Where::cacheOnly},
    };
};

[[maybe_unused]] const bool registered = rows<ValuesSym, Plan::layouts, 3, 4, 5, 6>() &&
                                         rows<ValuesSym6, Plan::cache, 3>() && rows<VectorsSym, Plan::layouts, 3, 4, 5, 6>();

} // namespace
