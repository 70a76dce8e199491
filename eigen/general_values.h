// keslEigenValues: the eigenvalues of one general matrix, or of each matrix of an array.
#pragma once
#include "eigen/buffer_size.h"
#include "eigen/general.h"
#include "frame/arguments.h"
#include "frame/call.h"

// clang-format off
#define KESL_VALUES_REST(as, T)                                                                                     \
    as##_table(KESL_T_##T, dstRe, widthHeight), as##_table(KESL_T_##T, dstIm, widthHeight), as##_size(widthHeight)
#define KESL_VALUES(as, F, T, k)    as##_bare(k, src, F, T), KESL_VALUES_REST(as, T), as##_buffer(buffer, T)
#define KESL_ALLVALUES(as, F, T, k)                                                                                 \
    as##_bare(k, src, F, T), KESL_VALUES_REST(as, T), as##_count(count), as##_buffer(buffer, T)
// clang-format on

namespace kesl {

// ---- The family.
struct EigenValues {
    static constexpr Threshold threshold = Threshold::everywhere(10001);
    static constexpr bool canFail = true;

    template <class T, Form F>
    [[gnu::always_inline]] static KeslStatus kernel(auto src, Table<T> re, Table<T> im, Size n, Buffer<T> buffer)
    {
        return kernel<T, F>(src, re, im, n, One{}, buffer);
    }
    template <class T, Form F> [[gnu::always_inline]] static KeslStatus kernel(auto src, Table<T> re, Table<T> im,
                                                                               Size order, auto count, Buffer<T> buffer)
    {
        const auto status = [](bool converged) { return converged ? keslStatusOk : keslStatusNoConvergence; };
        return withRows(src, [&](auto rows) KESL_INLINE {
            return withOrder(order, [&](auto n) KESL_INLINE {
                if constexpr (n > 0)
                    return eachPack<T>(count, rows, [&]<class V>(Objects<V> k) KESL_INLINE {
                        if constexpr (lanes<V> != 1 && !inPacks<V>) return keslStatusNoConvergence; // so they go one by one
                        else {
                            Block<V, n, n> h = load<n, n>(rows, k);
                            V scratch[2 * int(n)];
                            if constexpr (lanes<V> == 1)
                                return status(schurForm<generalValues>(h.e[0], h.e[0], scratch, re.object(k.first),
                                                                       im.object(k.first), n));
                            else {
                                V packRe[int(n)], packIm[int(n)];
                                if (!schurForm<generalValues>(h.e[0], h.e[0], scratch, packRe, packIm, n))
                                    return keslStatusNoConvergence;
                                storeTable<n>(re.object(k.first), packRe), storeTable<n>(im.object(k.first), packIm);
                                return keslStatusOk;
                            }
                        }
                    });
                else
                    return eachObject(count, [&](int k) {
                        const std::int64_t all = std::int64_t(order) * order;
                        readRows(rows.object(k, order, order), buffer.p, order);
                        return status(schurForm<generalValues>(buffer.p, buffer.p, buffer + all, re.object(k), im.object(k),
                                                               int(order)));
                    });
            });
        });
    }
};

// clang-format off
// ---- The members.
struct EigenValues_m : EigenValues {};
struct EigenValues_ma : EigenValues {
    template <class T> static constexpr Checks checks = {"NSCB", "NSCRB", "NSCRB"};
    static unsigned measure(unsigned n, unsigned count) { return n * (n + 1) * count; }
    static std::size_t scratch(std::size_t n, std::size_t) { return vectorsBuffer(n); } // elements for a thread
};

} // namespace kesl

// ---- Their functions, by module.
#define KESL_EIGENVALUES_M(X) X(EigenValues, m, KESL_VALUES, m)
#define KESL_EIGENVALUES_MA(X) X(EigenValues, ma, KESL_ALLVALUES, ma)
