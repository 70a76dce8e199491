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

// Of one matrix and of arrays: compiled once, in general_values.cpp.
template <class T>
KeslStatus eigenValues(const Array<const T>& src, Table<T> re, Table<T> im, int order, int count, T* buffer);

// ---- The family.
struct EigenValues : Iterative {
    static constexpr Threshold threshold = Threshold::everywhere(10001);
    static constexpr bool canFail = true;

    template <class T, Form> [[gnu::always_inline]] static KeslStatus kernel(auto src, Table<T> re, Table<T> im, Size order,
                                                                             Buffer<T> buffer, int count)
    {
        return eigenValues<T>({src, order, order}, re, im, order, count, buffer);
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
