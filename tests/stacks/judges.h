#pragma once
// Ratios: how far a result is off, in units of what rounding explains; computed in extended precision, as LAPACK's tests
// define them (the name of the routine stands with each).
#include "matrices.h"
#include "run.h"

namespace stacks {

struct Ratio {
    std::string what;
    double value; // infinite for what is not a number
    double limit; // 0 for a promise without a measure; the value is infinite if it is broken
};
// Of one object of a call. `matrix` is the one that the first source was made of.
std::vector<Ratio> judge(const Problem&, const Outcome&, std::ptrdiff_t k, const TestMatrix& matrix);

bool isJudged(const Function&); // the others are defined to the bit

} // namespace stacks
