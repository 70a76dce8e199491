// The floating-point environment of a call.
#pragma once
#include <xmmintrin.h>

namespace kesl::stacks {

// Round to nearest, subnormals kept, no traps; then the caller's control word again, with the flags as they were: lanes that
// hold nothing must not raise any.
class Environment {
public:
    Environment() : callers(_mm_getcsr())
    {
        if ((callers & ~flags) != usual) _mm_setcsr(usual);
    }
    // To look whether it has changed takes longer, and the compiler takes an old look.
    ~Environment() { _mm_setcsr(callers); }
    Environment(const Environment&) = delete;
    Environment& operator=(const Environment&) = delete;

private:
    static constexpr unsigned usual = 0x1f80, flags = 0x3f;
    const unsigned callers;
};

} // namespace kesl::stacks
