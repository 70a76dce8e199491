#include "eigen.h"

#include <Eigen/LU>

namespace bench::stacks {
namespace {

// Closed forms up to order 4, as Eigen has them.
constexpr bool isClosed(int n) { return n > 0 && n <= 4; }

struct Det {
    template <class T, int N> static void run(const Problem& p, Range range)
    {
        const View<Square<T, N>> a(p, 0);
        const Array& x = p.arrays[1];
        Square<T, N> m = a.blank();
        Eigen::PartialPivLU<Square<T, N>> lu(p.order);
        for (int k = range.begin; k < range.end; ++k) {
            if constexpr (isClosed(N)) {
                if (!p.isContiguous()) a.load(k, m);
                x.at<T>(k, 0, 0) = p.isContiguous() ? a.map(k).determinant() : m.determinant(); // a transpose has the same
            } else {
                a.load(k, m);
                compute(lu, m);
                x.at<T>(k, 0, 0) = lu.determinant();
            }
        }
    }
};

struct Inv {
    template <class T, int N> static void run(const Problem& p, Range range)
    {
        const View<Square<T, N>> a(p, 0), x(p, 1);
        Square<T, N> m = a.blank(), inverse = a.blank();
        Eigen::PartialPivLU<Square<T, N>> lu(p.order);
        for (int k = range.begin; k < range.end; ++k) {
            if constexpr (isClosed(N)) {
                if (p.isContiguous()) {
                    x.map(k) = a.map(k).inverse(); // that of a transpose is the transpose
                    continue;
                }
                a.load(k, m);
                inverse = m.inverse();
            } else {
                a.load(k, m);
                compute(lu, m);
                inverse = lu.inverse();
            }
            x.store(k, inverse);
        }
    }
};

struct Solve {
    template <class T, int N> static void run(const Problem& p, Range range)
    {
        const View<Square<T, N>> a(p, 0);
        const View<Column<T, N>> b(p, 1), x(p, 2);
        Square<T, N> m = a.blank();
        Column<T, N> right = b.blank(), solution = b.blank();
        Eigen::PartialPivLU<Square<T, N>> lu(p.order);
        for (int k = range.begin; k < range.end; ++k) {
            a.load(k, m), b.load(k, right);
            compute(lu, m);
            solution = lu.solve(right);
            x.store(k, solution);
        }
    }
};

struct Lu {
    template <class T, int N> static void run(const Problem& p, Range range)
    {
        const View<Square<T, N>> a(p, 0), factors(p, 1);
        const View<Column<int, N>> pivots(p, 2);
        Square<T, N> m = a.blank();
        Eigen::PartialPivLU<Square<T, N>> lu(p.order);
        for (int k = range.begin; k < range.end; ++k) {
            a.load(k, m);
            compute(lu, m);
            factors.store(k, lu.matrixLU());
            pivots.store(k, lu.permutationP().indices());
        }
    }
};

struct LuSolve { // L, U and exchanges one after the other, as LAPACK's factors hold them
    template <class T, int N> static void run(const Problem& p, Range range)
    {
        const View<Square<T, N>> factors(p, 0);
        const View<Column<T, N>> b(p, 2), x(p, 3);
        Square<T, N> m = factors.blank();
        Column<T, N> v = b.blank();
        for (int k = range.begin; k < range.end; ++k) {
            factors.load(k, m), b.load(k, v);
            for (int i = 0; i < p.order; ++i) std::swap(v[i], v[p.arrays[1].at<int>(k, i, 0) - 1]);
            m.template triangularView<Eigen::UnitLower>().solveInPlace(v);
            m.template triangularView<Eigen::Upper>().solveInPlace(v);
            x.store(k, v);
        }
    }
};

const bool registered = addEigen<Det>("det", some) && addEigen<Inv>("inv", some) && addEigen<Solve>("solve", some) &&
                        addEigen<Lu>("lu", some) && addEigen<LuSolve>("lu_solve", some);

} // namespace
} // namespace bench::stacks
