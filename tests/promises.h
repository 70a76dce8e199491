#pragma once
// For tests of what a family promises numerically: matrices with a given spectrum, figures per order.
#include "random.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <lapacke.h>
#include <map>
#include <stdexcept>

// A matrix, by rows, with these eigenvalues (symmetric) or singular values, between random orthogonal matrices. height: of a
// matrix that is higher than wide.
inline std::vector<double> withSpectrum(std::vector<double> d, bool symmetric, Random& random, int height = 0)
{
    const int n = int(d.size()), m = std::max(n, height);
    int seed[4];
    for (int& s : seed) s = random.below(4096);
    seed[3] |= 1; // as the generator wants it
    std::vector<double> a(size_t(m * n));
    if (LAPACKE_dlatms(LAPACK_ROW_MAJOR, m, n, 'U', seed, symmetric ? 'S' : 'N', d.data(), 0, 1, 1, m - 1, n - 1, 'N',
                       a.data(), n) != 0)
        throw std::runtime_error("dlatms");
    return a;
}

// Errors of many cases, in units of what rounding explains.
class Figures {
public:
    void add(int n, double x) { of[n].push_back(std::isnan(x) ? INFINITY : x); }
    double worst() const
    {
        double w = 0;
        for (const auto& [n, list] : of) w = std::max(w, *std::max_element(list.begin(), list.end()));
        return w;
    }
    int above(double bound) const // how many
    {
        int k = 0;
        for (const auto& [n, list] : of)
            k += int(std::count_if(list.begin(), list.end(), [&](double x) { return x > bound; }));
        return k;
    }
    int count() const { return above(-1); }
    void print(const char* what) const // the worst of each order
    {
        std::printf("%s", what);
        for (const auto& [n, list] : of) std::printf(" %d: %.3g", n, *std::max_element(list.begin(), list.end()));
        std::printf("\n");
    }

private:
    std::map<int, std::vector<double>> of;
};
