// keslTranspose: dst(j, i) = src(i, j). Elements as they are, without arithmetic; no threads.
#pragma once
#include "frame/arguments.h"
#include "frame/call.h"
#include "frame/map.h"

namespace kesl {

// The sizes are those of the source, and stand behind it. The source is taken as an operand that is read transposed, so
// that the destination has `width` rows.
struct Transpose {
    template <class T, Form F>
    [[gnu::always_inline]] static KeslStatus kernel(auto src, Size width, Size height, auto dst, auto count)
    {
        map(int(width), height, count, Move{}, dst, src);
        return keslStatusOk;
    }
};
struct Transpose_m : Transpose {};
struct Transpose_ma : Transpose {};

} // namespace kesl

// clang-format off
// ---- Their functions, by module: the kinds of src and dst.
#define KESL_TRANSPOSED(as, F, T, a, d) as##_in(a, src, F, T), as##_size(width), as##_size(height), as##_out(d, dst, F, T)
#define KESL_TRANSPOSED_A(as, F, T, a, d) KESL_TRANSPOSED(as, F, T, a, d), as##_count(count)

#define KESL_TRANSPOSE_M(X) X(Transpose, m, KESL_TRANSPOSED, t, m)
#define KESL_TRANSPOSE_MA(X) X(Transpose, ma, KESL_TRANSPOSED_A, ta, ma)
