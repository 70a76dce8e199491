#pragma once
// Calls of any function with operands in any place and layout. What they touch is watched to the byte.
#include "../level.h"
#include "functions.h"

#include <cstring>
#include <functional>
#include <limits>
#include <type_traits>

namespace stacks {

const std::vector<Level>& levels(); // built ones, or those of the environment variable KESL_LIBRARIES
inline const Level& plain() { return levels().front(); }

// What the library gets as the answer to how many threads it may use.
void setThreads(int);

// The elements of an operand, all objects, row by row without gaps.
struct Values {
    std::ptrdiff_t count = 0;
    int rows = 0, cols = 0, bytes = 0; // of an element
    bool integers = false;
    std::vector<char> data;

    Values() = default;
    Values(std::ptrdiff_t n, int r, int c, int b, bool whole = false)
        : count(n), rows(r), cols(c), bytes(b), integers(whole), data(size_t(n * r * c * b))
    {
    }
    std::ptrdiff_t elements() const { return std::ptrdiff_t(rows) * cols; }
    template <class T> T* object(std::ptrdiff_t k) { return reinterpret_cast<T*>(data.data()) + k * elements(); }
    template <class T> const T* object(std::ptrdiff_t k) const { return const_cast<Values*>(this)->object<T>(k); }
    template <class T> T& at(std::ptrdiff_t k, int i, int j) { return object<T>(k)[i * cols + j]; }
    template <class T> T at(std::ptrdiff_t k, int i, int j) const { return object<T>(k)[i * cols + j]; }
};

// Operands of a call, apart from where they lie.
struct Problem {
    const Function* function;
    char type; // 'f' or 'd'
    Sizes sizes;
    std::ptrdiff_t count;
    std::vector<Values> sources;

    int bytes() const { return type == 'f' ? 4 : 8; }
    Values blank(const Operand&, std::ptrdiff_t objects) const;
    Problem object(std::ptrdiff_t k, std::ptrdiff_t objects = 1) const; // a part of it
};
std::string describe(const Problem&);

// Where elements lie: axes (0 objects, 1 rows, 2 columns) from the innermost to the outermost, elements left free behind
// each, and those walked backwards.
struct Layout {
    const char* name;
    int axes[3];
    int gaps[3] = {0, 0, 0};
    bool backwards[3] = {false, false, false}; // by axis number
};
extern const Layout packed, columns, planes; // row after row; column after column; structure of arrays
extern const std::vector<Layout> layouts;    // all

struct Placement {
    std::vector<Layout> layouts = {};  // of the operands, sources first; those beyond the list are packed
    bool atEnd = true;                 // the last byte lies before inaccessible memory, or else the first one behind it
    int shift = 0;                     // elements from there
    std::vector<unsigned> shared = {}; // of the sources: the axes (1 << axis) whose stride is 0
    int inPlace = -1, replacing = 0;   // the source whose storage this destination is
    bool info = true;                  // else null
    unsigned control = 0x1f80;         // MXCSR of the caller
};

struct Outcome {
    std::ptrdiff_t status = 0;
    std::vector<int> info;
    std::vector<Values> results;
    std::string fault;    // what it touched that it must not; empty if nothing
    unsigned control = 0; // MXCSR behind the call
};
Outcome run(const Level&, const Problem&, const Placement& = {});

// A call with all arguments given, in their order; what they point to is the caller's business.
std::ptrdiff_t callWith(const Level&, const Function&, char type, const std::vector<std::ptrdiff_t>& arguments);

// Every object by itself: what all other calls are compared with, to the bit.
Outcome oneByOne(const Level&, const Problem&);
// What another library makes of each object: solve() sets the results of one, which are zeros before, and returns its info.
// It may change the problem that it gets. Without results it has no such function.
Outcome objectByObject(const Problem&, const std::function<int(Problem&, Outcome&)>& solve);
std::string difference(const Outcome& expected, const Outcome& actual); // empty if there is none; NaN equals NaN

// Whole numbers per cent of the usual number of cases: the environment variable KESL_TEST_EFFORT.
long cases(long usual);

template <class F> void forTypes(F&& f)
{
    f('f');
    f('d');
}
template <class F> auto withType(char type, F&& f) { return type == 'f' ? f(float{}) : f(double{}); }

} // namespace stacks
