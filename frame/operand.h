// Operands: what an argument group is to the frame and to a kernel. The only place where an address is computed.
#pragma once
#include "frame/views.h"

#include <tuple>

namespace kesl {

// The kernels of a function: standard and L layout, each with contiguous rows or with any stride2, and P.
enum class Form { S, S2, L, LS2, P };
using enum Form;

constexpr bool inL(Form f) { return f == L || f == LS2; }
constexpr bool contiguousRows(Form f) { return f == S || f == L; }

// What every argument answers, so that the frame can ask a whole list at once. Sizes and the like override what concerns
// them; an operand, being an aggregate, has these answers without the base.
struct Argument {
    static constexpr Form form = S;
    static constexpr bool isArray = false, isSource = false;
    bool pointerOk() const { return true; }
    bool countOk() const { return true; }
    bool sizeOk() const { return true; }
    bool stridesOk() const { return true; } // stride1 and stride2
    bool stride0Ok() const { return true; }
    bool shiftOk() const { return true; }
    bool rowsAreContiguous() const { return true; }
    std::tuple<> sizes() const { return {}; }  // what a work measure and a scratch size are made of
    bool sliceable(int) const { return true; } // into slices that begin at any of so many objects
};

enum class Kind { matrix, transposed, vector, constants };

// A matrix, a vector or an array of these or of constants, just as its argument group describes it.
template <class T, Kind K, bool array, Form F> struct Operand {
    static constexpr Kind kind = K;
    static constexpr int elementSize = sizeof(T);
    static constexpr bool lists = (F == P && kind != Kind::constants) || (array && inL(F));
    static constexpr bool has0 = array && !inL(F);
    static constexpr bool has1 = F != P && (kind == Kind::matrix || kind == Kind::transposed);
    static constexpr bool has2 = (F == S2 || F == LS2) && kind != Kind::constants;
    static constexpr bool isArray = array, isSource = std::is_const_v<T>;
    static constexpr Form form = F;
    using Element = std::remove_const_t<T>;
    using Pointer = std::conditional_t<lists, T* const*, T*>;

    Pointer p;
    int shift = 0, stride0 = 0, stride1 = 0, stride2 = sizeof(T);

    // The same operand in form G, which must be true of it.
    template <Form G> Operand<T, K, array, G> as() const
    {
        return {.p = p, .shift = shift, .stride0 = stride0, .stride1 = stride1, .stride2 = stride2};
    }

    // ---- the checks
    static constexpr bool wholeElements(int bytes) { return (bytes & int(sizeof(T) - 1)) == 0; }
    static constexpr bool good(int stride) { return stride >= 1 && wholeElements(stride); }
    bool pointerOk() const { return p != nullptr; }
    bool countOk() const { return true; }
    bool sizeOk() const { return true; }
    bool stride0Ok() const { return !has0 || good(stride0); }
    bool stridesOk() const { return (!has1 || good(stride1)) && (!has2 || good(stride2)); }
    bool shiftOk() const { return !lists || (shift >= 0 && wholeElements(shift)); }
    bool rowsAreContiguous() const { return stride2 == int(sizeof(T)); }
    std::tuple<> sizes() const { return {}; }

    // ---- this operand in the slice that begins at object `start`; in P the shift is an argument of 32 bits
    bool sliceable(int count) const
    {
        return !(array && lists && F == P) || shift + std::int64_t(count - 1) * stride0 <= INT32_MAX;
    }
    Operand slice(int start, int, void*) const
    {
        Operand o = *this;
        if constexpr (array && lists && F == P) o.shift = shift + start * stride0;
        else if constexpr (array && lists) o.p += start;
        else if constexpr (array) o.p = moved(p, std::int64_t(start) * stride0);
        return o;
    }

    // ---- its arguments in the list of kernel form G
    template <Form G> auto list() const
    {
        constexpr auto given = [](auto has, int x) {
            if constexpr (has) return std::tuple(x);
            else return std::tuple();
        };
        return std::tuple_cat(std::tuple(p), given(std::bool_constant<lists>{}, shift),
                              given(std::bool_constant<has0>{}, stride0), given(std::bool_constant<has1>{}, stride1),
                              given(std::bool_constant<(has2 && !contiguousRows(G))>{}, stride2));
    }

    // ---- object k as a view of height by width elements, the sizes being those of the matrix as it is read
    auto object(int k, int height, int width) const
    {
        if constexpr (kind == Kind::constants) return Same<Element>{*address(k)};
        else if constexpr (kind == Kind::transposed) return Transposed{stored(k, height)};
        else return stored(k, width);
    }
    // The same without the transposition. `pitch` is the row length of a P list.
    auto stored(int k, [[maybe_unused]] int pitch) const
    {
        if constexpr (lists && F == P) return Scattered<T>{p, shift + std::int64_t(k) * stride0, pitch};
        else if constexpr (contiguousRows(F)) return Rows<T>{address(k), stride1};
        else return Grid<T>{address(k), stride1, stride2};
    }
    // The first element of object k, where it does not depend on a list of elements.
    T* address(int k) const requires(!(lists && F == P))
    {
        if constexpr (lists) return moved(p[k], shift);
        else return moved(p, std::int64_t(k) * stride0);
    }
    // Object k as a single operand.
    auto single([[maybe_unused]] int k) const requires(!(array && F == P))
    {
        constexpr Form alone = F == L ? S : F == LS2 ? S2 : F;
        if constexpr (!array) return *this;
        else return Operand<T, kind, false, alone>{.p = address(k), .stride1 = stride1, .stride2 = stride2};
    }
};

template <class T, Form F> using m = Operand<T, Kind::matrix, false, F>;
template <class T, Form F> using ma = Operand<T, Kind::matrix, true, F>;
template <class T, Form F> using t = Operand<T, Kind::transposed, false, F>;
template <class T, Form F> using ta = Operand<T, Kind::transposed, true, F>;
template <class T, Form F> using v = Operand<T, Kind::vector, false, F>;
template <class T, Form F> using va = Operand<T, Kind::vector, true, F>;
template <class T, Form F> using ca = Operand<T, Kind::constants, true, F>;

// ---- What is known of an operand.
template <class O> constexpr bool isTransposed = O::kind == Kind::transposed;
template <class O> constexpr bool isConstant = O::kind == Kind::constants;
template <class O> constexpr bool isByValue = isConstant<O> && !O::isArray;
template <class O> constexpr bool isArrayOfObjects = O::isArray && !isConstant<O>;

// An object is a record if there is no gap between its rows, as it is stored. The sizes are those of the matrix as it is
// read.
template <class O> bool isRecord(const O& o, int height, int width)
{
    if constexpr (isConstant<O> || O::kind == Kind::vector) return true;
    else {
        const int rows = isTransposed<O> ? width : height, rowLength = isTransposed<O> ? height : width;
        return rows == 1 || o.stride1 == std::int64_t(rowLength) * O::elementSize;
    }
}
// An array is one run if there is no gap between its objects either, and none is transposed. Single operands and constants
// suit any array.
template <class O> bool isPacked(const O& o, int height, int width)
{
    if constexpr (!isArrayOfObjects<O>) return true;
    else if (isTransposed<O> && (height > 1 || width > 1)) return false;
    else return isRecord(o, height, width) && o.stride0 == std::int64_t(height) * width * O::elementSize;
}
// In a structure of arrays, the objects' values of an element lie side by side.
template <class O> bool isSideBySide(const O& o)
{
    if constexpr (!O::isArray) return true;
    else return !inL(O::form) && o.stride0 == int(sizeof(typename O::Element));
}

// A constant by value, the same for every element of every object.
template <class T> struct c : Argument {
    static constexpr Kind kind = Kind::constants;
    using Element = T;
    T x;
    explicit c(T value) : x(value) {}
    c slice(int, int, void*) const { return *this; }
    template <Form> std::tuple<T> list() const { return x; }
    Same<T> object(int, int, int) const { return {x}; }
};

// ---- The other arguments.

struct Size : Argument {
    int n;
    explicit Size(int value) : n(value) {}
    operator int() const { return n; }
    bool sizeOk() const { return n >= 1; }
    std::tuple<unsigned> sizes() const { return unsigned(n); }
    Size slice(int, int, void*) const { return *this; }
    template <Form> std::tuple<int> list() const { return n; }
};

template <int n> using Fixed = std::integral_constant<int, n>;
using One = Fixed<1>; // the count of a member without an array

struct Count : Argument {
    int n;
    explicit Count(int value) : n(value) {}
    operator int() const { return n; }
    bool countOk() const { return n >= 1; }
    std::tuple<unsigned> sizes() const { return unsigned(n); }
    Count slice(int, int objects, void*) const { return Count(objects); }
    template <Form> std::tuple<int> list() const { return n; }
};

// A destination without strides: object behind object, row behind row.
template <class T> struct Packed : Argument {
    T* p;
    explicit Packed(T* pointer) : p(pointer) {}
    bool pointerOk() const { return p != nullptr; }
};

// A table without strides in any layout, `each` elements for an object: back to back, or one for all with each = 0.
template <class T> struct Table : Argument {
    static constexpr bool isSource = std::is_const_v<T>;
    T* p;
    int each;
    Table(T* pointer, int elements) : p(pointer), each(elements) {}
    T* object(int k) const { return p + std::int64_t(k) * each; }
    bool pointerOk() const { return p != nullptr; }
    Table slice(int start, int, void*) const { return {object(start), each}; }
    template <Form> std::tuple<T*> list() const { return p; }
};

// Scratch of the caller; in a team each thread has a share of its own instead.
template <class T> struct Buffer : Argument {
    T* p;
    explicit Buffer(T* pointer) : p(pointer) {}
    operator T*() const { return p; }
    bool pointerOk() const { return p != nullptr; }
    Buffer slice(int, int, void* share) const { return Buffer(static_cast<T*>(share)); }
    template <Form> std::tuple<T*> list() const { return p; }
};

// How many objects the call treats: the Count of its list, or one.
template <class... Args> int countOf(const Args&... args)
{
    int count = 1;
    (
        [&] {
            if constexpr (std::is_same_v<Args, Count>) count = args;
        }(),
        ...);
    return count;
}

// Calls f with the C arguments of a list of typed arguments, as kernel form F takes them.
template <Form F, class Function, class... Args> auto call(Function f, const Args&... args)
{
    return std::apply(f, std::tuple_cat(args.template list<F>()...));
}

} // namespace kesl
