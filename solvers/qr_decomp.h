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

// Step k on several objects, or packs of them, abreast: it is a chain of a root and two divisions. Column k becomes an element of
// R and, below it, the reflector v without its leading 1. d is scratch, an element for each column. Returns where a column
// is singular: its squared norm is below an absolute bound. The comparison must hold to reject: a NaN passes.
template <int abreast, class V>
[[gnu::always_inline]] inline MaskOf<V> reflect(auto* a, auto d, int k, auto width, auto height)
{
    constexpr Fixed<abreast> all;
    MaskOf<V> singular{};
    V t[abreast], norm[abreast];
    upTo(0, all, [&](int p) KESL_INLINE {
        V s{};
        downTo(k, height, [&](int i) KESL_INLINE { s = s + a[p](i, k) * a[p](i, k); });
        singular |= Precision<ElementOf<V>>::eps > s;
        const V root = sqrt(s), sigma = a[p](k, k) > 0 ? root : 0 - root;
        t[p] = 1 / (a[p](k, k) + sigma);
    });
    if constexpr (lanes<V> == 1)
        if (singular) return true;
    upTo(0, all, [&](int p) KESL_INLINE {
        norm[p] = splat<V>(1);
        upTo(k, width, [&](int j) KESL_INLINE { d(p, j) = a[p](k, j); });
        downTo(k + 1, height, [&](int i) KESL_INLINE {
            const V x = a[p](i, k), v = x * t[p];
            norm[p] = norm[p] + v * v;
            d(p, k) = d(p, k) + x * v;
            upTo(k + 1, width, [&](int j) KESL_INLINE { d(p, j) = d(p, j) + a[p](i, j) * v; });
            a[p](i, k) = v;
        });
        norm[p] = -2 / norm[p];
    });
    upTo(0, all, [&](int p) KESL_INLINE {
        upTo(k, width, [&](int j) KESL_INLINE {
            d(p, j) = d(p, j) * norm[p];
            a[p](k, j) = a[p](k, j) + d(p, j);
        });
        downTo(k + 1, height, [&](int i) KESL_INLINE {
            const V v = a[p](i, k);
            upTo(k + 1, width, [&](int j) KESL_INLINE { a[p](i, j) = a[p](i, j) + v * d(p, j); });
        });
    });
    return singular;
}
// False where an object is singular; a single one is left as it was before the step that failed.
template <int abreast, int height, int width, class V>
[[gnu::always_inline]] inline bool qrBlocks(Block<V, height, width>* a, auto rows)
{
    Block<V, abreast, width> sums;
    const auto d = [&](int p, int j) KESL_INLINE -> V& { return sums(p, j); };
    MaskOf<V> bad{};
    constexpr int steps = reflectors(Fixed<width>{}, decltype(rows)());
#pragma GCC unroll 8
    for (int k = 0; k < steps; ++k) {
        bad |= reflect<abreast, V>(a, d, k, Fixed<width>{}, rows);
        if (lanes<V> == 1 && any(bad)) return false;
    }
    return !any(bad);
}
// The long ones: one copy serves all kernels. One pack or all.
template <int most, int height, int width, class V>
[[gnu::noinline]] bool qrLong(Block<V, height, width>* a, int packs, auto rows)
{
    return packs == most ? qrBlocks<most>(a, rows) : qrBlocks<1>(a, rows);
}

template <class T> [[gnu::noinline]] KeslStatus qrCommon(const auto& src, T* buffer, const auto& a, int width, int height)
{
    for (int i = 0; i < height; ++i)
        for (int j = 0; j < width; ++j) a(i, j) = src(i, j);
    for (int k = 0; k < reflectors(width, height); ++k)
        if (reflect<1, T>(
                &a, [&](int, int j) -> T& { return buffer[j]; }, k, width, height))
            return keslStatusDivideByZero;
    return keslStatusOk;
}

template <class V> [[gnu::noinline]] bool qrTile(Tile<V> a, int width, int height)
{
    V sums[tallest];
    MaskOf<V> bad{};
    for (int k = 0; k < reflectors(width, height); ++k)
        bad |= reflect<1, V>(
            &a, [&](int, int j) -> V& { return sums[j]; }, k, width, height);
    return !any(bad);
}

// ---- The family.
struct QRDecomp {
    static constexpr Threshold threshold = thresholds::orthogonal;
    static constexpr bool canFail = true;
    static constexpr auto sizesMatch = [](unsigned width, unsigned height, auto...) { return width <= height; };

    template <class T, class W, class H>
    [[gnu::noinline]] static KeslStatus fixed(const Array<const T>& from, const Array<T>& to, W, H height, int count)
    {
        const InPacks src(from, count);
        const InPacks dst(to, count);
        constexpr int w = W::value;
        constexpr bool square = isFixed<H>, brief = square && w < 5;
        return eachPack<T, Packs{.abreast = brief ? 1 : 2}>(
            count, src, [&]<class V, int most>(Objects<V, most> k) KESL_INLINE -> KeslStatus {
                if constexpr (lanes<V> == 1 && !square) {
                    T d[w];
                    return common(k.first, src, d, dst, w, height);
                } else {
                    Block<V, rowsOf<H>, w> a[most];
                    const int packs = most == 1 ? 1 : k.packs;
                    for (int p = 0; p < packs; ++p) loadRows(src, k.pack(p), a[p], height);
                    const bool good = brief ? qrBlocks<1>(a, height) : qrLong<most>(a, packs, height);
                    if (good || lanes<V> == 1)
                        for (int p = 0; p < packs; ++p) storeRows(dst, k.pack(p), a[p], height);
                    return good ? keslStatusOk : keslStatusDivideByZero;
                }
            });
    }
    template <class T>
    static KeslStatus common(int k, const Array<const T>& src, T* buffer, const Array<T>& dst, int width, int height)
    {
        return withRowViews(
            k, [&](auto from, auto to) { return qrCommon<T>(from, buffer, to, width, height); }, src, dst);
    }
    template <class T> [[gnu::noinline]] static KeslStatus other(const Array<const T>& from, T* buffer, const Array<T>& to,
                                                                 int width, int height, int count)
    {
        const InPacks src(from, count);
        const InPacks dst(to, count);
        return eachTile<T>(height, width, count, src, [&]<class V>(Objects<V> k) KESL_INLINE -> KeslStatus {
            if constexpr (lanes<V> == 1) return common(k.first, src, buffer, dst, width, height);
            else {
                V elements[tileElements];
                const Tile<V> a{elements, width};
                load(src, k, a, height);
                if (!qrTile(a, width, height)) return keslStatusDivideByZero;
                store(dst, k, a, height);
                return keslStatusOk;
            }
        });
    }
    template <class T> [[gnu::noinline]] static KeslStatus all(const Array<const T>& src, T* buffer, const Array<T>& dst,
                                                               int width, int height, int count)
    {
        return withShape(width, height, [&](auto w, auto h) -> KeslStatus {
            if constexpr (w > 0) return fixed<T>(src, dst, w, h, count);
            else if (width == 2 && height == 2) return fixed<T>(src, dst, Fixed<2>{}, Fixed<2>{}, count);
            else return other(src, buffer, dst, width, height, count);
        });
    }

    template <class T, Form> [[gnu::always_inline]] static KeslStatus kernel(auto src, Buffer<T> buffer, auto dst,
                                                                             Size width, Size height, Count count)
    {
        return all<T>({src, height, width}, buffer, {dst, height, width}, width, height, count);
    }
    template <class T, Form>
    [[gnu::always_inline]] static KeslStatus kernel(auto src, Buffer<T> buffer, auto dst, Size width, Size height, One)
    {
        return withShape(width, height, [&](auto w, auto h) -> KeslStatus {
            if constexpr (w == 0)
                return qrCommon<T>(src.object(0, height, width), buffer.p, dst.object(0, height, width), width, height);
            else {
                const auto from = src.object(0, height, width);
                const auto to = dst.object(0, height, width);
                Block<T, rowsOf<decltype(h)>, w> a;
                upTo(0, h, [&](int i) KESL_INLINE { upTo(0, w, [&](int j) KESL_INLINE { a(i, j) = from(i, j); }); });
                const bool good = isFixed<decltype(h)> && w < 5 ? qrBlocks<1>(&a, h) : qrLong<1>(&a, 1, h);
                upTo(0, h, [&](int i) KESL_INLINE { upTo(0, w, [&](int j) KESL_INLINE { to(i, j) = a(i, j); }); });
                return good ? keslStatusOk : keslStatusDivideByZero;
            }
        });
    }
};

// clang-format off
// ---- The members.
struct QRDecomp_m : QRDecomp {
    template <class T> static constexpr Checks checks = {"NSBM", "", "NSRM"}; // deliberately the match comes last
};
struct QRDecomp_ma : QRDecomp {
    template <class T> static constexpr Checks checks = {"NCSBM", "NCSBRM", "NCSBRM"};
    static unsigned measure(unsigned width, unsigned height, unsigned count) { return width * height * (2 * count); }
    static std::size_t scratch(std::size_t, std::size_t height, std::size_t) { return height; }
};

} // namespace kesl

// ---- Their functions, by module.
#define KESL_QRDECOMP_M(X)  X(QRDecomp, m, KESL_QR, m)
#define KESL_QRDECOMP_MA(X) X(QRDecomp, ma, KESL_QRS, ma)
