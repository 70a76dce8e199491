// Eigen as an alternative. A body is a struct with a template run<T, N>, N being the order or Eigen::Dynamic.
#pragma once
#include "element.h"

#include <Eigen/Core>

namespace bench::stacks {

template <class T, int N> using Square = Eigen::Matrix<T, N, N>;
template <class T, int N> using Column = Eigen::Matrix<T, N, 1>;

// An operand whose objects are copied to a matrix of Eigen's own and back, from and to any layout.
template <class Matrix> class View {
    using T = typename Matrix::Scalar;
    using Transposed = Eigen::Matrix<T, Matrix::ColsAtCompileTime, Matrix::RowsAtCompileTime>;
    const Array& a;
    bool byColumns, byRows;

public:
    View(const Problem& p, int index) : a(p.arrays[std::size_t(index)])
    {
        byColumns = a.stride1 == a.bytes && (a.cols == 1 || a.stride2 == a.rows * a.stride1);
        byRows = a.stride2 == a.bytes && (a.rows == 1 || a.stride1 == a.cols * a.stride2);
    }
    Matrix blank() const { return Matrix(a.rows, a.cols); }
    T* at(int k) const { return &a.at<T>(k, 0, 0); }
    void load(int k, Matrix& x) const
    {
        if (byColumns) x = Eigen::Map<const Matrix>(at(k), a.rows, a.cols);
        else if (byRows) x = Eigen::Map<const Transposed>(at(k), a.cols, a.rows).transpose();
        else
            for (int i = 0; i < a.rows; ++i)
                for (int j = 0; j < a.cols; ++j) x(i, j) = a.at<T>(k, i, j);
    }
    void store(int k, const Matrix& x) const
    {
        if (byColumns) Eigen::Map<Matrix>(at(k), a.rows, a.cols) = x;
        else if (byRows) Eigen::Map<Transposed>(at(k), a.cols, a.rows) = x.transpose();
        else
            for (int i = 0; i < a.rows; ++i)
                for (int j = 0; j < a.cols; ++j) a.at<T>(k, i, j) = x(i, j);
    }
    Eigen::Map<Matrix> map(int k) const { return {at(k), a.rows, a.cols}; }
};

// For what is too short to copy: where objects are contiguous they are used as they lie, as matrices by columns, so that those
// that lie by rows are transposes. Elsewhere they are copied, without memory from the heap.
template <bool isMapped, class T, int R, int C> class Direct {
    static constexpr int limit = ::stacks::limit;
    using Copy = Eigen::Matrix < T, R, C, 0, R < 0 ? limit : R, C<0 ? limit : C>;
    View<std::conditional_t<isMapped, Eigen::Matrix<T, R, C>, Copy>> view;

public:
    Direct(const Problem& p, int index) : view(p, index) {}
    auto operator()(int k) const
    {
        if constexpr (isMapped) return view.map(k);
        else {
            Copy x = view.blank();
            view.load(k, x);
            return x;
        }
    }
    void store(int k, const auto& value) const
    {
        if constexpr (isMapped) view.map(k).noalias() = value;
        else view.store(k, value);
    }
};

// Inlined it would be compiled once for each caller, and that takes seconds.
template <class Solver, class... A> [[gnu::noinline]] void compute(Solver& solver, const A&... a) { solver.compute(a...); }

template <class Body, int N> static bool addEigen(const char* function, const char* name, bool isAside = false)
{
    alternatives().push_back({function, name, sizeof(Element), Body::template run<Element, N>, N == Eigen::Dynamic ? 0 : N,
                              nullptr, isAside, N == Eigen::Dynamic});
    return true;
}
// Fixed orders, and the dynamic size. Decompositions take seconds to compile for each, so they have fewer.
template <class Body, int... N> static bool addEigen(const char* function, std::integer_sequence<int, N...>)
{
    return (addEigen<Body, N>(function, "eigen") && ...) && addEigen<Body, Eigen::Dynamic>(function, "eigen-dynamic");
}
inline constexpr std::integer_sequence<int, 1, 2, 3, 4, 5, 6, 7, 8> all{};
inline constexpr std::integer_sequence<int, 1, 2, 3, 4, 6> some{};
inline constexpr std::integer_sequence<int, 3, 6> few{};

} // namespace bench::stacks
