#include "eigen.h"

#include <Eigen/SVD>

namespace bench::stacks {
namespace {

// By Jacobi rotations; Eigen's divide and conquer begins at order 16.
template <bool withVectors> struct Svd {
    template <class T, int N> static void run(const Problem& p, Range range)
    {
        constexpr unsigned options = withVectors ? Eigen::ComputeFullU | Eigen::ComputeFullV : 0u;
        if constexpr (N == Eigen::Dynamic) {
            if (p.order > 16) return with(Eigen::BDCSVD<Square<T, N>>(p.order, p.order, options), p, range);
        }
        with(Eigen::JacobiSVD<Square<T, N>>(p.order, p.order, options), p, range);
    }

    template <class Solver> static void with(Solver solver, const Problem& p, Range range)
    {
        using Matrix = typename Solver::MatrixType;
        using T = typename Matrix::Scalar;
        const View<Matrix> a(p, 0), u(p, withVectors ? 1 : 0), vt(p, withVectors ? 3 : 0);
        const View<Column<T, Matrix::RowsAtCompileTime>> s(p, withVectors ? 2 : 1);
        Matrix m = a.blank();
        for (int k = range.begin; k < range.end; ++k) {
            a.load(k, m);
            solver.compute(m);
            s.store(k, solver.singularValues());
            if constexpr (withVectors) {
                u.store(k, solver.matrixU());
                m = solver.matrixV().transpose();
                vt.store(k, m);
            }
        }
    }
};

const bool registered = addEigen<Svd<false>>("svdvals", few) && addEigen<Svd<true>>("svd", few);

} // namespace
} // namespace bench::stacks
