// keslQRBackSubst: solves A x = b from what keslQRDecomp leaves of A, in the sense of least squares where A is higher than
// wide.
#pragma once
#include "frame/arguments.h"
#include "frame/array_vectors.h"
#include "frame/call.h"
#include "solvers/tall.h"

// clang-format off
#define KESL_QR_SOLVE(as, F, T, matrix, vector)                                                                     \
    as##_in(matrix, src1, F, T), as##_buffer(buffer, T), as##_in(vector, src2, F, T), as##_out(vector, dst, F, T),    \
    as##_size(width), as##_size(height)
#define KESL_QR_SOLVES(as, F, T, matrix, vector) KESL_QR_SOLVE(as, F, T, matrix, vector), as##_count(count)
// clang-format on

namespace kesl {

// -2 / v'v of the reflector v in column k, whose first element is 1.
template <class V> [[gnu::always_inline]] inline V betaOf(const auto& a, int k, auto height)
{
    V norm = splat<V>(1);
    upTo(k + 1, height, [&](int i) KESL_INLINE { norm = norm + a(i, k) * a(i, k); });
    return -2 / norm;
}
// b becomes Q'b, and then its first elements x. All sizes take their terms in this order, so that they give the same bits with
// and without a fixed body.
template <class V> [[gnu::always_inline]] inline void qrSolve(const auto& a, auto beta, V* b, auto width, auto height)
{
    upTo(0, reflectors(width, height), [&](int k) KESL_INLINE {
        V d = b[k];
        upTo(k + 1, height, [&](int i) KESL_INLINE { d = d + b[i] * a(i, k); });
        d = d * beta(k);
        b[k] = b[k] + d;
        upTo(k + 1, height, [&](int i) KESL_INLINE { b[i] = b[i] + a(i, k) * d; });
    });
    upTo(0, width, [&](int up) KESL_INLINE {
        const int i = width - 1 - up;
        V s{};
        upTo(i + 1, width, [&](int j) KESL_INLINE { s = s + a(i, j) * b[j]; });
        b[i] = (b[i] - s) / a(i, i);
    });
}

// The long ones: one copy serves all kernels.
template <class V, int height, int width>
[[gnu::noinline]] void qrSolveLong(const Block<V, height, width>& a, V* b, auto rows)
{
    qrSolve(
        a, [&](int k) KESL_INLINE { return betaOf<V>(a, k, rows); }, b, Fixed<width>{}, rows);
}
template <class V, class T, int height, int width>
[[gnu::noinline]] void qrSolveLong(const Block<T, height, width>& a, const T* beta, V* b, auto rows)
{
    qrSolve(
        a, [&](int k) KESL_INLINE { return beta[k]; }, b, Fixed<width>{}, rows);
}

template <class T>
[[gnu::noinline]] void qrSolveCommon(const auto& a, T* buffer, const auto& b, const auto& x, int width, int height)
{
    for (int i = 0; i < height; ++i) buffer[i] = b(0, i);
    qrSolve(
        a, [&](int k) KESL_INLINE { return betaOf<T>(a, k, height); }, buffer, width, height);
    for (int j = 0; j < width; ++j) x(0, j) = buffer[j];
}

// The matrix has a value or a pack, of type X, for each element.
template <class X, class V> [[gnu::noinline]] void qrSolveTile(auto a, V* b, int width, int height)
{
    qrSolve(
        a, [&](int k) { return betaOf<X>(a, k, height); }, b, width, height);
}

// ---- The family.
struct QRBackSubst {
    static constexpr Threshold threshold = thresholds::orthogonal;
    static constexpr auto sizesMatch = [](unsigned width, unsigned height, auto...) { return width <= height; };

    // A matrix for each vector, or one for all.
    template <class T, bool forAll, class W, class H>
    [[gnu::noinline]] static void fixed(const Array<const T>& matrices, T* buffer, const Array<const T>& from,
                                        const Array<T>& to, W width, H height, int count)
    {
        const InPacks matrix(matrices, forAll ? 1 : count);
        constexpr int w = W::value, rows = rowsOf<H>;
        constexpr bool square = isFixed<H>, brief = square && w < 5;
        Block<T, rows, w> one;
        T beta[w];
        if constexpr (forAll) {
            for (int i = 0; i < height; ++i)
                for (int j = 0; j < w; ++j) one(i, j) = *matrix.element(0, i, j);
            upTo(0, reflectors(width, height), [&](int k) { beta[k] = betaOf<T>(one, k, height); });
        }
        const auto solve = [&](const auto& src, const auto& dst) KESL_INLINE {
            eachPack<T>(count, [&]<class V>(Objects<V> k) KESL_INLINE {
                if constexpr (lanes<V> == 1 && !square) return common(k.first, matrix, buffer, src, dst, w, height);
                else {
                    Block<V, 1, rows> b;
                    Block<V, 1, w> x;
                    if constexpr (forAll) {
                        const auto known = [&](int i) KESL_INLINE { return beta[i]; };
                        loadLength(src, k, b, height);
                        if constexpr (brief) qrSolve(one, known, b.e[0], width, height);
                        else qrSolveLong(one, beta, b.e[0], height);
                    } else {
                        Block<V, rows, w> a;
                        const auto computed = [&](int i) KESL_INLINE { return betaOf<V>(a, i, height); };
                        loadRows(matrix, k, a, height);
                        loadLength(src, k, b, height);
                        if constexpr (brief) qrSolve(a, computed, b.e[0], width, height);
                        else qrSolveLong(a, b.e[0], height);
                    }
                    upTo(0, width, [&](int j) KESL_INLINE { x(0, j) = b(0, j); });
                    store(dst, k, x);
                    if (!square && k.first + lanes<V> == count) // the interface wants what the last object would leave there
                        for (int i = 0; i < height; ++i) buffer[i] = reinterpret_cast<const T*>(&b(0, i))[lanes<V> - 1];
                }
            });
        };
        if constexpr (forAll && brief) withVectors<w>(count, solve, from, to);
        else solve(InPacks(from, count), InPacks(to, count));
    }
    template <class T> static void common(int k, const Array<const T>& matrix, T* buffer, const Array<const T>& src,
                                          const Array<T>& dst, int width, int height)
    {
        withRowViews(
            k, [&](auto a, auto b, auto x) { qrSolveCommon<T>(a, buffer, b, x, width, height); }, matrix, src, dst);
    }
    template <class T, bool forAll> [[gnu::noinline]] static void other(const Array<const T>& matrices, T* buffer,
                                                                        const Array<const T>& from, const Array<T>& to,
                                                                        int width, int height, int count)
    {
        const InPacks matrix(matrices, forAll ? 1 : count), src(from, count);
        const InPacks dst(to, count);
        eachTile<T>(height, width, count, Argument{}, [&]<class V>(Objects<V> k) KESL_INLINE {
            if constexpr (lanes<V> == 1) common(k.first, matrix, buffer, src, dst, width, height);
            else {
                V elements[tileElements], b[tallest];
                load(src, k, Tile<V>{b, height}, 1);
                if constexpr (forAll)
                    withRowViews(
                        0, [&](auto a) { qrSolveTile<T>(a, b, width, height); }, matrix);
                else {
                    const Tile<V> a{elements, width};
                    load(matrix, k, a, height);
                    qrSolveTile<V>(a, b, width, height);
                }
                store(dst, k, Tile<V>{b, width}, 1);
                if (k.first + lanes<V> == count) // the interface wants what the last object would leave there
                    for (int i = 0; i < height; ++i) buffer[i] = b[i][lanes<V> - 1];
            }
        });
    }
    template <class T, bool forAll> [[gnu::noinline]] static void all(const Array<const T>& matrix, T* buffer,
                                                                      const Array<const T>& src, const Array<T>& dst,
                                                                      int width, int height, int count)
    {
        withShape(width, height, [&](auto w, auto h) {
            if constexpr (w > 0) fixed<T, forAll>(matrix, buffer, src, dst, w, h, count);
            else other<T, forAll>(matrix, buffer, src, dst, width, height, count);
        });
    }

    template <class T, Form> [[gnu::always_inline]] static KeslStatus kernel(auto src1, Buffer<T> buffer, auto src2,
                                                                             auto dst, Size width, Size height, Count count)
    {
        all<T, !src1.isArray>({src1, height, width}, buffer, {src2, 1, height}, {dst, 1, width}, width, height, count);
        return keslStatusOk;
    }
    template <class T, Form> [[gnu::always_inline]] static KeslStatus kernel(auto src1, Buffer<T> buffer, auto src2,
                                                                             auto dst, Size width, Size height, One)
    {
        withShape(width, height, [&](auto w, auto h) {
            if constexpr (isFixed<decltype(h)>) {
                const auto a = load<w, w>(src1, Objects<T>{0});
                auto b = load<1, w>(src2, Objects<T>{0});
                if constexpr (w < 5)
                    qrSolve(
                        a, [&](int k) KESL_INLINE { return betaOf<T>(a, k, h); }, b.e[0], w, h);
                else qrSolveLong(a, b.e[0], h);
                store(dst, Objects<T>{0}, b);
            } else
                qrSolveCommon<T>(src1.object(0, height, width), buffer, src2.object(0, 1, height), dst.object(0, 1, width),
                                 width, height);
        });
        return keslStatusOk;
    }
    static std::size_t scratch(std::size_t, std::size_t height, std::size_t) { return height; }
};

// clang-format off
// ---- The members. Deliberately the sizes are matched last.
struct QRBackSubst_mv : QRBackSubst {
    template <class T> static constexpr Checks checks = {"NSBM", "", "NSRM"};
};
struct QRBackSubst_mva : QRBackSubst {
    template <class T> static constexpr Checks checks = {"NCSBM", "NCSBRM", "NCSBRM"};
    static unsigned measure(unsigned width, unsigned height, unsigned count) { return width * height + (width + height) * count; }
};
struct QRBackSubst_mava : QRBackSubst {
    template <class T> static constexpr Checks checks = {"NCSBM", "NCSBRM", "NCSBRM"};
    static unsigned measure(unsigned width, unsigned height, unsigned count) { return (width * (height + 1) + height) * count; }
};

} // namespace kesl

// ---- Their functions, by module.
#define KESL_QRBACKSUBST_MV(X)   X(QRBackSubst, mv, KESL_QR_SOLVE, m, v)
#define KESL_QRBACKSUBST_MVA(X)  X(QRBackSubst, mva, KESL_QR_SOLVES, m, va)
#define KESL_QRBACKSUBST_MAVA(X) X(QRBackSubst, mava, KESL_QR_SOLVES, ma, va)
