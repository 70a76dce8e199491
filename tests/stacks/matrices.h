#pragma once
// LAPACK's test matrices (Demmel & McKenney, LAPACK Working Note 9: a test matrix generation suite) and some that are
// known to be hard.
#include "../random.h"

#include <string>
#include <vector>

namespace stacks {

struct TestMatrix {
    std::string name;
    int rows, cols;
    std::vector<double> elements; // by rows
    bool wellConditioned = false; // condition 2
    bool regular = true;          // of full rank
    bool scaledColumns = false;   // well conditioned but for the lengths of its columns
    std::vector<int> units = {};  // exponents d where it is D B D^-1, D = 2^d, and B is balanced
    double operator()(int i, int j) const { return elements[size_t(i * cols + j)]; }
};

// Machine constants of the type that will hold the elements, as LAPACK's tests use them.
struct Precision {
    double eps;          // unit roundoff
    double small, large; // norms near under- and overflow
    double badly() const { return 0.1 / eps; }
};
Precision precisionOf(char type);

std::vector<TestMatrix> generalMatrices(int rows, int cols, char type, Random&); // by singular values
std::vector<TestMatrix> symmetricMatrices(int n, char type, Random&);
std::vector<TestMatrix> definiteMatrices(int n, char type, Random&);
std::vector<TestMatrix> spectralMatrices(int n, char type, Random&); // general ones, by eigenvalues

} // namespace stacks
