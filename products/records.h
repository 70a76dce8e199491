// Square products of order 3 to 6 of matrices with contiguous rows: object by object, and one tall matrix.
#pragma once
#include "products/rows.h"

namespace kesl {

// An array as its objects, and a single factor as a block: it is read once.
template <int n, class O> auto objectsOrBlock(const O& o)
{
    if constexpr (O::isArray) return rowsAtOf(o);
    else return load<n, n>(o, Objects<typename O::Element>{0});
}

// dst(k) = a(k) * b(k), by rows. All of b is read before anything is stored.
template <bool fromZero, int n, class T, class A, class B> KESL_ONCE void productsByRows(A a, B b, auto dst, int count)
{
    constexpr bool oneA = std::is_same_v<A, Block<T, n, n>>, oneB = std::is_same_v<B, Block<T, n, n>>;
    Row<T, n> rows[n];
    const auto readB = [&](const auto& from) {
#pragma GCC unroll 8
        for (int i = 0; i < n; ++i)
            if constexpr (requires { from.row(i); }) rows[i] = Row<T, n>::from(from.row(i));
            else rows[i] = Row<T, n>::gathered([&](int j) { return from(i, j); });
    };
    const auto product = [&](const auto& from, int k) {
        if constexpr (!oneB) readB(rowsOf(b, k));
        const auto to = rowsOf(dst, k);
#pragma GCC unroll 8
        for (int i = 0; i < n; ++i) rowTimes<fromZero, 0>(from, i, rows).to(to.row(i));
    };
    if constexpr (oneB) readB(b);
    if constexpr (oneA && n * Row<T, n>::pieces < 12) { // in registers; otherwise it is read where it lies
        const Block<T, n, n> kept = a;
        for (int k = 0; k < count; ++k) product(kept, k);
    } else
        for (int k = 0; k < count; ++k)
            if constexpr (oneA) product(a, k);
            else product(rowsOf(a, k), k);
}

// The rows of a tall matrix times b.
template <int n, class T> [[gnu::noinline]] void tallProducts(const T* a, const Block<T, n, n>& b, T* dst, std::int64_t rows)
{
    tallProduct<false, 0, n>(a, b, dst, rows);
}

// ---- Compiled once (contiguous_32f.cpp, contiguous_64f.cpp).
// clang-format off
#define KESL_TALL_FUNCTIONS(how, T)                                                                                 \
    KESL_TALL_FUNCTION(how, T, 3) KESL_TALL_FUNCTION(how, T, 4) KESL_TALL_FUNCTION(how, T, 5) KESL_TALL_FUNCTION(how, T, 6)
#define KESL_TALL_FUNCTION(how, T, n) how template void tallProducts<n>(const T*, const Block<T, n, n>&, T*, std::int64_t);
KESL_TALL_FUNCTIONS(extern, float)
KESL_TALL_FUNCTIONS(extern, double)
// clang-format on

} // namespace kesl
