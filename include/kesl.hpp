// kesl for C++17: the functions of kesl.h on containers of fixed-size matrices, and on views of anything else.
//
//     std::vector<Eigen::Matrix3f> a(1000), x(1000);
//     std::ptrdiff_t failed = kesl::inv(a, x);                     // x[k] = a[k]^-1; those that failed are NaN
//
// Operands are views of type kesl::stack<T>, or what one can be made of:
//   - contiguous containers (whatever has data() and size(), and C arrays) of matrices, vectors or numbers of fixed size:
//     std::array<std::array<float, 3>, 3>, float[3][3], Eigen::Matrix3f of either storage order, std::array<double, 6>,
//     Eigen::Vector3d, float; of std::complex<T> for complex eigenvalues; of your own types by kesl::object below;
//   - a single matrix or vector of Eigen: a stack of one object.
// A vector is a matrix of one column. A source that holds one object serves all objects of the others.
//
// Sizes are those of the views. Where they do not go together, and where kesl.h finds an argument unacceptable,
// std::invalid_argument is thrown before anything is touched. What fails in the objects is no error of the call: functions
// return how many failed; `info`, a pointer or a container of int for as many objects, tells which and why. The functions
// themselves, what fails and what may be in place are described in kesl.h.
#ifndef KESL_HPP
#define KESL_HPP

#include "kesl.h"

#include <array>
#include <complex>
#include <cstddef>
#include <iterator>
#include <stdexcept>
#include <string>
#include <tuple>
#include <type_traits>
#include <utility>

namespace kesl {

// How an object of type E lies in memory: its element type, its size, and the distance of rows and columns in bytes. A type
// of your own gets a specialisation; its elements must lie in the object itself.
template <class E, class = void> struct object;

template <class T, std::ptrdiff_t Rows, std::ptrdiff_t Cols, bool RowMajor = true> struct dense_object {
    using element = T;
    static constexpr std::ptrdiff_t rows = Rows, cols = Cols;
    static constexpr std::ptrdiff_t stride1 = std::ptrdiff_t(sizeof(T)) * (RowMajor ? Cols : 1);
    static constexpr std::ptrdiff_t stride2 = std::ptrdiff_t(sizeof(T)) * (RowMajor ? 1 : Rows);
};

template <> struct object<float> : dense_object<float, 1, 1> {};
template <> struct object<double> : dense_object<double, 1, 1> {};
template <> struct object<int> : dense_object<int, 1, 1> {}; // pivots
template <class T> struct object<std::complex<T>> : dense_object<std::complex<T>, 1, 1> {};
template <class T, std::size_t N> struct object<T[N], std::enable_if_t<std::is_scalar_v<T>>> : dense_object<T, N, 1> {};
template <class T, std::size_t M, std::size_t N> struct object<T[M][N]> : dense_object<T, M, N>{};
template <class T, std::size_t N> struct object<std::array<T, N>> : dense_object<T, N, 1> {};
template <class T, std::size_t M, std::size_t N> struct object<std::array<std::array<T, N>, M>> : dense_object<T, M, N> {};
template <class E> // Eigen's matrices of fixed size
struct object<E, std::enable_if_t<(E::RowsAtCompileTime > 0 && E::ColsAtCompileTime > 0)>>
    : dense_object<typename E::Scalar, E::RowsAtCompileTime, E::ColsAtCompileTime, bool(E::IsRowMajor)> {
    static_assert(sizeof(E) >= sizeof(typename E::Scalar) * E::RowsAtCompileTime * E::ColsAtCompileTime,
                  "holds its elements");
};

namespace detail {

template <class E, class = void> struct is_object : std::false_type {};
template <class E> struct is_object<E, std::void_t<typename object<E>::element>> : std::true_type {};

// What Eigen has of fixed size is an object; what it has of dynamic size is a container if it is a vector.
template <class C, class = void> struct is_eigen : std::false_type {};
template <class C> struct is_eigen<C, std::void_t<typename C::Scalar, decltype(C::RowsAtCompileTime)>> : std::true_type {};
template <class C, bool = is_eigen<C>::value> struct may_contain : std::true_type {};
template <class C> struct may_contain<C, true>
    : std::bool_constant<!is_object<C>::value && (C::RowsAtCompileTime == 1 || C::ColsAtCompileTime == 1)> {};

// The type of the elements; const if C is.
template <class C, class = decltype(std::size(std::declval<C&>()))>
using held = std::remove_pointer_t<decltype(std::data(std::declval<C&>()))>;
template <class C, class = void> struct is_container : std::false_type {};
template <class C> struct is_container<
    C, std::enable_if_t<may_contain<std::remove_const_t<C>>::value && is_object<std::remove_const_t<held<C>>>::value>>
    : std::true_type {};

template <class From, class T> using const_as = std::conditional_t<std::is_const_v<From>, const T, T>;

// The element type of a stack that is made of a C.
template <class C, bool = is_container<C>::value> struct element_of;
template <class C> struct element_of<C, true> {
    using type = const_as<held<C>, typename object<std::remove_const_t<held<C>>>::element>;
};
template <class C> struct element_of<C, false> {
    using type = const_as<C, typename object<std::remove_const_t<C>>::element>;
};

} // namespace detail

// A view of `count` matrices: element (i, j) of object k lies k*stride0 + i*stride1 + j*stride2 bytes behind data. A vector
// has one column, a number one row too.
template <class T> class stack {
public:
    using element_type = T;

    // Row after row, object after object, without gaps.
    stack(T* data, std::ptrdiff_t count, std::ptrdiff_t rows = 1, std::ptrdiff_t cols = 1)
        : stack(data, count, rows, cols,
                {std::ptrdiff_t(sizeof(T)) * rows * cols, std::ptrdiff_t(sizeof(T)) * cols, sizeof(T)})
    {
    }
    stack(T* data, std::ptrdiff_t count, std::ptrdiff_t rows, std::ptrdiff_t cols, std::array<std::ptrdiff_t, 3> strides)
        : data_(data), count_(count), rows_(rows), cols_(cols), strides_(strides)
    {
    }

    // Of a container of fixed-size matrices, or of one such matrix.
    template <class C, std::enable_if_t<detail::is_container<C>::value, int> = 0> stack(C& container)
        : stack(reinterpret_cast<T*>(std::data(container)), std::ptrdiff_t(std::size(container)), like<detail::held<C>>{})
    {
    }
    template <class E,
              std::enable_if_t<!detail::is_container<E>::value && detail::is_object<std::remove_const_t<E>>::value, int> = 0>
    stack(E& one) : stack(reinterpret_cast<T*>(&one), 1, like<E>{})
    {
    }
    // Elements may become const.
    template <class U, std::enable_if_t<std::is_same_v<const U, T>, int> = 0> stack(const stack<U>& s)
        : stack(s.data(), s.count(), s.rows(), s.cols(), {s.stride(0), s.stride(1), s.stride(2)})
    {
    }

    T* data() const { return data_; }
    std::ptrdiff_t count() const { return count_; }
    std::ptrdiff_t rows() const { return rows_; }
    std::ptrdiff_t cols() const { return cols_; }
    std::ptrdiff_t stride(int axis) const { return strides_[std::size_t(axis)]; }

    T& operator()(std::ptrdiff_t k, std::ptrdiff_t i = 0, std::ptrdiff_t j = 0) const
    {
        return *at<T>(k * strides_[0] + i * strides_[1] + j * strides_[2]);
    }
    stack transposed() const { return {data_, count_, cols_, rows_, {strides_[0], strides_[2], strides_[1]}}; }
    // `count` objects from object `begin` on.
    stack slice(std::ptrdiff_t begin, std::ptrdiff_t count) const
    {
        return {at<T>(begin * strides_[0]), count, rows_, cols_, strides_};
    }

    // The parts of complex elements.
    template <class U = T> auto real() const { return part<U>(0); }
    template <class U = T> auto imag() const { return part<U>(1); }

private:
    template <class E> struct like : object<std::remove_const_t<E>> {};
    template <class E> stack(T* data, std::ptrdiff_t count, like<E>)
        : stack(data, count, like<E>::rows, like<E>::cols, {std::ptrdiff_t(sizeof(E)), like<E>::stride1, like<E>::stride2})
    {
    }
    template <class U> U* at(std::ptrdiff_t bytes) const
    {
        using Byte = detail::const_as<T, char>;
        return reinterpret_cast<U*>(reinterpret_cast<Byte*>(data_) + bytes);
    }
    template <class U> auto part(std::ptrdiff_t which) const
    {
        using V = detail::const_as<T, typename U::value_type>;
        return stack<V>(at<V>(which * std::ptrdiff_t(sizeof(V))), count_, rows_, cols_, strides_);
    }

    T* data_;
    std::ptrdiff_t count_, rows_, cols_;
    std::array<std::ptrdiff_t, 3> strides_;
};
template <class C> stack(C&) -> stack<typename detail::element_of<C>::type>;

namespace detail {

template <class T> stack<T> view(const stack<T>& s) { return s; }
template <class T> stack<T> view(stack<T>& s) { return s; }
template <class C> auto view(C& c) { return stack(c); }
// Matrices that need not be wanted.
template <class T, class V> stack<T> wanted(V& v, std::ptrdiff_t, std::ptrdiff_t) { return view(v); }
template <class T> stack<T> wanted(std::nullptr_t, std::ptrdiff_t count, std::ptrdiff_t n) { return {nullptr, count, n, n}; }
// What a function reads.
template <class T> stack<const T> source(const stack<T>& s) { return s; }
template <class C> auto source(const C& c) { return stack(c); }

template <class A> using element = std::remove_const_t<typename decltype(view(std::declval<A&>()))::element_type>;
template <class A> constexpr bool is_complex = !std::is_scalar_v<element<A>>;

[[noreturn]] inline void refuse(const char* function, const std::string& why)
{
    throw std::invalid_argument(std::string(function) + ": " + why);
}

// Where infos go.
class infos {
public:
    infos(std::nullptr_t = nullptr) {}
    infos(int* data) : data_(data) {}
    template <class C, class = std::enable_if_t<std::is_same_v<held<C>, int>>> infos(C& container)
        : data_(std::data(container)), size_(std::ptrdiff_t(std::size(container)))
    {
    }
    int* get(const char* function, std::ptrdiff_t count) const
    {
        if (size_ >= 0 && size_ != count)
            refuse(function, "info has " + std::to_string(size_) + " elements for " + std::to_string(count) + " objects");
        return data_;
    }

private:
    int* data_ = nullptr;
    std::ptrdiff_t size_ = -1; // unknown
};

// An operand as the C functions take it: a pointer, the stride of objects, and those of so many axes.
template <int Axes, class T> struct operand {
    stack<T> s;
    bool fits; // its objects have the size that the function wants
    const char* name;

    static constexpr bool reads = std::is_const_v<T>;
    void check(const char* function, std::ptrdiff_t count) const
    {
        if (!fits) refuse(function, std::string("the size of ") + name + " does not fit");
        if (s.count() != count && !(reads && s.count() == 1))
            refuse(function,
                   std::string(name) + " has " + std::to_string(s.count()) + " objects instead of " + std::to_string(count));
    }
    auto arguments() const
    {
        const std::ptrdiff_t stride0 = s.count() == 1 ? (reads ? 0 : std::ptrdiff_t(sizeof(T))) : s.stride(0);
        if constexpr (Axes == 2) return std::make_tuple(s.data(), stride0, s.stride(1), s.stride(2));
        else if constexpr (Axes == 1) return std::make_tuple(s.data(), stride0, s.stride(s.cols() == 1 ? 1 : 2));
        else return std::make_tuple(s.data(), stride0);
    }
};

template <class T> operand<2, T> matrix(const stack<T>& s, std::ptrdiff_t rows, std::ptrdiff_t cols, const char* name)
{
    return {s, s.rows() == rows && s.cols() == cols, name};
}
template <class T> operand<1, T> vector(const stack<T>& s, std::ptrdiff_t n, const char* name) // a column or a row
{
    return {s, (s.rows() == n && s.cols() == 1) || (s.rows() == 1 && s.cols() == n), name};
}
template <class T> operand<0, T> number(const stack<T>& s, const char* name)
{
    return {s, s.rows() == 1 && s.cols() == 1, name};
}

// Calls the function of type T with sizes, count, operands and infos.
template <class T, class F32, class F64, std::size_t N, class... Operands>
std::ptrdiff_t call(const char* name, F32 single, F64 twofold, std::array<std::ptrdiff_t, N> sizes, std::ptrdiff_t count,
                    const infos& info, const Operands&... operands)
{
    static_assert(std::is_same_v<T, float> || std::is_same_v<T, double>, "stacks of float or of double");
    (operands.check(name, count), ...);
    const auto function = [&] {
        if constexpr (std::is_same_v<T, float>) return single;
        else return twofold;
    }();
    const auto end = std::make_tuple(info.get(name, count));
    const std::ptrdiff_t status =
        std::apply(function, std::tuple_cat(sizes, std::make_tuple(count), operands.arguments()..., end));
    if (status >= 0) return status;
    char text[200];
    throw std::invalid_argument(kesl_strerror(name, status, text, sizeof text));
}

} // namespace detail

using infos = detail::infos;

// ---- Products and sums

template <class A, class B, class C> std::ptrdiff_t matmul(const A& a, const B& b, C&& c, infos info = {})
{
    const auto av = detail::source(a);
    const auto bv = detail::source(b);
    const auto cv = detail::view(c);
    const std::ptrdiff_t m = av.rows(), k = av.cols(), n = bv.cols();
    return detail::call<detail::element<A>>("kesl_matmul", kesl_matmul_32f, kesl_matmul_64f, std::array{m, k, n}, cv.count(),
                                            info, detail::matrix(av, m, k, "a"), detail::matrix(bv, k, n, "b"),
                                            detail::matrix(cv, m, n, "c"));
}

template <class A, class B, class X> std::ptrdiff_t vecdot(const A& a, const B& b, X&& x, infos info = {})
{
    const auto av = detail::source(a);
    const auto bv = detail::source(b);
    const auto xv = detail::view(x);
    const std::ptrdiff_t n = av.rows() * av.cols();
    return detail::call<detail::element<A>>("kesl_vecdot", kesl_vecdot_32f, kesl_vecdot_64f, std::array{n}, xv.count(), info,
                                            detail::vector(av, n, "a"), detail::vector(bv, n, "b"), detail::number(xv, "x"));
}

template <class A, class X> std::ptrdiff_t norm(const A& a, X&& x, infos info = {})
{
    const auto av = detail::source(a);
    const auto xv = detail::view(x);
    const std::ptrdiff_t n = av.rows() * av.cols();
    return detail::call<detail::element<A>>("kesl_norm", kesl_norm_32f, kesl_norm_64f, std::array{n}, xv.count(), info,
                                            detail::vector(av, n, "a"), detail::number(xv, "x"));
}

template <class A, class B, class C> std::ptrdiff_t cross(const A& a, const B& b, C&& c, infos info = {})
{
    const auto av = detail::source(a);
    const auto bv = detail::source(b);
    const auto cv = detail::view(c);
    return detail::call<detail::element<A>>("kesl_cross", kesl_cross_32f, kesl_cross_64f, std::array<std::ptrdiff_t, 0>{},
                                            cv.count(), info, detail::vector(av, 3, "a"), detail::vector(bv, 3, "b"),
                                            detail::vector(cv, 3, "c"));
}

template <class A, class X> std::ptrdiff_t trace(const A& a, X&& x, infos info = {})
{
    const auto av = detail::source(a);
    const auto xv = detail::view(x);
    const std::ptrdiff_t n = av.rows();
    return detail::call<detail::element<A>>("kesl_trace", kesl_trace_32f, kesl_trace_64f, std::array{n}, xv.count(), info,
                                            detail::matrix(av, n, n, "a"), detail::number(xv, "x"));
}

// ---- Linear systems

template <class A, class X> std::ptrdiff_t det(const A& a, X&& x, infos info = {})
{
    const auto av = detail::source(a);
    const auto xv = detail::view(x);
    const std::ptrdiff_t n = av.rows();
    return detail::call<detail::element<A>>("kesl_det", kesl_det_32f, kesl_det_64f, std::array{n}, xv.count(), info,
                                            detail::matrix(av, n, n, "a"), detail::number(xv, "x"));
}

template <class A, class X> std::ptrdiff_t inv(const A& a, X&& x, infos info = {})
{
    const auto av = detail::source(a);
    const auto xv = detail::view(x);
    const std::ptrdiff_t n = av.rows();
    return detail::call<detail::element<A>>("kesl_inv", kesl_inv_32f, kesl_inv_64f, std::array{n}, xv.count(), info,
                                            detail::matrix(av, n, n, "a"), detail::matrix(xv, n, n, "x"));
}

template <class A, class B, class X> std::ptrdiff_t solve(const A& a, const B& b, X&& x, infos info = {})
{
    const auto av = detail::source(a);
    const auto bv = detail::source(b);
    const auto xv = detail::view(x);
    const std::ptrdiff_t n = av.rows(), k = bv.cols();
    return detail::call<detail::element<A>>("kesl_solve", kesl_solve_32f, kesl_solve_64f, std::array{n, k}, xv.count(), info,
                                            detail::matrix(av, n, n, "a"), detail::matrix(bv, n, k, "b"),
                                            detail::matrix(xv, n, k, "x"));
}

template <class A, class LU, class P> std::ptrdiff_t lu(const A& a, LU&& lu, P&& pivots, infos info = {})
{
    const auto av = detail::source(a);
    const auto luv = detail::view(lu);
    const auto pivotsv = detail::view(pivots);
    const std::ptrdiff_t n = av.rows();
    return detail::call<detail::element<A>>("kesl_lu", kesl_lu_32f, kesl_lu_64f, std::array{n}, luv.count(), info,
                                            detail::matrix(av, n, n, "a"), detail::matrix(luv, n, n, "lu"),
                                            detail::vector(pivotsv, n, "pivots"));
}

template <class LU, class P, class B, class X>
std::ptrdiff_t lu_solve(const LU& lu, const P& pivots, const B& b, X&& x, infos info = {})
{
    const auto luv = detail::source(lu);
    const auto pivotsv = detail::source(pivots);
    const auto bv = detail::source(b);
    const auto xv = detail::view(x);
    const std::ptrdiff_t n = luv.rows(), k = bv.cols();
    return detail::call<detail::element<LU>>("kesl_lu_solve", kesl_lu_solve_32f, kesl_lu_solve_64f, std::array{n, k},
                                             xv.count(), info, detail::matrix(luv, n, n, "lu"),
                                             detail::vector(pivotsv, n, "pivots"), detail::matrix(bv, n, k, "b"),
                                             detail::matrix(xv, n, k, "x"));
}

template <class A, class L> std::ptrdiff_t cholesky(const A& a, L&& l, infos info = {})
{
    const auto av = detail::source(a);
    const auto lv = detail::view(l);
    const std::ptrdiff_t n = av.rows();
    return detail::call<detail::element<A>>("kesl_cholesky", kesl_cholesky_32f, kesl_cholesky_64f, std::array{n}, lv.count(),
                                            info, detail::matrix(av, n, n, "a"), detail::matrix(lv, n, n, "l"));
}

template <class L, class B, class X> std::ptrdiff_t cholesky_solve(const L& l, const B& b, X&& x, infos info = {})
{
    const auto lv = detail::source(l);
    const auto bv = detail::source(b);
    const auto xv = detail::view(x);
    const std::ptrdiff_t n = lv.rows(), k = bv.cols();
    return detail::call<detail::element<L>>("kesl_cholesky_solve", kesl_cholesky_solve_32f, kesl_cholesky_solve_64f,
                                            std::array{n, k}, xv.count(), info, detail::matrix(lv, n, n, "l"),
                                            detail::matrix(bv, n, k, "b"), detail::matrix(xv, n, k, "x"));
}

// ---- Least squares

template <class A, class Q, class R> std::ptrdiff_t qr(const A& a, Q&& q, R&& r, infos info = {})
{
    const auto av = detail::source(a);
    const auto qv = detail::view(q);
    const auto rv = detail::view(r);
    const std::ptrdiff_t m = av.rows(), n = av.cols();
    return detail::call<detail::element<A>>("kesl_qr", kesl_qr_32f, kesl_qr_64f, std::array{m, n}, qv.count(), info,
                                            detail::matrix(av, m, n, "a"), detail::matrix(qv, m, n, "q"),
                                            detail::matrix(rv, n, n, "r"));
}

template <class A, class B, class X> std::ptrdiff_t lstsq(const A& a, const B& b, X&& x, infos info = {})
{
    const auto av = detail::source(a);
    const auto bv = detail::source(b);
    const auto xv = detail::view(x);
    const std::ptrdiff_t m = av.rows(), n = av.cols(), k = bv.cols();
    return detail::call<detail::element<A>>("kesl_lstsq", kesl_lstsq_32f, kesl_lstsq_64f, std::array{m, n, k}, xv.count(),
                                            info, detail::matrix(av, m, n, "a"), detail::matrix(bv, m, k, "b"),
                                            detail::matrix(xv, n, k, "x"));
}

// ---- Eigenproblems

template <class A, class W> std::ptrdiff_t eigvalsh(const A& a, W&& w, infos info = {})
{
    const auto av = detail::source(a);
    const auto wv = detail::view(w);
    const std::ptrdiff_t n = av.rows();
    return detail::call<detail::element<A>>("kesl_eigvalsh", kesl_eigvalsh_32f, kesl_eigvalsh_64f, std::array{n}, wv.count(),
                                            info, detail::matrix(av, n, n, "a"), detail::vector(wv, n, "w"));
}

template <class A, class W, class V> std::ptrdiff_t eigh(const A& a, W&& w, V&& v, infos info = {})
{
    const auto av = detail::source(a);
    const auto wv = detail::view(w);
    const auto vv = detail::view(v);
    const std::ptrdiff_t n = av.rows();
    return detail::call<detail::element<A>>("kesl_eigh", kesl_eigh_32f, kesl_eigh_64f, std::array{n}, wv.count(), info,
                                            detail::matrix(av, n, n, "a"), detail::vector(wv, n, "w"),
                                            detail::matrix(vv, n, n, "v"));
}

// Real and imaginary parts apart, or complex eigenvalues.
template <class A, class WR, class WI, std::enable_if_t<!detail::is_complex<WR>, int> = 0>
std::ptrdiff_t eigvals(const A& a, WR&& wr, WI&& wi, infos info = {})
{
    const auto av = detail::source(a);
    const auto wrv = detail::view(wr);
    const auto wiv = detail::view(wi);
    const std::ptrdiff_t n = av.rows();
    return detail::call<detail::element<A>>("kesl_eigvals", kesl_eigvals_32f, kesl_eigvals_64f, std::array{n}, wrv.count(),
                                            info, detail::matrix(av, n, n, "a"), detail::vector(wrv, n, "wr"),
                                            detail::vector(wiv, n, "wi"));
}
template <class A, class W, std::enable_if_t<detail::is_complex<W>, int> = 0>
std::ptrdiff_t eigvals(const A& a, W&& w, infos info = {})
{
    const auto wv = detail::view(w);
    return eigvals(a, wv.real(), wv.imag(), info);
}

// vr, vl: right and left vectors as kesl.h lays them out, the parts of a pair in two columns; nullptr: those are not wanted.
template <class A, class WR, class WI, class VR, class VL, std::enable_if_t<!detail::is_complex<WR>, int> = 0>
std::ptrdiff_t eig(const A& a, WR&& wr, WI&& wi, VR&& vr, VL&& vl, infos info = {})
{
    const auto av = detail::source(a);
    const auto wrv = detail::view(wr);
    const auto wiv = detail::view(wi);
    const std::ptrdiff_t n = av.rows();
    const auto vrv = detail::wanted<detail::element<A>>(vr, wrv.count(), n),
               vlv = detail::wanted<detail::element<A>>(vl, wrv.count(), n);
    return detail::call<detail::element<A>>("kesl_eig", kesl_eig_32f, kesl_eig_64f, std::array{n}, wrv.count(), info,
                                            detail::matrix(av, n, n, "a"), detail::vector(wrv, n, "wr"),
                                            detail::vector(wiv, n, "wi"), detail::matrix(vrv, n, n, "vr"),
                                            detail::matrix(vlv, n, n, "vl"));
}
template <class A, class W, class VR, class VL, std::enable_if_t<detail::is_complex<W>, int> = 0>
std::ptrdiff_t eig(const A& a, W&& w, VR&& vr, VL&& vl, infos info = {})
{
    const auto wv = detail::view(w);
    return eig(a, wv.real(), wv.imag(), vr, vl, info);
}

// ---- Singular values

template <class A, class S> std::ptrdiff_t svdvals(const A& a, S&& s, infos info = {})
{
    const auto av = detail::source(a);
    const auto sv = detail::view(s);
    const std::ptrdiff_t m = av.rows(), n = av.cols(), p = m < n ? m : n;
    return detail::call<detail::element<A>>("kesl_svdvals", kesl_svdvals_32f, kesl_svdvals_64f, std::array{m, n}, sv.count(),
                                            info, detail::matrix(av, m, n, "a"), detail::vector(sv, p, "s"));
}

template <class A, class U, class S, class VT> std::ptrdiff_t svd(const A& a, U&& u, S&& s, VT&& vt, infos info = {})
{
    const auto av = detail::source(a);
    const auto uv = detail::view(u);
    const auto sv = detail::view(s);
    const auto vtv = detail::view(vt);
    const std::ptrdiff_t m = av.rows(), n = av.cols(), p = m < n ? m : n;
    return detail::call<detail::element<A>>("kesl_svd", kesl_svd_32f, kesl_svd_64f, std::array{m, n}, uv.count(), info,
                                            detail::matrix(av, m, n, "a"), detail::matrix(uv, m, p, "u"),
                                            detail::vector(sv, p, "s"), detail::matrix(vtv, p, n, "vt"));
}

} // namespace kesl

#endif
