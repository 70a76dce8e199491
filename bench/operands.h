// Operands of the functions in every layout, and the views through which alternatives see them.
#pragma once
#include "row.h"

#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <Eigen/Dense>
#include <memory>
#include <new>
#include <tuple>
#include <type_traits>
#include <vector>

namespace bench {

// ---- Layouts

template <Layout L> inline constexpr bool isPlanes = L == Layout::soa || L == Layout::P; // one run of objects per element

// ---- Operands. The letters are those of the function names; out<> marks what is written.

template <bool Array, bool Vector, int R, int C> struct Shape {
    static constexpr bool array = Array, vector = Vector, buffer = false, output = false, dense = false;
    static constexpr int sizes = 0; // behind the operand
    static constexpr int rows = R, cols = C;
};
template <int R, int C> struct m : Shape<false, false, R, C> {};
template <int R, int C> struct ma : Shape<true, false, R, C> {};
template <int C> struct v : Shape<false, true, 1, C> {};
template <int C> struct va : Shape<true, true, 1, C> {};
template <int C> struct scratch : Shape<false, true, 1, C> {
    static constexpr bool buffer = true;
};
template <class Op> struct out : Op {
    static constexpr bool output = true;
};
// An operand with sizes of its own behind it: width and height, or len; and with its order.
template <class Op> struct withSizes : Op {
    static constexpr int sizes = Op::vector ? 1 : 2;
};
template <class Op> struct withOrder : Op {
    static constexpr int sizes = 1;
};
// Objects that lie packed in every layout, without strides among the arguments.
template <class Op> struct tight : Op {
    static constexpr bool dense = true;
};
template <int C> struct results : out<tight<va<C>>> {};
struct result : results<1> {};

// ---- Views: element (i, j) of object k, as a user's own code would reach it

template <class T, Layout L, int R, int C> struct View {
    static constexpr int rows = R, cols = C, pitch = L == Layout::gapped ? C + 1 : C;
    static constexpr bool planes = isPlanes<L>, contiguous = L == Layout::packed;
    using Matrix = Eigen::Matrix<T, R, C, R != 1 && C == 1 ? Eigen::ColMajor : Eigen::RowMajor>;

    T* data;
    T* const* list;
    std::int64_t count;

    T* object(std::int64_t k) const { return L == Layout::L ? list[k] : data + k * (R * pitch); }
    T* plane(int i, int j) const { return L == Layout::P ? list[i * C + j] : data + (i * C + j) * count; }
    T& operator()(std::int64_t k, int i, int j) const
    {
        if constexpr (planes) return plane(i, j)[k];
        return object(k)[i * pitch + j];
    }

    auto eigen(std::int64_t k) const // object k as Eigen sees it; where its elements lie apart, a copy
    {
        if constexpr (planes) {
            Matrix object;
            for (int i = 0; i < R; ++i)
                for (int j = 0; j < C; ++j) object(i, j) = (*this)(k, i, j);
            return object;
        } else {
            return Eigen::Map<Matrix, Eigen::Unaligned, Eigen::OuterStride<pitch>>(object(k));
        }
    }
    void assign(std::int64_t k, const auto& value) const
    {
        if constexpr (planes) {
            const Matrix object = value;
            for (int i = 0; i < R; ++i)
                for (int j = 0; j < C; ++j) (*this)(k, i, j) = object(i, j);
        } else {
            eigen(k) = value;
        }
    }
};

// Sizes and strides known only at run time: what a function that is not inlined sees.
template <class T> struct Strided {
    static constexpr bool planes = false, contiguous = false;
    T* data;
    std::int64_t stride0, stride1, stride2;
    int rows, cols;
    T& operator()(std::int64_t k, int i, int j) const { return data[k * stride0 + i * stride1 + j * stride2]; }
};

// A single object, read once before a loop, so that no store of the loop can seem to change it.
template <class B> auto kept(const B& b)
{
    if constexpr (requires { B::pitch; }) {
        typename B::Matrix object = b.eigen(0);
        return [object](int, int i, int j) { return object(i, j); };
    } else {
        return [b](int, int i, int j) { return b(0, i, j); };
    }
}

// What an alternative may ask of a view: objects that lie in one piece, and without a gap between them.
template <class V>
concept InOnePiece = !V::planes;
template <class V>
concept Packed = V::contiguous;
template <int N> using Order = std::integral_constant<int, N>; // for what exists at one order only

// Loops over all elements in the order in which they lie.
template <class D> void elements(Range range, const D& d, auto body)
{
    if constexpr (D::planes) {
        for (int i = 0; i < d.rows; ++i)
            for (int j = 0; j < d.cols; ++j)
#pragma GCC ivdep
                for (int k = range.begin; k < range.end; ++k) body(k, i, j);
    } else {
#pragma GCC ivdep
        for (int k = range.begin; k < range.end; ++k)
            for (int i = 0; i < d.rows; ++i)
                for (int j = 0; j < d.cols; ++j) body(k, i, j);
    }
}

// ---- Memory of one operand

struct Free {
    void operator()(void* p) const { std::free(p); }
};

template <class T, class Op, Layout RowLayout> struct Operand {
    // A single object lies packed, whatever the array beside it does; P functions reach it by pointers too.
    static constexpr Layout L = Op::array && !Op::dense ? RowLayout : Layout::packed;
    static constexpr int R = Op::rows, C = Op::cols;
    static constexpr bool array = Op::array, output = Op::output, buffer = Op::buffer;
    using AView = View<T, L, R, C>;

    std::int64_t count;
    std::size_t bytes;
    std::unique_ptr<void, Free> memory;
    T* data;
    std::vector<T*> list;

    std::int64_t stride0() const { return isPlanes<L> ? 1 : R * AView::pitch; } // in elements
    std::int64_t stride1() const { return isPlanes<L> ? C * count : AView::pitch; }
    std::int64_t stride2() const { return isPlanes<L> ? count : 1; }

    // The bases are staggered, so that source and destination do not fall on the same addresses modulo 4 KiB.
    Operand(int objects, int index) : count(Op::array ? objects : 1)
    {
        bytes = static_cast<std::size_t>(count * R * AView::pitch) * sizeof(T);
        const std::size_t stagger = 1088 * static_cast<std::size_t>(index + 1);
        memory.reset(std::aligned_alloc(4096, (bytes + stagger + 4095) / 4096 * 4096));
        if (!memory) throw std::bad_alloc();
        data = reinterpret_cast<T*>(static_cast<char*>(memory.get()) + stagger);
        poison();
        if constexpr (L == Layout::L)
            for (std::int64_t k = 0; k < count; ++k) list.push_back(data + k * stride0());
        if constexpr (RowLayout == Layout::P)
            for (int e = 0; e < R * C; ++e) list.push_back(data + e / C * stride1() + e % C * stride2());
    }

    void poison() { std::memset(static_cast<void*>(data), 0xff, bytes); } // NaN in every element
    T& at(std::int64_t k, int i, int j) { return data[k * stride0() + i * stride1() + j * stride2()]; }
    AView view() const { return {data, list.data(), count}; }
    Strided<T> strided() const { return {data, stride0(), stride1(), stride2(), R, C}; }

    // The operand's run of arguments in a call that begins at object k; alone: in a function on one object.
    template <bool alone> auto arguments(int k) const
    {
        if constexpr (Op::sizes == 1) return std::tuple_cat(located<alone>(k), std::tuple{C});
        else if constexpr (Op::sizes == 2) return std::tuple_cat(located<alone>(k), std::tuple{C, R});
        else return located<alone>(k);
    }
    template <bool alone> auto located(int k) const
    {
        const auto byte = [](std::int64_t elements) { return static_cast<int>(elements * std::int64_t{sizeof(T)}); };
        const int s0 = byte(stride0()), s1 = byte(stride1()), s2 = byte(stride2());
        T* const p = data + (Op::array && L != Layout::P ? k * stride0() : 0);
        if constexpr (Op::buffer) return std::tuple{data};
        else if constexpr (Op::dense) return std::tuple{p};
        else if constexpr (RowLayout == Layout::P && Op::array && !alone)
            return std::tuple{static_cast<T* const*>(list.data()), byte(k * stride0()), s0};
        else if constexpr (RowLayout == Layout::P)
            return std::tuple{static_cast<T* const*>(list.data()), byte(Op::array ? k * stride0() : 0)};
        else if constexpr (L == Layout::L && Op::vector) return std::tuple{list.data() + k, 0, s2};
        else if constexpr (L == Layout::L) return std::tuple{list.data() + k, 0, s1, s2};
        else if constexpr (Op::array && !alone && Op::vector) return std::tuple{p, s0, s2};
        else if constexpr (Op::array && !alone) return std::tuple{p, s0, s1, s2};
        else if constexpr (Op::vector) return std::tuple{p, s2};
        else return std::tuple{p, s1, s2};
    }
};

} // namespace bench
