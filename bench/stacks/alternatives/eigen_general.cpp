#include "eigen.h"

#include <Eigen/Eigenvalues>

namespace bench::stacks {
namespace {

template <bool withVectors> struct Eig {
    template <class T, int N> static void run(const Problem& p, Range range)
    {
        const View<Square<T, N>> a(p, 0), v(p, withVectors ? 3 : 0);
        const Array &re = p.arrays[1], &im = p.arrays[2];
        Square<T, N> m = a.blank();
        Eigen::EigenSolver<Square<T, N>> solver(p.order);
        for (int k = range.begin; k < range.end; ++k) {
            a.load(k, m);
            compute(solver, m, withVectors);
            for (int i = 0; i < p.order; ++i) {
                re.at<T>(k, i, 0) = solver.eigenvalues()[i].real();
                im.at<T>(k, i, 0) = solver.eigenvalues()[i].imag();
            }
            if (withVectors) v.store(k, solver.pseudoEigenvectors()); // pairs as real and imaginary parts, of any length
        }
    }
};

const bool registered = addEigen<Eig<false>>("eigvals", few) && addEigen<Eig<true>>("eig", few);

} // namespace
} // namespace bench::stacks
