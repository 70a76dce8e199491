#pragma once
#include "judges.h"

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
void printPage(std::ostream&, const Level&); // of all functions, as Markdown

} // namespace stacks
