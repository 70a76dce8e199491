// keslCopy, keslExtract and keslLoadIdentity: elements as they are, from one layout to another. No arithmetic touches them,
// so a signalling NaN keeps its bits. No kernels, no threads.
#pragma once
#include "frame/arguments.h"
#include "frame/call.h"
#include "movement/move.h"

#include <climits>
#include <numeric>

namespace kesl {

// clang-format off
// ---- Copy: any two layouts. stride0 is tested only where there is a second object.
struct CopyChecks { Form from, to; Sequence ma, va32f, va64f; };
constexpr CopyChecks copyChecks[] = {
//    from  to   matrices   vectors of float and double: two have R before B in float
    { S2,  S2,   "NSCBb",   "NSCBb",   "NSCBb"   },
    { S2,  LS2,  "NSCBRb",  "NSCBRb",  "NSCBRb"  },
    { S2,  P,    "NSCBRb",  "NSCRBb",  "NSCBRb"  },
    { LS2, S2,   "NSCBRb",  "NSCBRb",  "NSCBRb"  },
    { LS2, LS2,  "NSCBR",   "NSCBR",   "NSCBR"   },
    { LS2, P,    "NSCBRb",  "NSCRBb",  "NSCBRb"  },
    { P,   S2,   "NSCBRb",  "NSCBRb",  "NSCBRb"  },
    { P,   LS2,  "NSCBRb",  "NSCBRb",  "NSCBRb"  },
    { P,   P,    "NSCRb",   "NSCRb",   "NSCRb"   },
};
// clang-format on
constexpr const CopyChecks& copyChecksOf(Form from, Form to)
{
    const CopyChecks* row = copyChecks;
    while (row->from != from || row->to != to) ++row;
    return *row;
}

struct Copy_ma {
    template <class T, Form from, Form to, Form...> static constexpr Sequence sequence = copyChecksOf(from, to).ma;
    static void run(auto src, auto dst, Size width, Size height, Count count) { move(int(height), width, count, dst, src); }
};
struct Copy_va {
    template <class T, Form from, Form to, Form...> static constexpr Sequence sequence =
        sizeof(T) == 4 ? copyChecksOf(from, to).va32f : copyChecksOf(from, to).va64f;
    static void run(auto src, auto dst, Size len, Count count) { move(One{}, len, count, dst, src); }
};

// ---- Extract: into packed objects.
template <class T> void extract(auto height, int width, auto count, T* dst, auto src)
{
    const std::int64_t row = std::int64_t(width) * int(sizeof(T)), object = row * height;
    if (object <= INT_MAX) {
        const Operand<T, Kind::matrix, src.isArray, S> packed{.p = dst, .stride0 = int(object), .stride1 = int(row)};
        move(height, width, count, packed, src);
    } else // strides that an int does not hold
        for (int k = 0; k < count; ++k)
            for (int i = 0; i < height; ++i)
                for (int j = 0; j < width; ++j) *dst++ = src.object(k, height, width)(i, j);
}
struct ExtractMatrix {
    template <class T> static void run(auto src, Packed<T> dst, Size width, Size height, auto... count)
    {
        extract(int(height), width, countOr1(count...), dst.p, src);
    }
    static Count countOr1(Count count) { return count; }
    static One countOr1() { return {}; }
};
struct ExtractVector {
    template <class T> static void run(auto src, Packed<T> dst, Size len, auto... count)
    {
        extract(One{}, len, ExtractMatrix::countOr1(count...), dst.p, src);
    }
};
// clang-format off
// Sizes before pointers in P, but not for a float vector; sizes before the count, and in P and L roiShifts before strides.
struct SizesFirst { template <class T> static constexpr Checks checks = { "NSB",  "",      "SNR"   }; };
struct VectorRule { template <class T> static constexpr Checks checks = { "NSB",  "",      sizeof(T) == 4 ? "NSR" : "SNR" }; };
struct ShiftFirst { template <class T> static constexpr Checks checks = { "NSCB", "NSCRB", "NSCRB" }; };

struct Extract_m  : ExtractMatrix, SizesFirst {};
struct Extract_t  : ExtractMatrix, SizesFirst {};
struct Extract_v  : ExtractVector, VectorRule {};
struct Extract_ma : ExtractMatrix, ShiftFirst {};
struct Extract_ta : ExtractMatrix, ShiftFirst {};
struct Extract_va : ExtractVector, ShiftFirst {};

// ---- LoadIdentity: unit matrices, of any shape. In P the roiShifts come before the count in float.

// Of order n without gaps: a period of whole packs, which stay in registers, and what is left one by one.
template <class V, int n, int e> constexpr V unitPack() // from element e on
{
    return []<int... l>(std::integer_sequence<int, l...>) {
        return V{ElementOf<V>((e + l) % (n * n) % (n + 1) == 0)...};
    }(std::make_integer_sequence<int, lanes<V>>{});
}
template <int n, class T> void loadUnits(T* dst, int count)
{
    using V = Pack<T>;
    constexpr int common = std::gcd(n * n, lanes<V>), packs = n * n / common, objects = lanes<V> / common;
    for (; count >= objects; count -= objects, dst += objects * n * n)
        [&]<int... e>(std::integer_sequence<int, e...>) KESL_INLINE {
            (storePack<V>(dst + e * lanes<V>, unitPack<V, n, e * lanes<V>>()), ...);
        }(std::make_integer_sequence<int, packs>{});
    for (; count > 0; --count, dst += n * n)
#pragma GCC unroll 36
        for (int e = 0; e < n * n; ++e) dst[e] = e % (n + 1) == 0;
}

struct LoadIdentity_ma {
    template <class T> static constexpr Checks checks = { "NSCBb", "NSCBR", sizeof(T) == 4 ? "NSRCb" : "NSCRb" };
    // clang-format on

    static void run(auto dst, Size width, Size height, Count count)
    {
        using T = typename decltype(dst)::Element;
        if constexpr (dst.form == S2)
            if (dst.rowsAreContiguous() && width == height && isPacked(dst, height, width)) {
                bool done = false;
                withOrder(width, [&](auto n) {
                    if constexpr (n > 0) loadUnits<n>(dst.p, count), done = true;
                });
                if (done) return;
            }
        inOwnForm(dst, [&](const auto& to) {
            if (std::int64_t(width) * height <= mostRepeated && count > 1) { // small ones are copies of the first
                T unit[mostRepeated] = {};
                for (int i = 0; i < std::min<int>(width, height); ++i) unit[i * width + i] = 1;
                const m<const T, S> src{.p = unit, .stride1 = width * int(sizeof(T))};
                return map(int(height), width, count, Move{}, to, src);
            }
            const auto elements = anywhere(to, height, width);
            for (int k = 0; k < count; ++k)
                for (int i = 0; i < height; ++i) {
                    for (int j = 0; j < width; ++j) *elements(k, i, j) = 0;
                    if (i < width) *elements(k, i, i) = 1;
                }
        });
    }
    // f(dst), in the form for contiguous rows if that is what they are.
    static void inOwnForm(const auto& dst, auto f)
    {
        constexpr Form F = std::decay_t<decltype(dst)>::form, rows = F == S2 ? S : L;
        if constexpr (F == S2 || F == LS2)
            if (dst.rowsAreContiguous()) return f(dst.template as<rows>());
        f(dst);
    }
};

} // namespace kesl

// clang-format off
// ---- Their functions, by module: the kinds of the operands. In Copy, F is the form of the source and G of the destination.
#define KESL_COPIED_M(as, F, T, G)     as##_in(ma, src, F, T), as##_out(ma, dst, G, T), as##_size(width), as##_size(height), \
                                       as##_count(count)
#define KESL_COPIED_V(as, F, T, G)     as##_in(va, src, F, T), as##_out(va, dst, G, T), as##_size(len), as##_count(count)
#define KESL_EXTRACTED_M(as, F, T, a)  as##_in(a, src, F, T), as##_packed(dst, T), as##_size(width), as##_size(height)
#define KESL_EXTRACTED_MA(as, F, T, a) KESL_EXTRACTED_M(as, F, T, a), as##_count(count)
#define KESL_EXTRACTED_V(as, F, T, a)  as##_in(a, src, F, T), as##_packed(dst, T), as##_size(len)
#define KESL_EXTRACTED_VA(as, F, T, a) KESL_EXTRACTED_V(as, F, T, a), as##_count(count)
#define KESL_IDENTITY(as, F, T, d)     as##_out(d, dst, F, T), as##_size(width), as##_size(height), as##_count(count)

#define KESL_COPY(shape, T, LIST)                                                                                   \
    KESL_DIRECT(Copy, shape, T, S2,  _SS, LIST, S2)  KESL_DIRECT(Copy, shape, T, S2,  _SL, LIST, LS2)  KESL_DIRECT(Copy, shape, T, S2,  _SP, LIST, P) \
    KESL_DIRECT(Copy, shape, T, LS2, _LS, LIST, S2)  KESL_DIRECT(Copy, shape, T, LS2, _LL, LIST, LS2)  KESL_DIRECT(Copy, shape, T, LS2, _LP, LIST, P) \
    KESL_DIRECT(Copy, shape, T, P,   _PS, LIST, S2)  KESL_DIRECT(Copy, shape, T, P,   _PL, LIST, LS2)  KESL_DIRECT(Copy, shape, T, P,   _PP, LIST, P)
#define KESL_EXTRACT(shape, T, LIST, a)                                                                             \
    KESL_DIRECT(Extract, shape, T, S2, , LIST, a)  KESL_DIRECT(Extract, shape, T, P, _P, LIST, a)
#define KESL_EXTRACT_ARRAY(shape, T, LIST, a)                                                                       \
    KESL_EXTRACT(shape, T, LIST, a)  KESL_DIRECT(Extract, shape, T, LS2, _L, LIST, a)
#define KESL_LOAD_IDENTITY(T)                                                                                       \
    KESL_DIRECT(LoadIdentity, ma, T, S2, , KESL_IDENTITY, ma)  KESL_DIRECT(LoadIdentity, ma, T, LS2, _L, KESL_IDENTITY, ma) \
    KESL_DIRECT(LoadIdentity, ma, T, P, _P, KESL_IDENTITY, ma)
