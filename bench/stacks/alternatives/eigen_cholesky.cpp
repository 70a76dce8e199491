#include "eigen.h"

#include <Eigen/Cholesky>

namespace bench::stacks {
namespace {

struct Cholesky {
    template <class T, int N> static void run(const Problem& p, Range range)
    {
        const View<Square<T, N>> a(p, 0), l(p, 1);
        Square<T, N> m = a.blank(), lower = a.blank();
        Eigen::LLT<Square<T, N>> llt(p.order);
        for (int k = range.begin; k < range.end; ++k) {
            a.load(k, m);
            lower = llt.compute(m).matrixL();
            l.store(k, lower);
        }
    }
};

struct CholeskySolve {
    template <class T, int N> static void run(const Problem& p, Range range)
    {
        const View<Square<T, N>> l(p, 0);
        const View<Column<T, N>> b(p, 1), x(p, 2);
        Square<T, N> m = l.blank();
        Column<T, N> v = b.blank();
        for (int k = range.begin; k < range.end; ++k) {
            l.load(k, m), b.load(k, v);
            m.template triangularView<Eigen::Lower>().solveInPlace(v);
            m.template triangularView<Eigen::Lower>().transpose().solveInPlace(v);
            x.store(k, v);
        }
    }
};

const bool registered = addEigen<Cholesky>("cholesky", few) && addEigen<CholeskySolve>("cholesky_solve", some);

} // namespace
} // namespace bench::stacks
