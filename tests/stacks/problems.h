#pragma once
// Operands for a function, and ways to make an object fail.
#include "../random.h"
#include "run.h"

namespace stacks {

// All objects of it succeed.
Problem makeProblem(const Function&, char type, const Sizes&, std::ptrdiff_t count, Random&);

// Makes a source constant along the axes of a mask.
void flatten(Values&, unsigned axes);

enum class Way { nan, infinity, singular, indefinite, pivot };
std::vector<Way> waysToFail(const Function&);
const char* name(Way);
// Makes object k fail. Returns the info that it shall get.
int spoil(Problem&, std::ptrdiff_t k, Way, Random&);

// What a call shall do if some objects fail: their results are NaN (or 0, the pivots), all others as before.
void fail(Outcome&, std::ptrdiff_t k, int info);

} // namespace stacks
