#pragma once
// Every function of the library, one row each: all tests are driven by this table, which is typed by hand and apart from
// the header and the library, so that a slip on either side shows.
#include <cstddef>
#include <string>
#include <vector>

namespace stacks {

// What the first source must hold for every object to succeed. The others may hold anything finite.
enum class Data {
    any,
    regular,   // far from singular
    symmetric, // only the lower triangle is read: the tests fill the rest with NaN
    definite,  // the same, positive definite
    factors,   // an LU decomposition, pivots in the second source
    lower      // a Cholesky factor, the rest NaN
};

// How a result grows with the first source: that times 2^k, the result is times 2^(degree*k). Of roots: even k only.
enum class Degree {
    zero,
    one,
    inverse,
    inverseSquare,
    root,
    order,
    upper
}; // upper: one on and above the diagonal, else zero

// What the first source of an object may hold that makes it fail.
struct Failures {
    bool nonFinite = false, singular = false, indefinite = false;
};

struct Operand {
    std::vector<std::string> extents; // names of sizes, "min" of all sizes, or a number; none: one number for each object
    bool integers = false;            // pivots
};

constexpr int limit = 32;
struct Function {
    std::string name;               // without the type
    std::vector<std::string> sizes; // the first arguments
    std::vector<Operand> sources, destinations;
    Data data;
    std::vector<Degree> degrees; // of the destinations
    Failures failures;
    std::vector<bool> small = {}; // the sizes that must not be above the limit
    bool tall = false;            // the first size must not be below the second
    bool optional = false;        // matrices among the destinations may be null
};

const std::vector<Function>& functions();
const Function& function(const std::string& name);

using Sizes = std::vector<std::ptrdiff_t>; // one value for each of the names
int extent(const Function&, const Sizes&, const std::string& name);
int rows(const Function&, const Sizes&, const Operand&); // 1 where the operand has none
int cols(const Function&, const Sizes&, const Operand&);

// Sizes that reach every road: each order up to 9 and some above, the other sizes at random beside it.
std::vector<Sizes> shapes(const Function&);

// Names of the arguments in their order, as "n", "count", "a", "aStride0"...: what an error number counts.
struct Argument {
    enum Role { size, count, pointer, stride, info } role;
    int index;    // which size or operand, sources first
    int axis = 0; // of a stride
};
std::vector<Argument> arguments(const Function&);

} // namespace stacks
