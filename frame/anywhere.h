// Operands whose form is known at run time only. A loop over them exists once, and not again for each form of each operand.
#pragma once
#include "frame/blocks.h"

namespace kesl {

// Places in a row: place x is that of pointer x * pitch of a list, and so many bytes from there.
template <class T> struct Line {
    T* const* list;
    std::int64_t pitch, shift, stride;
    T* operator()(std::int64_t x) const { return moved(list[x * pitch], shift + x * stride); }
    Line operator+(int elements) const { return {list, pitch, shift + elements * int(sizeof(T)), stride}; }
    Line from(std::int64_t x) const { return {list + x * pitch, pitch, shift + x * stride, stride}; }
    bool isListed() const { return pitch == 1 && stride == 0; }
    Listed<T> listed() const { return {list, shift}; }
    Spaced<T> spaced() const { return {moved(*list, shift), stride}; } // if the pitch is 0
};

// An operand. Whether its pointers are those of objects, of elements, or just one: a pitch is how far one
// goes in the list, from object to object, from row to row, and from element to element; a stride how far in bytes.
template <class T> struct Anywhere {
    T* const* list;
    std::int64_t shift;
    std::int64_t pitch0, pitch1, pitch2, stride0, stride1, stride2;

    T* operator()(std::int64_t k, std::int64_t i, std::int64_t j) const
    {
        return moved(list[k * pitch0 + i * pitch1 + j * pitch2], shift + k * stride0 + i * stride1 + j * stride2);
    }
    Line<T> objects(std::int64_t i, std::int64_t j) const
    {
        return {list + i * pitch1 + j * pitch2, pitch0, shift + i * stride1 + j * stride2, stride0};
    }
    Line<T> row(std::int64_t k, std::int64_t i) const
    {
        return {list + k * pitch0 + i * pitch1, pitch2, shift + k * stride0 + i * stride1, stride2};
    }
    Anywhere transposed() const { return {list, shift, pitch0, pitch2, pitch1, stride0, stride2, stride1}; }

    bool isSideBySide() const { return pitch0 == 0 && stride0 == sizeof(T); }
    bool rowsAreContiguous() const { return pitch1 == 0 && pitch2 == 0 && stride2 == sizeof(T); }
    bool isRecord(int height, int width) const
    {
        return rowsAreContiguous() && (height == 1 || stride1 == width * std::int64_t(sizeof(T)));
    }
    bool isPacked(int height, int width, int count) const
    {
        const std::int64_t bytes = std::int64_t(height) * width * int(sizeof(T));
        return isRecord(height, width) && (count == 1 || (pitch0 == 0 && stride0 == bytes));
    }
};

// An operand as it is stored. It must outlive what is made of it; the sizes are those of the matrix as it is read.
template <class T, Kind K, bool array, Form F>
Anywhere<T> stored(const Operand<T, K, array, F>& o, [[maybe_unused]] int height, [[maybe_unused]] int width)
{
    using O = Operand<T, K, array, F>;
    constexpr bool constants = K == Kind::constants, ofElements = F == P && !constants;
    Anywhere<T> a = {};
    if constexpr (O::lists) a.list = o.p, a.shift = o.shift;
    else a.list = &o.p;
    if constexpr (ofElements) a.pitch1 = K == Kind::transposed ? height : width, a.pitch2 = 1;
    if constexpr (array && inL(F)) a.pitch0 = 1;
    if constexpr (O::has0) a.stride0 = o.stride0;
    if constexpr (O::has1) a.stride1 = o.stride1;
    if constexpr (!ofElements && !constants) a.stride2 = o.stride2;
    return a;
}
// ... and as it is read.
template <class T, Kind K, bool array, Form F> Anywhere<T> anywhere(const Operand<T, K, array, F>& o, int height, int width)
{
    const Anywhere<T> a = stored(o, height, width);
    return K == Kind::transposed ? a.transposed() : a;
}

// The addresses of all elements of the first object.
template <class T> KESL_ONCE void findPlanes(T** p, int height, int width, const Anywhere<T>& o)
{
    for (int i = 0; i < height; ++i)
        for (int j = 0; j < width; ++j) *p++ = o(0, i, j);
}
template <int h, int w, class T> struct Planes {
    T* p[h * w];
    explicit Planes(const Anywhere<T>& o) { findPlanes(p, h, w, o); }
};

} // namespace kesl
