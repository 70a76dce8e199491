// keslEigenValues: the eigenvalues of one general matrix, or of each matrix of an array.
#pragma once
#include "eigen/buffer_size.h"
#include "eigen/general.h"
#include "frame/arguments.h"
#include "frame/call.h"

// clang-format off
#define KESL_VALUES_REST(as, T)     as##_table(KESL_T_##T, dstRe, widthHeight), as##_table(KESL_T_##T, dstIm, widthHeight), as##_size(widthHeight)
#define KESL_VALUES(as, F, T, k)    as##_bare(k, src, F, T), KESL_VALUES_REST(as, T), as##_buffer(buffer, T)
#define KESL_ALLVALUES(as, F, T, k)  as##_bare(k, src, F, T), KESL_VALUES_REST(as, T), as##_count(count), as##_buffer(buffer, T)
// clang-format on

namespace kesl {

// The memory holds the input row by row, which is its transpose in columns, and 2 n elements more.
template <class T, class N> [[gnu::noinline]] KeslStatus generalValuesOf(T* memory, T* re, T* im, N n)
{
    T* const behind = memory + std::int64_t(n) * n;
    Schur<generalValues, T, N> schur{n, {memory, n}, {}, re, im, behind, behind + n};
    schur.reduce();
    return schur.iterate() ? keslStatusOk : keslStatusNoConvergence;
}

// ---- The family.
struct EigenValues {
    static constexpr Threshold threshold = Threshold::everywhere(10001);
    static constexpr bool canFail = true;

    template <class T, Form F>
    [[gnu::always_inline]] static KeslStatus kernel(auto src, Table<T> re, Table<T> im, Size n, Buffer<T> buffer)
    {
        return kernel<T, F>(src, re, im, n, One{}, buffer);
    }
    template <class T, Form F>
    [[gnu::always_inline]] static KeslStatus kernel(auto src, Table<T> re, Table<T> im, Size order, auto count, Buffer<T> buffer)
    {
        return withOrder(order, [&](auto n) {
            return eachObject(count, [&](int k) {
                if constexpr (n > 0) {
                    T memory[n * n + 2 * n];
                    copyObject(src, k, memory, n);
                    return generalValuesOf(memory, re.object(k), im.object(k), n);
                } else {
                    copyObject(src, k, buffer.p, int(order));
                    return generalValuesOf(buffer.p, re.object(k), im.object(k), int(order));
                }
            });
        });
    }
    template <class T> static void copyObject(auto src, int k, T* memory, auto n)
    {
        const auto view = src.object(k, n, n);
        for (int i = 0; i < n; ++i)
            for (int j = 0; j < n; ++j) memory[std::int64_t(i) * n + j] = view(i, j);
    }
};

// ---- The members.
struct EigenValues_m : EigenValues {};
struct EigenValues_ma : EigenValues {
    template <class T> static constexpr Checks checks = {"NSCB", "NSCRB", "NSCRB"};
    static unsigned measure(unsigned n, unsigned count) { return n * (n + 1) * count; }
    static unsigned scratch(unsigned n, unsigned) { return vectorsBuffer(n); } // elements for a thread
};

} // namespace kesl

// ---- Their functions, by module.
#define KESL_EIGENVALUES_M(X)  X(EigenValues, m, KESL_VALUES, m)
#define KESL_EIGENVALUES_MA(X) X(EigenValues, ma, KESL_ALLVALUES, ma)
