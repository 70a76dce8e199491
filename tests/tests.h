#pragma once
// What is tested of every function.
#include "case.h"

#include <gtest/gtest.h>

using Suite = void (*)(const Function&, const Level&);
void testValues(const Function&, const Level&);     // results, and that nothing else is touched, on one thread
void testChecks(const Function&, const Level&);     // each fault alone, each pair of faults, and more at random
void testThresholds(const Function&, const Level&); // from which arguments on a call asks for threads
void testThreads(const Function&, const Level&);    // results, regions and scratch of teams
void testLevels(const Function&, const Level&);     // the bits of one level against those of the plain one

std::vector<Value> goodArguments(const Function&); // that pass all checks; pointers lead nowhere

// KESLMX_TEST_EFFORT, per cent of the usual number of cases; KESLMX_TEST_CASE, the one case to run.
int cases(int usual);
bool chosen(int number);
