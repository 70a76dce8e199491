#pragma once
// What is tested of every function, at every level.
#include "problems.h"

#include <gtest/gtest.h>

namespace stacks {

using Suite = void (*)(const Level&, const Function&);
void testLayouts(const Level&, const Function&);     // the same bits wherever and in whatever company an object lies
void testMemory(const Level&, const Function&);      // nothing else is touched; in place; beyond 2^31 bytes
void testArguments(const Level&, const Function&);   // each unacceptable argument has its number
void testFailures(const Level&, const Function&);    // an object that fails has no influence on others
void testEnvironment(const Level&, const Function&); // rounding, flags and traps of the caller
void testScale(const Level&, const Function&);       // powers of two go through
void testThreads(const Level&, const Function&);     // the same bits for any number of threads, and after fork
void testLevels(const Level&, const Function&);      // the same bits as at the plain level
void testStack(const Level&, const Function&);       // how much of it
void testSums(const Level&, const Function&);        // what is defined to the bit
void testAccuracy(const Level&, const Function&);    // LAPACK's ratios on LAPACK's matrices
void testRandom(const Level&, const Function&);      // the same of very many small symmetric matrices

} // namespace stacks
