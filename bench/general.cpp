// General eigenproblems. The library works on the transpose of its source: its right vectors are those of the transpose, and
// its left ones what one usually calls the vectors of the source.
#include "kit.h"

#include <complex>
#include <Eigen/Eigenvalues>
#include <Eigen/LU>

extern "C" {
void sgeevx_(const char*, const char*, const char*, const char*, const int*, float*, const int*, float*, float*, float*,
             const int*, float*, const int*, int*, int*, float*, float*, float*, float*, float*, const int*, int*, int*);
void dgeevx_(const char*, const char*, const char*, const char*, const int*, double*, const int*, double*, double*, double*,
             const int*, double*, const int*, int*, int*, double*, double*, double*, double*, double*, const int*, int*,
             int*);
}

using namespace bench;

namespace {
// The library's buffer is its last argument.
template <class T> T buffer[(3 * 6 + 5) * 6];
template <class T> constexpr auto buffered(auto f)
{
    return [f](auto... arguments) { return f(arguments..., buffer<T>); };
}
#define KESL_BUFFERED(name)                                                                                                 \
    std::tuple                                                                                                              \
    {                                                                                                                       \
        buffered<float>(name##_32f), buffered<double>(name##_64f), buffered<float>(name##_32f_L),                           \
            buffered<double>(name##_64f_L), buffered<float>(name##_32f_P), buffered<double>(name##_64f_P)                   \
    }

// LAPACK without balancing, as the library; of a matrix by rows, which is its transpose to LAPACK.
template <class T, int N> struct Geev {
    T values[2][N], left[N * N], right[N * N];
    void run(T* a, bool withLeft, bool withRight)
    {
        constexpr int n = N, length = 64 * N;
        T scale[N], norm, condition[2 * N], work[length];
        int low, high, integers[2 * N], info;
        constexpr auto geevx = [] {
            if constexpr (sizeof(T) == 4) return sgeevx_;
            else return dgeevx_;
        }();
        geevx("N", withLeft ? "V" : "N", withRight ? "V" : "N", "N", &n, a, &n, values[0], values[1], left, &n, right, &n,
              &low, &high, scale, &norm, condition, condition + N, work, &length, integers, &info);
        for (int j = 0; j < N && withLeft; ++j) // those of LAPACK are conjugate
            if (values[1][j] < 0)
                for (int i = 0; i < N; ++i) left[j * N + i] *= -1;
    }
};

// Pairs of columns, or one, to length 1.
void normalise(auto& vectors, const auto& values)
{
    for (int j = 0; j < vectors.cols(); ++j)
        if (values[j].imag() == 0) vectors.col(j).normalize();
        else {
            vectors.template middleCols<2>(j) /= vectors.template middleCols<2>(j).norm();
            ++j;
        }
}

// A function of its own, since the solver is long.
template <class Solver, class Matrix> [[gnu::noinline]] const auto& solve(Solver& solver, const Matrix& a, bool vectors)
{
    solver.compute(a, vectors);
    return solver.eigenvalues();
}

template <bool transposed, class T, int N> auto matrix(auto src, int k)
{
    Eigen::Matrix<T, N, N> a;
    for (int i = 0; i < N; ++i)
        for (int j = 0; j < N; ++j) (transposed ? a(j, i) : a(i, j)) = src(k, i, j);
    return a;
}
template <int N> void give(auto dst, int k, auto element)
{
    for (int i = 0; i < dst.rows; ++i)
        for (int j = 0; j < N; ++j) dst(k, i, j) = element(i, j);
}

// Whatever the order of the eigenvalues and the phases of the vectors: the real parts of the sums of powers of the former, and
// the sums of x x* and of lambda x x*. `result` holds sets of vectors, the real and the imaginary parts.
void alike(std::vector<double>& result, int n, int sets)
{
    const auto at = [&](int i) { return result[static_cast<std::size_t>(i)]; };
    const auto lambda = [&](int j) { return std::complex<double>(at(sets * n * n + j), at(sets * n * n + n + j)); };
    std::vector<double> same;
    for (int power = 1; power <= n; ++power) {
        std::complex<double> sum = 0;
        for (int j = 0; j < n; ++j) sum += std::pow(lambda(j), power);
        same.push_back(sum.real());
    }
    for (int set = 0; set < sets; ++set) {
        const auto element = [&](int i, int j) { return at(set * n * n + i * n + j); };
        const auto vector = [&](int i, int j) {
            const double im = lambda(j).imag();
            return im == 0  ? std::complex<double>(element(i, j))
                   : im > 0 ? std::complex<double>(element(i, j), element(i, j + 1))
                            : std::complex<double>(element(i, j - 1), -element(i, j));
        };
        for (int i = 0; i < n; ++i)
            for (int l = 0; l < n; ++l) {
                std::complex<double> ones = 0, lambdas = 0;
                for (int j = 0; j < n; ++j) {
                    const std::complex<double> product = vector(i, j) * std::conj(vector(l, j));
                    ones += product, lambdas += lambda(j) * product;
                }
                same.push_back(ones.real()), same.push_back(lambdas.real());
            }
    }
    result = same;
}

struct Values {
    static constexpr const char* name = "Values_ma";
    static constexpr auto functions = KESL_BUFFERED(keslEigenValues_ma);
    static constexpr std::tuple alone{buffered<float>(keslEigenValues_m_32f), buffered<double>(keslEigenValues_m_64f)};
    template <int N> using Operands = std::tuple<ma<N, N>, results<N>, results<N>>;
    template <int N> static constexpr std::tuple sizes{N};
    static constexpr double tolerance = 10000; // nearly defective matrices are among the random ones
    static void comparable(std::vector<double>& result, int n) { alike(result, n, 0); }

    static constexpr std::tuple peers{Peer{"eigen",
                                           [](auto n, Range range, auto src, auto re, auto im) {
                                               using T = std::decay_t<decltype(src(0, 0, 0))>;
                                               Eigen::EigenSolver<Eigen::Matrix<T, n, n>> solver;
                                               for (int k = range.begin; k < range.end; ++k) {
                                                   const auto& values = solve(solver, matrix<false, T, n>(src, k), false);
                                                   give<n>(re, k, [&](int, int j) { return values[j].real(); });
                                                   give<n>(im, k, [&](int, int j) { return values[j].imag(); });
                                               }
                                           }},
                                      Peer{"lapack",
                                           [](auto n, Range range, auto src, auto re, auto im) {
                                               using T = std::decay_t<decltype(src(0, 0, 0))>;
                                               Geev<T, n> geev;
                                               for (int k = range.begin; k < range.end; ++k) {
                                                   auto a = matrix<true, T, n>(src, k);
                                                   geev.run(a.data(), false, false);
                                                   give<n>(re, k, [&](int, int j) { return geev.values[0][j]; });
                                                   give<n>(im, k, [&](int, int j) { return geev.values[1][j]; });
                                               }
                                           },
                                           Where::cacheOnly}};
};

// One side. Eigen's vectors are those of its own matrix, so it gets the transpose for the right ones.
template <bool left> struct OneSide {
    static constexpr const char* name = left ? "VectorsLeft_ma" : "VectorsRight_ma";
    static constexpr auto chosen(auto forLeft, auto forRight)
    {
        if constexpr (left) return forLeft;
        else return forRight;
    }
    static constexpr auto functions =
        chosen(KESL_BUFFERED(keslEigenValuesVectorsLeft_ma), KESL_BUFFERED(keslEigenValuesVectorsRight_ma));
    static constexpr std::tuple alone{
        buffered<float>(chosen(keslEigenValuesVectorsLeft_m_32f, keslEigenValuesVectorsRight_m_32f)),
        buffered<double>(chosen(keslEigenValuesVectorsLeft_m_64f, keslEigenValuesVectorsRight_m_64f))};
    template <int N> using Operands = std::tuple<ma<N, N>, out<ma<N, N>>, results<N>, results<N>>;
    template <int N> static constexpr std::tuple sizes{N};
    static constexpr double tolerance = 100000;
    static void comparable(std::vector<double>& result, int n) { alike(result, n, 1); }

    static constexpr std::tuple peers{
        Peer{"eigen",
             [](auto n, Range range, auto src, auto dst, auto re, auto im) {
                 using T = std::decay_t<decltype(src(0, 0, 0))>;
                 Eigen::EigenSolver<Eigen::Matrix<T, n, n>> solver;
                 for (int k = range.begin; k < range.end; ++k) {
                     const auto& values = solve(solver, matrix<!left, T, n>(src, k), true);
                     Eigen::Matrix<T, n, n> vectors = solver.pseudoEigenvectors();
                     normalise(vectors, values);
                     give<n>(re, k, [&](int, int j) { return values[j].real(); });
                     give<n>(im, k, [&](int, int j) { return values[j].imag(); });
                     give<n>(dst, k, [&](int i, int j) { return vectors(i, j); });
                 }
             }},
        Peer{"lapack",
             [](auto n, Range range, auto src, auto dst, auto re, auto im) {
                 using T = std::decay_t<decltype(src(0, 0, 0))>;
                 Geev<T, n> geev;
                 for (int k = range.begin; k < range.end; ++k) {
                     auto a = matrix<true, T, n>(src, k);
                     geev.run(a.data(), left, !left);
                     give<n>(re, k, [&](int, int j) { return geev.values[0][j]; });
                     give<n>(im, k, [&](int, int j) { return geev.values[1][j]; });
                     give<n>(dst, k, [&](int i, int j) { return (left ? geev.left : geev.right)[j * n + i]; });
                 }
             },
             Where::cacheOnly}};
};

struct BothSides {
    static constexpr const char* name = "Vectors_ma";
    static constexpr auto functions = KESL_BUFFERED(keslEigenValuesVectors_ma);
    static constexpr std::tuple alone{buffered<float>(keslEigenValuesVectors_m_32f),
                                      buffered<double>(keslEigenValuesVectors_m_64f)};
    template <int N> using Operands = std::tuple<ma<N, N>, out<ma<N, N>>, out<ma<N, N>>, results<N>, results<N>>;
    template <int N> static constexpr std::tuple sizes{N};
    static constexpr double tolerance = 100000;
    static void comparable(std::vector<double>& result, int n) { alike(result, n, 2); }

    static constexpr std::tuple peers{Peer{"eigen", // the left ones from the inverse of the right ones
                                           [](auto n, Range range, auto src, auto right, auto left, auto re, auto im) {
                                               using T = std::decay_t<decltype(src(0, 0, 0))>;
                                               Eigen::EigenSolver<Eigen::Matrix<T, n, n>> solver;
                                               for (int k = range.begin; k < range.end; ++k) {
                                                   const auto& values = solve(solver, matrix<true, T, n>(src, k), true);
                                                   Eigen::Matrix<T, n, n> vectors = solver.pseudoEigenvectors(),
                                                                          inverse = vectors.inverse().transpose();
                                                   for (int j = 0; j < n; ++j)
                                                       if (values[j].imag() < 0) inverse.col(j) *= -1;
                                                   normalise(vectors, values), normalise(inverse, values);
                                                   give<n>(re, k, [&](int, int j) { return values[j].real(); });
                                                   give<n>(im, k, [&](int, int j) { return values[j].imag(); });
                                                   give<n>(right, k, [&](int i, int j) { return vectors(i, j); });
                                                   give<n>(left, k, [&](int i, int j) { return inverse(i, j); });
                                               }
                                           }},
                                      Peer{"lapack",
                                           [](auto n, Range range, auto src, auto right, auto left, auto re, auto im) {
                                               using T = std::decay_t<decltype(src(0, 0, 0))>;
                                               Geev<T, n> geev;
                                               for (int k = range.begin; k < range.end; ++k) {
                                                   auto a = matrix<true, T, n>(src, k);
                                                   geev.run(a.data(), true, true);
                                                   give<n>(re, k, [&](int, int j) { return geev.values[0][j]; });
                                                   give<n>(im, k, [&](int, int j) { return geev.values[1][j]; });
                                                   give<n>(right, k, [&](int i, int j) { return geev.right[j * n + i]; });
                                                   give<n>(left, k, [&](int i, int j) { return geev.left[j * n + i]; });
                                               }
                                           },
                                           Where::cacheOnly}};
};

[[maybe_unused]] const bool registered =
    rows<Values, Plan::cache, 3, 4, 5, 6>() && rows<OneSide<false>, Plan::packed, 3, 4, 5, 6>() &&
    rows<OneSide<true>, Plan::packed, 3, 4, 5, 6>() && rows<BothSides, Plan::packed, 3, 4, 5, 6>();
} // namespace
