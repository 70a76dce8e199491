// Views: one object in memory, seen as element (i, j).
#pragma once
#include "frame/compiler.h"

#include <cstddef>
#include <cstdint>
#include <type_traits>

namespace kesl {

template <class T> T* moved(T* p, std::int64_t bytes)
{
    using Byte = std::conditional_t<std::is_const_v<T>, const char, char>;
    return reinterpret_cast<T*>(reinterpret_cast<Byte*>(p) + bytes);
}

// Rows that are contiguous runs.
template <class T> struct Rows {
    T* p;
    std::int64_t stride1;
    T* row(int i) const { return moved(p, i * stride1); }
    T& operator()(int i, int j) const { return row(i)[j]; }
};
template <class T> Rows(T*, std::int64_t) -> Rows<T>;

// Any distance between elements.
template <class T> struct Grid {
    T* p;
    std::int64_t stride1, stride2;
    T& operator()(std::int64_t i, std::int64_t j) const { return *moved(p, i * stride1 + j * stride2); }
};

// A pointer for each element.
template <class T> struct Scattered {
    T* const* list;
    std::int64_t shift;
    int pitch;
    T& operator()(int i, int j) const { return *moved(list[std::int64_t(i) * pitch + j], shift); }
};

// Any of these with rows and columns exchanged.
template <class View> struct Transposed {
    View stored;
    auto& operator()(int i, int j) const { return stored(j, i); }
};
template <class View> Transposed(View) -> Transposed<View>;

// The same value at each element.
template <class T> struct Same {
    T x;
    Same row(int) const { return *this; }
    T operator()(int, int) const { return x; }
};
template <class T> Same(T) -> Same<T>;

} // namespace kesl
