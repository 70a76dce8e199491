// Eigenvalues that stand alone in their row or column (Parlett & Reinsch): rows and columns are exchanged so that the former
// come last and the latter first. What remains is treated; of a triangular matrix, nothing.
#pragma once
#include "stacks/tile.h"

#include <bit>
#include <cstdint>

namespace kesl::stacks {

// Row and column place[i] of the matrix stand at i; those that remain, from first to last. Nothing has moved if not `any`.
template <class V, class N> struct Isolated {
    bool any;
    IndexOf<V> first, last, place[most<N>];
};

// Whether a lane has a row or a column of zeros beside the diagonal.
template <class V, class N> bool isReducible(const Tile<V, N, N>& a)
{
    IndexOf<V> found{};
    for (int i = 0; i < a.n; ++i) {
        IndexOf<V> row{}, column{}; // the bits of all its elements
        for (int j = 0; j < a.n; ++j)
            if (j != i) row = row | IndexOf<V>(a(i, j)), column = column | IndexOf<V>(a(j, i));
        found = found | ((row << 1) == 0) | ((column << 1) == 0);
    }
    return any(found);
}

template <class V, class N> [[gnu::noinline]] void exchange(Tile<V, N, N>& a, Isolated<V, N>& isolated, int l)
{
    const int n = a.n;
    std::uint32_t rows[most<N>]{}, columns[most<N>]{}, rest = std::uint32_t(~std::uint64_t(0) >> (64 - n));
    ElementOf<V> copy[most<N> * most<N>];
    for (int i = 0; i < n; ++i)
        for (int j = 0; j < n; ++j) {
            copy[i * n + j] = a(i, j)[l];
            if (i != j && a(i, j)[l] != 0) rows[i] |= 1u << j, columns[j] |= 1u << i;
        }
    int first = 0, last = n - 1, order[most<N>];
    // Takes one of the rest whose `others` are none of the rest.
    const auto take = [&](const std::uint32_t* others, int& to, int step) {
        for (int i = n - 1; i >= 0; --i)
            if ((rest >> i & 1) && !(others[i] & rest)) {
                order[to] = i, to += step, rest &= ~(1u << i);
                return true;
            }
        return false;
    };
    while (take(rows, last, -1)) {}
    while (take(columns, first, 1)) {}
    for (int to = first; rest; rest &= rest - 1) order[to++] = std::countr_zero(rest);

    isolated.first[l] = first, isolated.last[l] = last;
    for (int i = 0; i < n; ++i) {
        isolated.place[i][l] = order[i];
        for (int j = 0; j < n; ++j) a(i, j)[l] = copy[order[i] * n + order[j]];
    }
}

template <class V, class N> void isolate(Tile<V, N, N>& a, Isolated<V, N>& isolated)
{
    isolated.first = IndexOf<V>{}, isolated.last = index<V>(a.n - 1);
    isolated.any = a.n > 1 && isReducible(a);
    if (!isolated.any) return;
    for (int i = 0; i < a.n; ++i) isolated.place[i] = index<V>(i);
    for (int l = 0; l < lanes<V>; ++l) exchange(a, isolated, l);
}

// The rows of x where those of the matrix were.
template <class V, class N> [[gnu::noinline]] void putBack(const Isolated<V, N>& isolated, Tile<V, N, N>& x)
{
    const Tile<V, N, N> moved = x;
    for (int i = 0; i < x.n; ++i)
        for (int l = 0; l < lanes<V>; ++l)
            for (int j = 0; j < x.n; ++j) x(int(isolated.place[i][l]), j)[l] = moved(i, j)[l];
}

} // namespace kesl::stacks
