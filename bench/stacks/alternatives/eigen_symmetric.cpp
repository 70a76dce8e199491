#include "eigen.h"

#include <Eigen/Eigenvalues>

namespace bench::stacks {
namespace {

template <bool isClosed> struct Eigvalsh {
    template <class T, int N> static void run(const Problem& p, Range range)
    {
        const View<Square<T, N>> a(p, 0);
        const View<Column<T, N>> w(p, 1);
        Square<T, N> m = a.blank();
        Eigen::SelfAdjointEigenSolver<Square<T, N>> solver(p.order);
        for (int k = range.begin; k < range.end; ++k) {
            a.load(k, m);
            if constexpr (isClosed) solver.computeDirect(m, Eigen::EigenvaluesOnly);
            else solver.compute(m, Eigen::EigenvaluesOnly);
            w.store(k, solver.eigenvalues());
        }
    }
};

template <bool isClosed> struct Eigh {
    template <class T, int N> static void run(const Problem& p, Range range)
    {
        const View<Square<T, N>> a(p, 0), v(p, 2);
        const View<Column<T, N>> w(p, 1);
        Square<T, N> m = a.blank();
        Eigen::SelfAdjointEigenSolver<Square<T, N>> solver(p.order);
        for (int k = range.begin; k < range.end; ++k) {
            a.load(k, m);
            if constexpr (isClosed) solver.computeDirect(m);
            else solver.compute(m);
            w.store(k, solver.eigenvalues());
            v.store(k, solver.eigenvectors());
        }
    }
};

// The closed forms of orders 2 and 3 are of less accuracy.
const bool registered = addEigen<Eigvalsh<false>>("eigvalsh", few) && addEigen<Eigh<false>>("eigh", few) &&
                        addEigen<Eigvalsh<true>, 2>("eigvalsh", "eigen-direct", true) &&
                        addEigen<Eigvalsh<true>, 3>("eigvalsh", "eigen-direct", true) &&
                        addEigen<Eigh<true>, 2>("eigh", "eigen-direct", true) &&
                        addEigen<Eigh<true>, 3>("eigh", "eigen-direct", true);

} // namespace
} // namespace bench::stacks
