// keslQRDecomp: QR decomposition by Householder reflections (Golub and Van Loan, Matrix Computations, 5.2), of one matrix or
// of each matrix of an array.
#pragma once
#include "frame/arguments.h"
#include "frame/call.h"
#include "frame/constants.h"
#include "solvers/tall.h"

// clang-format off
#define KESL_QR(as, F, T, k) \
    as##_in(k, src, F, T), as##_buffer(buffer, T), as##_out(k, dst, F, T), as##_size(width), as##_size(height)
#define KESL_QRS(as, F, T, k) KESL_QR(as, F, T, k), as##_count(count)
// clang-format on

namespace kesl {

// Step k on a, whose column k becomes an element of R and, below it, the reflector v without its leading 1. d is scratch, an
// element for each column. Returns where the column is singular: its squared norm is below an absolute bound. The
// comparison must hold to reject: a NaN passes.
template <class V> [[gnu::always_inline]] inline MaskOf<V> reflect(auto& a, V* d, int k, auto width, auto height)
{
    V s{};
    upTo(k, height, [&](int i) KESL_INLINE { s = s + a(i, k) * a(i, k); });
    const MaskOf<V> singular = Precision<ElementOf<V>>::eps > s;
    if constexpr (lanes<V> == 1)
        if (singular) return true;
    const V root = sqrt(s), sigma = a(k, k) > 0 ? root : 0 - root, t = 1 / (a(k, k) + sigma);
    V norm = splat<V>(1);
    upTo(k, width, [&](int j) KESL_INLINE { d[j] = a(k, j); });
    upTo(k + 1, height, [&](int i) KESL_INLINE {
        const V x = a(i, k), v = x * t;
        norm = norm + v * v;
        d[k] = d[k] + x * v;
        upTo(k + 1, width, [&](int j) KESL_INLINE { d[j] = d[j] + a(i, j) * v; });
        a(i, k) = v;
    });
    const V beta = -2 / norm;
    upTo(k, width, [&](int j) KESL_INLINE {
        d[j] = d[j] * beta;
        a(k, j) = a(k, j) + d[j];
    });
    upTo(k + 1, height, [&](int i) KESL_INLINE {
        const V v = a(i, k);
        upTo(k + 1, width, [&](int j) KESL_INLINE { a(i, j) = a(i, j) + v * d[j]; });
    });
    return singular;
}
// False where an object is singular. A single one is left as it was before the step that failed.
template <int height, int width, class V> [[gnu::always_inline]] inline bool qrBlock(Block<V, height, width>& a, auto rows)
{
    V d[width];
    MaskOf<V> bad{};
    constexpr int steps = reflectors(Fixed<width>{}, decltype(rows)());
#pragma GCC unroll 8
    for (int k = 0; k < steps; ++k) {
        bad |= reflect(a, d, k, Fixed<width>{}, rows);
        if (lanes<V> == 1 && any(bad)) return false;
    }
    return !any(bad);
}
// The long ones: one copy serves all kernels.
template <int height, int width, class V> [[gnu::noinline]] bool qrLong(Block<V, height, width>& a, auto rows) { return qrBlock(a, rows); }

template <class T> [[gnu::noinline]] KeslStatus qrCommon(auto src, T* buffer, auto a, int width, int height)
{
    for (int i = 0; i < height; ++i)
        for (int j = 0; j < width; ++j) a(i, j) = src(i, j);
    for (int k = 0; k < reflectors(width, height); ++k)
        if (reflect(a, buffer, k, width, height)) return keslStatusDivideByZero;
    return keslStatusOk;
}

// ---- The family.
struct QRDecomp {
    static constexpr Threshold threshold = setQ;
    static constexpr bool canFail = true;
    static constexpr auto sizesMatch = [](unsigned width, unsigned height, auto...) { return width <= height; };

    template <class T, Form F, class Count = One>
    [[gnu::always_inline]] static KeslStatus kernel(auto src, Buffer<T> buffer, auto dst, Size width, Size height, Count count = {})
    {
        return withShape(width, height, [&](auto w, auto h) {
            constexpr int rows = rowsOf<decltype(h)>;
            constexpr bool square = isFixed<decltype(h)>;
            const auto common = [&](int k, T* scratch) {
                return qrCommon<T>(src.object(k, height, width), scratch, dst.object(k, height, width), width, height);
            };
            if constexpr (w == 0) return eachObject(count, [&](int k) { return common(k, buffer); });
            else
                return eachPack<T>(count, [&]<class V>(Objects<V> k) -> KeslStatus {
                    if constexpr (lanes<V> == 1 && !square) {
                        T d[w];
                        return common(k.first, d);
                    } else {
                        Block<V, rows, w> a;
                        loadRows(src, k, a, h);
                        const bool good = square && w < 5 ? qrBlock(a, h) : qrLong(a, h);
                        if (good || lanes<V> == 1) storeRows(dst, k, a, h);
                        return good ? keslStatusOk : keslStatusDivideByZero;
                    }
                });
        });
    }
};

// ---- The members.
struct QRDecomp_m : QRDecomp {
    template <class T> static constexpr Checks checks = {"NSBM", "", "NSRM"}; // deliberately the match comes last
};
struct QRDecomp_ma : QRDecomp {
    template <class T> static constexpr Checks checks = {"NCSBM", "NCSBRM", "NCSBRM"};
    static unsigned measure(unsigned width, unsigned height, unsigned count) { return width * height * (2 * count); }
    static unsigned scratch(unsigned, unsigned height, unsigned) { return height; }
};

} // namespace kesl

// ---- Their functions, by module.
#define KESL_QRDECOMP_M(X)  X(QRDecomp, m, KESL_QR, m)
#define KESL_QRDECOMP_MA(X) X(QRDecomp, ma, KESL_QRS, ma)
