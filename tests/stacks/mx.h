#pragma once
// What keslmx makes of the same operands.
#include "run.h"

namespace stacks {

void openMx(const char* path); // the library file, before anything else

// As a function on one object, as one of an array of many that are equal, or, of several right sides, all with one matrix.
enum class Shape { single, array, oneForAll };

// Infos are statuses. Where a function differs from kesl's in the form of a result, it is brought to that form; functions
// that keslmx does not have in this shape give no results. Throws where equal objects of an array get results that differ.
Outcome mx(const Problem&, Shape);

// keslmx's name of an operation, or of the last of those that it takes together; empty if it has none.
std::string nameInMx(const Function&);

} // namespace stacks
