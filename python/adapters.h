// kesl's functions where NumPy's operands are others than theirs: vectors for matrices, complex numbers for pairs.
#pragma once
#include <complex>
#include <kesl.h>
#include <limits>
#include <type_traits>

template <class T, class F, class D> constexpr auto choose([[maybe_unused]] F f, [[maybe_unused]] D d)
{
    if constexpr (std::is_same_v<T, float>) return f;
    else return d;
}

// A vector is a matrix of one column.
template <class T> ptrdiff_t solveVector(ptrdiff_t n, ptrdiff_t count, const T* a, ptrdiff_t a0, ptrdiff_t a1, ptrdiff_t a2,
                                         const T* b, ptrdiff_t b0, ptrdiff_t b1, T* x, ptrdiff_t x0, ptrdiff_t x1, int* info)
{
    const auto solve = choose<T>(kesl_solve_32f, kesl_solve_64f);
    return solve(n, 1, count, a, a0, a1, a2, b, b0, b1, sizeof(T), x, x0, x1, sizeof(T), info);
}

template <class T> ptrdiff_t matvec(ptrdiff_t m, ptrdiff_t n, ptrdiff_t count, const T* a, ptrdiff_t a0, ptrdiff_t a1,
                                    ptrdiff_t a2, const T* b, ptrdiff_t b0, ptrdiff_t b1, T* x, ptrdiff_t x0, ptrdiff_t x1,
                                    int* info)
{
    const auto matmul = choose<T>(kesl_matmul_32f, kesl_matmul_64f);
    return matmul(m, n, 1, count, a, a0, a1, a2, b, b0, b1, sizeof(T), x, x0, x1, sizeof(T), info);
}

// Or of one row.
template <class T> ptrdiff_t vecmat(ptrdiff_t m, ptrdiff_t n, ptrdiff_t count, const T* a, ptrdiff_t a0, ptrdiff_t a1,
                                    const T* b, ptrdiff_t b0, ptrdiff_t b1, ptrdiff_t b2, T* x, ptrdiff_t x0, ptrdiff_t x1,
                                    int* info)
{
    const auto matmul = choose<T>(kesl_matmul_32f, kesl_matmul_64f);
    return matmul(1, m, n, count, a, a0, sizeof(T), a1, b, b0, b1, b2, x, x0, sizeof(T), x1, info);
}

// With a size, that libraries which try ufuncs on arrays of size 1 may do so; kesl_cross has none.
template <class T> ptrdiff_t cross(ptrdiff_t n, ptrdiff_t count, const T* a, ptrdiff_t a0, ptrdiff_t a1, const T* b,
                                   ptrdiff_t b0, ptrdiff_t b1, T* c, ptrdiff_t c0, ptrdiff_t c1, int* info)
{
    if (n != 3) return -1;
    return choose<T>(kesl_cross_32f, kesl_cross_64f)(count, a, a0, a1, b, b0, b1, c, c0, c1, info);
}

// Real and imaginary parts side by side.
template <class T> ptrdiff_t eigvals(ptrdiff_t n, ptrdiff_t count, const T* a, ptrdiff_t a0, ptrdiff_t a1, ptrdiff_t a2,
                                     std::complex<T>* w, ptrdiff_t w0, ptrdiff_t w1, int* info)
{
    T* parts = reinterpret_cast<T*>(w);
    return choose<T>(kesl_eigvals_32f, kesl_eigvals_64f)(n, count, a, a0, a1, a2, parts, w0, w1, parts + 1, w0, w1, info);
}

// The real parts of v hold vectors as kesl_eig gives them, the columns of a pair the parts of its vector: writes complex ones.
template <class T>
void expand(ptrdiff_t n, const std::complex<T>* w, ptrdiff_t w1, std::complex<T>* v, ptrdiff_t v1, ptrdiff_t v2)
{
    const auto at = [](auto* p, ptrdiff_t bytes) -> auto& {
        return *reinterpret_cast<decltype(p)>(reinterpret_cast<ptrdiff_t>(p) + bytes);
    };
    for (ptrdiff_t j = 0; j < n; ++j) {
        const T imaginary = at(w, j * w1).imag();
        const bool pair = imaginary > 0 && j + 1 < n;
        for (ptrdiff_t i = 0; i < n; ++i) {
            auto& x = at(v, i * v1 + j * v2);
            if (!pair) {
                x.imag(imaginary == 0 ? T(0) : x.real()); // NaN where the object failed
                continue;
            }
            auto& y = at(v, i * v1 + (j + 1) * v2);
            x.imag(y.real());
            y = std::conj(x);
        }
        j += pair;
    }
}

template <class T> ptrdiff_t eig(ptrdiff_t n, ptrdiff_t count, const T* a, ptrdiff_t a0, ptrdiff_t a1, ptrdiff_t a2,
                                 std::complex<T>* w, ptrdiff_t w0, ptrdiff_t w1, std::complex<T>* v, ptrdiff_t v0,
                                 ptrdiff_t v1, ptrdiff_t v2, int* info)
{
    T *parts = reinterpret_cast<T*>(w), *columns = reinterpret_cast<T*>(v);
    const ptrdiff_t result =
        choose<T>(kesl_eig_32f, kesl_eig_64f)(n, count, a, a0, a1, a2, parts, w0, w1, parts + 1, w0, w1, columns, v0, v1, v2,
                                              static_cast<T*>(nullptr), 0, 0, 0, info);
    for (ptrdiff_t k = 0; result >= 0 && k < count; ++k)
        expand(n, reinterpret_cast<std::complex<T>*>(reinterpret_cast<char*>(w) + k * w0), w1,
               reinterpret_cast<std::complex<T>*>(reinterpret_cast<char*>(v) + k * v0), v1, v2);
    return result;
}
