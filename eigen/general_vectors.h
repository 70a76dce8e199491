// keslEigenValuesVectors, keslEigenValuesVectorsRight, keslEigenValuesVectorsLeft: the eigenvalues and the eigenvectors of
// one general matrix, or of each matrix of an array.
#pragma once
#include "eigen/buffer_size.h"
#include "eigen/general.h"
#include "frame/arguments.h"
#include "frame/call.h"

// clang-format off
#define KESL_VECTORS_REST(as, T)                                                                                    \
    as##_table(KESL_T_##T, dstRe, widthHeight), as##_table(KESL_T_##T, dstIm, widthHeight), as##_size(widthHeight)
#define KESL_BOTH(as, F, T, k)                                                                                      \
    as##_in(k, src, F, T), as##_out(k, dstVectorsRight, F, T), as##_out(k, dstVectorsLeft, F, T), KESL_VECTORS_REST(as, T)
#define KESL_SIDE(as, F, T, k)         as##_in(k, src, F, T), as##_vectors(k, dst, F, T), KESL_VECTORS_REST(as, T)
#define KESL_BOTH_M(as, F, T, k)       KESL_BOTH(as, F, T, k), as##_buffer(buffer, T)
#define KESL_BOTH_MA(as, F, T, k)      KESL_BOTH(as, F, T, k), as##_count(count), as##_buffer(buffer, T)
#define KESL_SIDE_M(as, F, T, k)       KESL_SIDE(as, F, T, k), as##_buffer(buffer, T)
#define KESL_SIDE_MA(as, F, T, k)      KESL_SIDE(as, F, T, k), as##_count(count), as##_buffer(buffer, T)
// clang-format on

namespace kesl {

// ---- The families.
template <Sides sides> struct GeneralVectors {
    static constexpr Threshold threshold = Threshold::everywhere(7001);
    static constexpr bool canFail = true;

    // `right` and `left` are the same where there is one side.
    template <class T, GeneralRules rules> [[gnu::always_inline]] static KeslStatus
    vectors(auto src, auto right, auto left, Table<T> re, Table<T> im, Size order, auto count, Buffer<T> buffer)
    {
        const KeslStatus status = withRows(src, [&](auto rows) KESL_INLINE {
            return withOrder(order, [&](auto fixed) KESL_INLINE {
                // From columns behind each other to the destinations of object k.
                const auto write = [&](int k, const T* z, auto n) {
                    const auto copy = [&](const T* columns, auto to) {
                        for (int i = 0; i < n; ++i)
                            for (int j = 0; j < n; ++j) to(i, j) = columns[std::int64_t(j) * n + i];
                    };
                    if constexpr (sides != Sides::left)
                        copy(sides == Sides::both ? z + std::int64_t(n) * n : z, right.object(k, n, n));
                    if constexpr (sides != Sides::right) copy(z, left.object(k, n, n));
                    return keslStatusOk;
                };
                const auto object = [&](int k, T* memory, auto n) -> KeslStatus {
                    const std::int64_t all = std::int64_t(n) * n;
                    readRows(rows.object(k, n, n), memory, n);
                    if (!schurForm<rules>(memory, memory + all, memory + 3 * all, re.object(k), im.object(k), n))
                        return keslStatusNoConvergence;
                    if (const KeslStatus failure = eigenvectors(sides, memory, im.object(k), n)) return failure;
                    return write(k, memory + all, n);
                };
                if constexpr (fixed > 0)
                    return eachPack<T>(count, rows, [&]<class V>(Objects<V> k) KESL_INLINE -> KeslStatus {
                        constexpr int n = fixed, all = n * n;
                        if constexpr (lanes<V> == 1) {
                            T memory[vectorsBuffer(n)];
                            return object(k.first, memory, fixed);
                        } else if constexpr (!inPacks<V>) return keslStatusNoConvergence; // so they go one by one
                        else {
                            Block<V, n, n> h = load<n, n>(rows, k);
                            V z[all], scratch[2 * n], packRe[n], packIm[n];
                            if (!schurForm<rules>(h.e[0], z, scratch, packRe, packIm, fixed)) return keslStatusNoConvergence;
                            struct {
                                T memory[vectorsBuffer(n)], im[n];
                            } lane[lanes<V>];
                            const Spaced<T> first{lane[0].memory, sizeof lane[0]};
                            storeRun<all>(first, h.e[0]), storeRun<all>(first + all, z),
                                storeRun<n>(Spaced<T>{lane[0].im, sizeof lane[0]}, packIm);
                            for (auto& l : lane)
                                if (const KeslStatus failure = eigenvectors(sides, l.memory, l.im, fixed)) return failure;
                            storeTable<n>(re.object(k.first), packRe), storeTable<n>(im.object(k.first), packIm);
                            for (int l = 0; l < lanes<V>; ++l) write(k.first + l, lane[l].memory + all, fixed);
                            return keslStatusOk;
                        }
                    });
                else
                    return eachObject(count, [&](int k) {
                        return order == 1 ? one<T>(k, src, right, left, re, im) : object(k, buffer, int(order));
                    });
            });
        });
        return status == quietEnd ? keslStatusOk : status;
    }
    template <class T> static KeslStatus one(int k, auto src, auto right, auto left, Table<T> re, Table<T> im)
    {
        re.object(k)[0] = src.object(k, 1, 1)(0, 0), im.object(k)[0] = 0;
        right.object(k, 1, 1)(0, 0) = 1, left.object(k, 1, 1)(0, 0) = 1;
        return keslStatusOk;
    }
};
template <GeneralRules rules> struct BothSides : GeneralVectors<Sides::both> {
    template <class T, Form F> [[gnu::always_inline]] static KeslStatus kernel(auto src, auto right, auto left, Table<T> re,
                                                                               Table<T> im, Size n, Buffer<T> buffer)
    {
        return vectors<T, rules>(src, right, left, re, im, n, One{}, buffer);
    }
    template <class T, Form F> [[gnu::always_inline]] static KeslStatus
    kernel(auto src, auto right, auto left, Table<T> re, Table<T> im, Size n, Count count, Buffer<T> buffer)
    {
        return vectors<T, rules>(src, right, left, re, im, n, count, buffer);
    }
};
template <Sides side> struct OneSide : GeneralVectors<side> {
    template <class T, Form F>
    [[gnu::always_inline]] static KeslStatus kernel(auto src, auto dst, Table<T> re, Table<T> im, Size n, Buffer<T> buffer)
    {
        return OneSide::template vectors<T, generalVectors>(src, dst, dst, re, im, n, One{}, buffer);
    }
    template <class T, Form F> [[gnu::always_inline]] static KeslStatus kernel(auto src, auto dst, Table<T> re, Table<T> im,
                                                                               Size n, Count count, Buffer<T> buffer)
    {
        return OneSide::template vectors<T, generalVectors>(src, dst, dst, re, im, n, count, buffer);
    }
};

// clang-format off
// ---- The members.
struct OverArrays {
    // In L and P the source is tested whole, and then the destinations.
    template <class T> static constexpr Checks checks = {"NSCB", "NSCR<B<R>B>", "NSCR<B<R>B>"};
    static unsigned measure(unsigned n, unsigned count) { return n * (3 * n + 1) * count; }
    static std::size_t scratch(std::size_t n, std::size_t) { return vectorsBuffer(n); } // elements for a thread
};
struct EigenValuesVectors_m : BothSides<generalVectorsSingle> {};
struct EigenValuesVectors_ma : BothSides<generalVectors>, OverArrays {};
struct EigenValuesVectorsRight_m : OneSide<Sides::right> {};
struct EigenValuesVectorsRight_ma : OneSide<Sides::right>, OverArrays {};
struct EigenValuesVectorsLeft_m : OneSide<Sides::left> {};
struct EigenValuesVectorsLeft_ma : OneSide<Sides::left>, OverArrays {};

} // namespace kesl

// ---- Their functions, by module.
#define KESL_EIGENVALUESVECTORS_M(X) X(EigenValuesVectors, m, KESL_BOTH_M, m)
#define KESL_EIGENVALUESVECTORS_MA(X) X(EigenValuesVectors, ma, KESL_BOTH_MA, ma)
#define KESL_EIGENVALUESVECTORSRIGHT_M(X) X(EigenValuesVectorsRight, m, KESL_SIDE_M, m)
#define KESL_EIGENVALUESVECTORSRIGHT_MA(X) X(EigenValuesVectorsRight, ma, KESL_SIDE_MA, ma)
#define KESL_EIGENVALUESVECTORSLEFT_M(X) X(EigenValuesVectorsLeft, m, KESL_SIDE_M, m)
#define KESL_EIGENVALUESVECTORSLEFT_MA(X) X(EigenValuesVectorsLeft, ma, KESL_SIDE_MA, ma)
