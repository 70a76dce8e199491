// keslAffineTransform3DH: points of three coordinates through a 4 by 4 matrix, and back from homogeneous coordinates.
#pragma once
#include "frame/arguments.h"
#include "frame/call.h"
#include "frame/constants.h"
#include "frame/objects.h"

namespace kesl {

struct AffineTransform3DH_mva {
    static constexpr Threshold threshold = Threshold::everywhere(2001);
    static constexpr bool canFail = true;
    template <class T> static constexpr Checks checks = {"NCB", "", ""}; // no sizes: 4 by 4, and 3 coordinates
    static unsigned measure(unsigned count) { return 6 * count + 16; }

    template <class T, Form F> [[gnu::always_inline]] static KeslStatus kernel(auto src1, auto src2, auto dst, Count count)
    {
        const auto m = load<4, 4>(src1, Objects<T>{0});
        constexpr int e = sizeof(T);
        if constexpr (F == S)
            if (count >= lanes<Pack<T>> && isRunOf(src2, 3) && isRunOf(dst, 3))
                return byPacks<T>(m, asRun(src2), asRun(dst), count);
        // A distance that the compiler knows lets it treat several points at once.
        if (F == S2 && src2.stride0 == e && dst.stride0 == e) return byPoints<T>(m, src2, dst, count, Fixed<e>{});
        return byPoints<T>(m, src2, dst, count, 0);
    }

    // A point, or one in each lane, and where it is not at infinity. One whose w is too small, or a NaN, becomes the marker.
    template <class V, class T>
    [[gnu::always_inline]] static MaskOf<V> seen(const Block<T, 4, 4>& m, V x, V y, V z, Block<V, 1, 3>& q)
    {
        const auto row = [&](int r) KESL_INLINE { return ((m(r, 0) * x + m(r, 3)) + m(r, 1) * y) + m(r, 2) * z; };
        const V w = row(3), inverse = T(1) / w;
        const MaskOf<V> finite = abs(w) > Precision<T>::smallest; // strict, and false for a NaN
#pragma GCC unroll 3
        for (int i = 0; i < 3; ++i) q(0, i) = finite ? row(i) * inverse : splat<V>(std::numeric_limits<T>::max());
        return finite;
    }
    // Points that fail do not keep the others from being transformed.
    template <class T> static KeslStatus byPacks(const Block<T, 4, 4>& m, auto src, auto dst, int count)
    {
        bool failed = false;
        eachPack<T>(count, [&]<class V>(Objects<V> k) KESL_INLINE {
            Block<V, 1, 3> p = load<1, 3>(src, k), q;
            failed |= any(without(everywhere<V>(), seen(m, p(0, 0), p(0, 1), p(0, 2), q)));
            store(dst, k, q);
        });
        return failed ? keslStatusDivideByZero : keslStatusOk;
    }
    template <class T> static KeslStatus byPoints(const Block<T, 4, 4>& m, auto src, auto dst, int count, auto known)
    {
        const std::int64_t from = known ? known : src.stride0, to = known ? known : dst.stride0;
        const auto in = src.object(0, 1, 3);
        const auto out = dst.object(0, 1, 3);
        const T *const px = &in(0, 0), *const py = &in(0, 1), *const pz = &in(0, 2);
        T *const qx = &out(0, 0), *const qy = &out(0, 1), *const qz = &out(0, 2);
        int failed = 0;
#pragma GCC ivdep
        for (std::int64_t k = 0; k < count; ++k) {
            Block<T, 1, 3> q;
            failed |= !seen(m, *moved(px, k * from), *moved(py, k * from), *moved(pz, k * from), q);
            *moved(qx, k * to) = q(0, 0), *moved(qy, k * to) = q(0, 1), *moved(qz, k * to) = q(0, 2);
        }
        return failed ? keslStatusDivideByZero : keslStatusOk;
    }
};

} // namespace kesl

// ---- Its functions: the only member is in single precision and in the standard layout.
// clang-format off
#define KESL_AFFINE(as, F, T, a, b, d) as##_in(a, src1, F, T), as##_in(b, src2, F, T), as##_out(d, dst, F, T), as##_count(count)
#define KESL_AFFINE_MVA(X)             X(AffineTransform3DH, mva, 32f, KESL_AFFINE, m, va, va)
