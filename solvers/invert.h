// keslInvert: the inverse of one matrix, or of each matrix of an array, by the adjugate.
#pragma once
#include "frame/arguments.h"
#include "frame/array_blocks.h"
#include "frame/call.h"
#include "solvers/adjugate.h"

// clang-format off
#define KESL_INVERT(as, F, T, k)  as##_in(k, src, F, T), as##_buffer(buffer, T), as##_out(k, dst, F, T), as##_size(widthHeight)
#define KESL_INVERTS(as, F, T, k) KESL_INVERT(as, F, T, k), as##_count(count)

// The common code of orders 2 and 7 upward has functions of its own.
#define KESL_INVERT_COMMON(X)                                                                                       \
    X(Invert, m, 32f, S, , KESL_INVERT, m)  X(Invert, m, 32f, S2, _S2, KESL_INVERT, m)  X(Invert, m, 32f, P, _P, KESL_INVERT, m) \
    X(Invert, m, 64f, S, , KESL_INVERT, m)  X(Invert, m, 64f, S2, _S2, KESL_INVERT, m)  X(Invert, m, 64f, P, _P, KESL_INVERT, m)
namespace kesl { template <class T, Form F> constexpr int* Invert_com = nullptr; }
KESL_INVERT_COMMON(KESL_COMMON)
// clang-format on

namespace kesl {

// ---- The family.
struct Invert {
    static constexpr Threshold threshold = thresholds::usual;
    static constexpr bool canFail = true;

    // Order 1 is finished before any work measure, so never in threads.
    template <class T> static std::optional<KeslStatus> first(auto src, auto, auto dst, int n, auto... count)
    {
        if (n != 1) return {};
        for (int k = 0; k < countOf(count...); ++k) {
            const T a = src.object(k, 1, 1)(0, 0);
            if (!(abs(a) > singularBelow<T>(1))) return keslStatusSingular; // a NaN is singular here
            dst.object(k, 1, 1)(0, 0) = 1 / a;
        }
        return keslStatusOk;
    }

    template <class T, int n>
    [[gnu::noinline]] static KeslStatus fixed(const Array<const T>& from, const Array<T>& to, int count)
    {
        const InPacks src(from, count);
        const InPacks dst(to, count);
        return eachPack<T>(count, src, [&]<class V>(Objects<V> k) KESL_INLINE {
            Block<V, n, n> a, inverse;
            load(src, k, a);
            if (!(n < 5 ? invertClosed<T>(a, inverse) : invertLong<T>(a, inverse))) return keslStatusSingular;
            store(dst, k, inverse);
            return keslStatusOk;
        });
    }
    template <class T, class N>
    [[gnu::noinline]] static KeslStatus other(const Array<const T>& from, T* buffer, const Array<T>& to, N order, int count)
    {
        const InPacks src(from, count);
        const InPacks dst(to, count);
        return eachTile<T>(order, order, count, src, [&]<class V>(Objects<V> k) KESL_INLINE -> KeslStatus {
            if constexpr (lanes<V> == 1)
                return withRowViews(
                    k.first, [&](auto a, auto x) { return invertCommon<T>(a, buffer, x, order); }, src, dst);
            else {
                V elements[2][elementsOf<N>];
                const Tile<V> a{elements[0], order}, inverse{elements[1], order};
                load(src, k, a, order);
                if (!(isFixed<N> ? invertOfTile<T>(a, inverse, order) : invertTile<T>(a, inverse, order)))
                    return keslStatusSingular;
                store(dst, k, inverse, order);
                return keslStatusOk;
            }
        });
    }
    template <class T>
    [[gnu::noinline]] static KeslStatus all(const Array<const T>& src, T* buffer, const Array<T>& dst, int order, int count)
    {
        return withOrder(order, [&](auto n) {
            if constexpr (n > 0) return fixed<T, n>(src, dst, count);
            else return withTileOrder(order, [&](auto size) { return other<T>(src, buffer, dst, size, count); });
        });
    }

    template <class T, Form>
    [[gnu::always_inline]] static KeslStatus kernel(auto src, Buffer<T> buffer, auto dst, Size order, Count count)
    {
        return all<T>({src, order, order}, buffer, {dst, order, order}, order, count);
    }
    template <class T, Form F>
    [[gnu::always_inline]] static KeslStatus kernel(auto src, Buffer<T> buffer, auto dst, Size order, One)
    {
        return withOrder(order, [&](auto n) -> KeslStatus {
            if constexpr (n == 0) return call<F>(Invert_com<T, F>, src, buffer, dst, order);
            else {
                const auto a = load<n, n>(src, Objects<T>{0});
                Block<T, n, n> inverse;
                if (!(n < 5 ? invertClosed<T>(a, inverse) : invertLong<T>(a, inverse))) return keslStatusSingular;
                store(dst, Objects<T>{0}, inverse);
                return keslStatusOk;
            }
        });
    }
    template <class T> static KeslStatus common(auto src, Buffer<T> buffer, auto dst, Size order)
    {
        return invertCommon<T>(src.object(0, order, order), buffer.p, dst.object(0, order, order), order);
    }
};

// clang-format off
// ---- The members.
struct Invert_m : Invert {};
struct Invert_ma : Invert {
    static unsigned measure(unsigned n, unsigned count) { return 2 * n * count; }
    static std::size_t scratch(std::size_t n, std::size_t) { return n * n + n; } // elements for a thread
};

} // namespace kesl

// ---- Their functions, by module.
#define KESL_INVERT_M(X)  X(Invert, m, KESL_INVERT, m)
#define KESL_INVERT_MA(X) X(Invert, ma, KESL_INVERTS, ma)
