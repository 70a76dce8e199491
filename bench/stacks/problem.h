// A row's function and data, and the alternatives for it.
#pragma once
#include "../../tests/stacks/functions.h"
#include "../row.h"

#include <cstdlib>
#include <memory>

namespace bench::stacks {
using ::stacks::Function;
using ::stacks::Sizes;

struct Free {
    void operator()(void* p) const { std::free(p); }
};

// An operand. Strides are in bytes.
struct Array {
    int rows = 1, cols = 1, bytes = 0; // of an element
    bool isOutput = false, isInteger = false;
    std::int64_t stride0 = 0, stride1 = 0, stride2 = 0, size = 0;
    std::unique_ptr<char, Free> memory;
    char* data = nullptr; // null: not asked for

    template <class T> T& at(int k, int i, int j) const
    {
        return *reinterpret_cast<T*>(data + k * stride0 + i * stride1 + j * stride2);
    }
};

struct Problem {
    const Function* function;
    int order, bytes; // of an element
    Layout layout;
    int count;
    Sizes sizes;
    std::vector<Array> arrays; // sources, then destinations

    bool isContiguous() const { return layout == Layout::packed || layout == Layout::columns; } // each matrix
};
Problem problemOf(const Function&, int order, int bytes, Layout, int count); // with data that any method can do
std::int64_t bytesOf(const Function&, int order, int bytes, Layout);         // of all operands of one object

// What an object's results are to be alike in: vectors have no sign, eigenvalues no order.
std::vector<double> comparable(const Problem&, int k);
double toleranceOf(const Function&); // of that, in eps of its largest element

// The library itself, on objects of a problem.
std::function<void(Range)> libraryOn(const Problem&);

// Alternatives, by the name of a function. They do the objects of a range one after the other.
struct Alternative {
    std::string function, name;
    int bytes; // of an element
    void (*run)(const Problem&, Range);
    int order = 0; // the only one; 0: any
    bool (*suits)(const Problem&) = nullptr;
    bool isAside = false, isSlow = false; // slow ones are not measured on 128 MiB
};
inline std::vector<Alternative>& alternatives() // filled while they register themselves
{
    static std::vector<Alternative> all;
    return all;
}

} // namespace bench::stacks
