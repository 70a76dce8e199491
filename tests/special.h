#pragma once
// Tests of what single functions promise. A file in special/ registers them:
//     const Special zero("Invert", "order 1 of zero is singular", [](const Level& level) { EXPECT_EQ(...); });
#include "tests.h"

#include <functional>
#include <keslmx.h> // for the types of functions; they are called at the level under test

struct Special {
    std::string name;
    std::function<void(const Level&)> run;
    Special(const char* family, const char* what, std::function<void(const Level&)> body);
};
const std::vector<Special*>& specials();

// One function, by the type of its declaration: get<decltype(keslAdd_mm_32f)>(level, "keslAdd_mm_32f").
template <class F> F* get(const Level& level, const char* name)
{
    void* address = find(level, name);
    if (!address) throw std::runtime_error(std::string(name) + " is not exported");
    return reinterpret_cast<F*>(address);
}

// The status of a call with good arguments but for those named here, all pointers leading nowhere; PassesChecks if it
// went on to use its operands.
constexpr int PassesChecks = 1;
int statusOf(const Level&, const char* function, std::initializer_list<std::pair<const char*, int>> others);
