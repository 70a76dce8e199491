// Points through one 4 by 4 matrix, projected back by the fourth coordinate.
#include "kit.h"

using namespace bench;

namespace {

struct Affine {
    static constexpr const char* name = "Affine";
    static constexpr auto functions = std::make_tuple(keslAffineTransform3DH_mva_32f);
    template <int> using Operands = std::tuple<m<4, 4>, va<3>, out<va<3>>>;
    template <int> static constexpr std::tuple<> sizes{};
    static constexpr double tolerance = 30;

    // A last row that keeps every point of the cube away from infinity.
    template <class T> static void fill(int operand, T* a, int, Random& random)
    {
        if (operand != 0) return;
        for (int j = 0; j < 3; ++j) a[12 + j] = static_cast<T>(0.2 * random());
        a[15] = 2;
    }

    static constexpr std::tuple peers{
        Peer{"plain",
             [](auto, Range range, auto matrix, auto src, auto dst) {
                 using T = std::decay_t<decltype(src(0, 0, 0))>;
                 const auto a = kept(matrix);
#pragma GCC ivdep
                 for (int k = range.begin; k < range.end; ++k) {
                     const T x = src(k, 0, 0), y = src(k, 0, 1), z = src(k, 0, 2);
                     const T r = 1 / (a(0, 3, 0) * x + a(0, 3, 1) * y + a(0, 3, 2) * z + a(0, 3, 3));
                     for (int i = 0; i < 3; ++i)
                         dst(k, 0, i) = (a(0, i, 0) * x + a(0, i, 1) * y + a(0, i, 2) * z + a(0, i, 3)) * r;
                 }
             }},
        Peer{"eigen",
             [](auto, Range range, auto matrix, auto src, auto dst) {
                 using T = std::decay_t<decltype(src(0, 0, 0))>;
                 const Eigen::Matrix<T, 4, 4> a = matrix.eigen(0);
                 for (int k = range.begin; k < range.end; ++k)
                     dst.assign(k, (a * src.eigen(k).transpose().homogeneous()).hnormalized().transpose());
             }},
        Peer{"eigen-all", // one product for the whole array
             [](auto, Range range, auto matrix, Packed auto src, Packed auto dst) {
                 using T = std::decay_t<decltype(src(0, 0, 0))>;
                 using Points = Eigen::Map<Eigen::Matrix<T, 3, Eigen::Dynamic>>;
                 const Eigen::Matrix<T, 4, 4> a = matrix.eigen(0);
                 const int length = range.end - range.begin;
                 Points to(dst.object(range.begin), 3, length);
                 to = (a * Points(src.object(range.begin), 3, length).colwise().homogeneous()).colwise().hnormalized();
             }},
    };
};

[[maybe_unused]] const bool registered = rows<Affine, Plan::full, 3>();

} // namespace
