#pragma once
#include "judges.h"

#include <functional>
#include <iosfwd>
#include <map>

namespace stacks {

// Worst ratios of the library and of LAPACK on the same matrices.
struct Worst {
    double ours = 0, lapacks = -1; // -1: it has no such function
    double limit = 0;
    std::string where; // ours was met
};
using Figures = std::map<std::string, std::map<int, Worst>>; // by what is measured and by the largest order of a group
Figures figuresOf(const Level&, const Function&, char type);

// LAPACK's test matrices as operands: body(problem, the matrices of its objects, the largest order of its group).
using Body = std::function<void(const Problem&, const std::vector<TestMatrix>&, int group)>;
void eachTestProblem(const Function&, char type, const Body& body);
constexpr int groups[] = {4, 8, 16, 32}; // of orders, each up to the next

std::string rounded(double ratio);           // to two digits, for a table
void printPage(std::ostream&, const Level&); // of all functions, as Markdown
void printMx(std::ostream&);                 // of those of keslmx

} // namespace stacks
