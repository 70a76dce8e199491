#pragma once
// What every function of the library is: its arguments, the order of its checks, when it goes parallel, its scratch.
// The tables in table.cpp were typed by hand and share nothing with the library, so that a slip on either side shows.
#include <climits>
#include <cstdint>
#include <map>
#include <string>
#include <vector>

enum Status {
    Ok = 0,
    Failed = -2,
    BadSize = -6,
    NullPointer = -8,
    DivideByZero = -10,
    NotPositiveDefinite = -179,
    BadStride = -182,
    Singular = -195,
    BadRoiShift = -202,
    BadCount = -203,
    SizeMismatch = -204,
    NoConvergence = -205
};

// The free sizes of a call, by letter: h and w rows and columns, l a length, n an order, M K N those of a product.
struct Dims {
    int of[128] = {};
    int operator[](char c) const { return c >= '0' && c <= '9' ? c - '0' : of[int(c)]; }
    int& operator[](char c) { return of[int(c)]; }
};
int product(const std::string& sum, const Dims&); // "nn+5n" is n*n + 5*n

// A run of arguments that describes one thing in memory, or one constant.
struct Operand {
    std::string name, prefix; // src1; what its strides are called after (src1Stride0), mostly the same
    std::string extents;      // sizes of the logical object, as letters of Dims: "hw", "l", "44"; a sum for scratch
    char letter = 'v';        // m, t, v, c
    char layout = 'S';        // S: base and strides; L: a list of objects; P: a list of elements
    bool array = false, destination = false;
    bool dense = false;   // packed, without any stride argument
    bool integer = false; // a table of int
    bool scratch = false;

    bool byValue() const { return letter == 'c' && !array; }
    bool list() const { return layout != 'S'; }
    int rows(const Dims& d) const { return extents.size() == 2 ? d[extents[0]] : 1; } // logical
    int columns(const Dims& d) const { return d[extents.back()]; }
    int storedRows(const Dims& d) const { return letter == 't' ? columns(d) : rows(d); }
    int storedColumns(const Dims& d) const { return letter == 't' ? rows(d) : columns(d); }
};

enum class Role { pointer, stride0, stride1, stride2, shift, size, count, constant };

struct Argument {
    Role role;
    int operand; // index, or -1 for sizes and count
    std::string name, type;
};

union Value {
    void* p;
    int i;
    float f;
    double d;
};

struct Function {
    std::string name, operation, shape, layout; // keslAdd_mam_32f_L, Add, mam, L
    int elemSize = 4;
    bool array = false;
    std::vector<Operand> operands; // sources in the order of the letters, other constants, then destinations and the rest
    std::vector<Argument> arguments;
    std::string sequence;                 // of its checks, as letters (see table.cpp)
    const struct Measure* work = nullptr; // null for those that have none
    int sizeArguments[9];                 // places of what a measure reads, in the order of Sizes

    const char* type() const { return elemSize == 4 ? "float" : "double"; }
    std::string prototype() const;
    std::string letters() const;                              // of Dims, that the call is free to choose
    int size(const std::string& argument, const Dims&) const; // what a size argument has to be
    int at(const std::string& argument) const;                // its place, or -1
    bool contiguous(const std::vector<Value>&) const;         // every stride2 is the element size

    int expected(const std::vector<Value>&) const; // the first check that fails, or Ok
    bool tested(const Argument&) const;            // false for the arguments that no check looks at

    bool raises(const std::vector<Value>&) const;     // may raise what its operations raise
    bool threaded() const;                            // has a parallel form
    bool measured() const { return work != nullptr; } // compares a work measure, though perhaps to no end
    int measure(const std::vector<Value>&) const;     // wraps
    int threshold(bool contiguousElements) const;     // parallel from here on
    std::string scratch() const;                      // of one thread, in elements; empty if none
    bool tallOnly() const;                            // width is at most height
    bool beforeMeasure(int order) const;              // a call of this order ends before any measure is taken
    bool movesData() const;                           // bits arrive unchanged, NaN included
};

const std::map<std::string, Function>& functions(); // all but keslGetLibVersion
