// The processor's floating-point control word: exceptions, rounding, flush to zero.
#pragma once
#include <xmmintrin.h>

namespace kesl {

// While it lives, nothing traps, and afterwards the thread's own control word is back, exception flags included: lanes that
// are finished, or belong to no object, divide by zero and take roots of what they hold. A thread of a team also takes over
// the calling thread's rounding and flushing to zero. To write the word costs less than to find out whether it has changed.
class QuietArithmetic {
    const unsigned own = _mm_getcsr();

public:
    QuietArithmetic() { _mm_setcsr(own | _MM_MASK_MASK); }
    explicit QuietArithmetic(unsigned callers) { _mm_setcsr(callers | _MM_MASK_MASK); }
    QuietArithmetic(const QuietArithmetic&) = delete;
    ~QuietArithmetic() { _mm_setcsr(own); }
};

} // namespace kesl
