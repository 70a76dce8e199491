// kesl.hpp on Eigen's matrices: either storage order, what Eigen aligns, single ones, vectors of dynamic size.
#include <Eigen/Dense>
#include <Eigen/StdVector>
#include <kesl.hpp>

#include "expect.h"

#include <vector>

namespace {

template <class M> std::vector<M, Eigen::aligned_allocator<M>> randomMatrices(int count)
{
    std::vector<M, Eigen::aligned_allocator<M>> all;
    for (int k = 0; k < count; ++k) all.push_back(M::Random() + 3 * M::Identity());
    return all;
}

// Column-major and row-major, and Matrix4f, which is aligned.
template <class M> void testInverse()
{
    auto a = randomMatrices<M>(33);
    a[7] *= 2;
    auto x = a;
    EXPECT(kesl::inv(a, x) == 0);
    for (std::size_t k = 0; k < a.size(); ++k) EXPECT((a[k] * x[k] - M::Identity()).norm() < 1e-4);
    EXPECT(kesl::inv(x, x) == 0); // in place
    for (std::size_t k = 0; k < a.size(); ++k) EXPECT((a[k] - x[k]).norm() < 1e-3);
}

void testSystems()
{
    const auto a = randomMatrices<Eigen::Matrix3d>(10);
    const std::vector<Eigen::Vector3d> b(10, Eigen::Vector3d(1, 2, 3));
    std::vector<Eigen::Vector3d> x(10);
    EXPECT(kesl::solve(a, b, x) == 0);
    for (std::size_t k = 0; k < 10; ++k) EXPECT((a[k] * x[k] - b[k]).norm() < 1e-12);
    std::vector<Eigen::RowVector3d> rows(10);
    EXPECT(kesl::cross(b, x, rows) == 0);
    EXPECT((rows[3].transpose() - b[3].cross(x[3])).norm() < 1e-14);
    Eigen::VectorXd d(10); // a container of numbers
    EXPECT(kesl::det(a, d) == 0);
    EXPECT(std::abs(d(4) - a[4].determinant()) < 1e-10);
}

void testEigenvectors()
{
    const Eigen::Matrix2f a = (Eigen::Matrix2f() << 2, 1, 1, 2).finished(); // a stack of one
    Eigen::Vector2f w;
    Eigen::Matrix2f v;
    EXPECT(kesl::eigh(a, w, v) == 0);
    EXPECT(std::abs(w(0) - 1) < 1e-6f && std::abs(w(1) - 3) < 1e-6f && (a * v - v * w.asDiagonal()).norm() < 1e-5f);
    const Eigen::Matrix<double, 4, 2> tall = Eigen::Matrix<double, 4, 2>::Random();
    Eigen::Matrix<double, 4, 2> u;
    Eigen::Vector2d s;
    Eigen::Matrix2d vt;
    EXPECT(kesl::svd(tall, u, s, vt) == 0);
    EXPECT((u * s.asDiagonal() * vt - tall).norm() < 1e-13);
    Eigen::Vector2cd lambda;
    const Eigen::Matrix2d turn = (Eigen::Matrix2d() << 0, -1, 1, 0).finished();
    EXPECT(kesl::eigvals(turn, lambda) == 0);
    EXPECT(std::abs(lambda(0) - std::complex<double>(0, 1)) < 1e-14);
}

} // namespace

int main()
{
    testInverse<Eigen::Matrix3f>();
    testInverse<Eigen::Matrix<float, 3, 3, Eigen::RowMajor>>();
    testInverse<Eigen::Matrix4f>();
    testInverse<Eigen::Matrix2d>();
    testInverse<Eigen::Matrix<double, 7, 7>>();
    testSystems();
    testEigenvectors();
    return failures;
}
