// The floating-point environment of a call.
#pragma once
#include <xmmintrin.h>

namespace kesl::stacks {

// Round to nearest, subnormals kept, no traps; then the caller's control word again, with the flags as they were: lanes that
// hold nothing must not raise any.
class Environment {
public:
    Environment() : callers(_mm_getcsr()) { _mm_setcsr(usual); }
    ~Environment()
    {
        _mm_setcsr(callers);
    } // to look whether it has changed takes longer, and the compiler takes an old look
    Environment(const Environment&) = delete;
    Environment& operator=(const Environment&) = delete;

private:
    static constexpr unsigned usual = 0x1f80;
    const unsigned callers;
};

} // namespace kesl::stacks
